// What the server and its photo worker say to each other over a socket.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace kintar::platform {

/// A photo wanted: the file and the box that it is to fit, in device pixels.
struct PhotoQuestion {
    std::uint32_t number = 0; ///< comes back with the answer; never 0
    std::int32_t width = 0;
    std::int32_t height = 0;
    std::string folder;   ///< the Images folder
    std::string fileName; ///< below it, as the database gives it
};

/// Stands before an answer's pixels: `width` times `height` of 4 bytes each, premultiplied ARGB in
/// the machine's order, row after row. Width 0: there is no such photo, and no pixels follow.
/// Number 0: the worker is ready.
struct PhotoAnswer {
    static constexpr std::uint32_t mark = 0x4B503131;

    std::uint32_t magic = mark;
    std::uint32_t number = 0;
    std::uint32_t width = 0;
    std::uint32_t height = 0;

    /// Whether a worker that was asked this may have answered so.
    [[nodiscard]] bool answers(const PhotoQuestion& question) const;
    [[nodiscard]] std::size_t bytes() const { return std::size_t{4} * width * height; }
};

/// The largest box on either side; larger ones are cut.
inline constexpr std::int32_t largestPhotoSide = 8192;
/// The longest question, in bytes, its length field included.
inline constexpr std::size_t longestQuestion = 16384;

/// The question as bytes, its length before it; nothing where a text of it is too long.
std::optional<std::string> encodeQuestion(const PhotoQuestion& question);
/// The question of these bytes, the length field left out; nothing where they are none.
std::optional<PhotoQuestion> decodeQuestion(std::string_view bytes);

/// Reads or writes all of it on a blocking descriptor; false at its end or an error.
bool readFully(int descriptor, void* to, std::size_t length);
bool writeFully(int descriptor, const void* from, std::size_t length);

} // namespace kintar::platform
