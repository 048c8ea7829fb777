// One invented person of a site.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace kintar::site {

enum class PhotoState : std::uint8_t {
    Present, ///< a row in Images and its file
    Missing, ///< a row whose file was never delivered
    NoRow,
};

enum class PhotoFormat : std::uint8_t { Jpeg, Png, Bmp, Tiff };

/// The photo of a person's default image type.
struct Photo {
    PhotoState state = PhotoState::NoRow;
    PhotoFormat format = PhotoFormat::Jpeg;
    std::string fileName;  ///< as Images holds it: separators and case as on the original's system
    std::string path;      ///< below the photo folder, as the file is really called
    std::string otherType; ///< file of the group's other image type (a grey picture); empty: none
};

struct Person {
    int id = 0; ///< from 1
    std::string lastName;
    std::optional<std::string> firstName;
    int locGrp = 1;
    int company = 0; ///< 0: of no company
    bool visitor = false;
    bool trace = false;
    Photo photo;
};

/// The persons of a site. A person depends on seed and ID alone, not on how many there are; the
/// first few are the same for every seed, so that examples can name them.
class Persons {
public:
    Persons(std::uint64_t seed, int photos) : seed_(seed), photos_(photos) {}
    [[nodiscard]] Person person(int id) const;

private:
    [[nodiscard]] Person invented(int id) const;
    [[nodiscard]] Photo photoOf(int id) const;

    std::uint64_t seed_;
    int photos_; ///< only the persons up to this ID may have a photo
};

/// The persons up to this ID are the same ones for every seed, one of every kind that matters.
int exampleCount();

/// "LName, FName", as lists show it.
std::string displayName(const Person& person);

/// A person whose name is written from right to left.
bool isRightToLeft(const Person& person);

} // namespace kintar::site
