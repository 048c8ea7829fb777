// Finding photo files as the original's file system would.
#pragma once

#include <filesystem>
#include <map>
#include <set>
#include <string>
#include <string_view>
#include <vector>

namespace kintar::site {

enum class PhotoPlace : std::uint8_t {
    Found,
    Missing,
    Outside,    ///< the name leads, or might lead, out of the photo folder
    NoPlainFile ///< a folder, a pipe, a device, or a link
};

/// A photo folder. Names are read with both kinds of separator and without regard to the case of
/// ASCII letters. Folders are listed once and remembered.
class PhotoFolder {
public:
    explicit PhotoFolder(std::filesystem::path root) : root_(std::move(root)) {}
    PhotoPlace find(std::string_view fileName);

private:
    /// The names in a folder by their lower case. Empty where it cannot be listed.
    const std::multimap<std::string, std::string>& names(const std::filesystem::path& folder);

    std::filesystem::path root_;
    std::map<std::filesystem::path, std::multimap<std::string, std::string>> listed_;
};

/// ASCII letters in lower case, backslashes as slashes.
std::string comparablePath(std::string_view fileName);

} // namespace kintar::site
