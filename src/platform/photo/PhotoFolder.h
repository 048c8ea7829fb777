// Finds photo files by the names that the database gives, and nothing outside of their folder.
#pragma once

#include "platform/Descriptor.h"

#include <ctime>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <sys/types.h>

namespace kintar::platform {

/// The parts of a file name below the Images folder; both kinds of separator count. Nothing where
/// it is empty, absolute (a leading separator, a drive), climbs with "..", holds a NUL, or is
/// longer than any path.
std::optional<std::vector<std::string>> photoNameParts(std::string_view fileName);

/// Opens photo files for reading. The case of letters is ignored, as it was on the file system that
/// the names were made for: the exact name first, else the first that differs in case only.
///
/// Folder listings are kept as long as the folder stays unchanged.
class PhotoFolder {
public:
    /// A plain file below `folder`; empty where there is none, where it is a folder, a pipe or a
    /// device, or where a link on the way leads out of `folder`. Never waits for a pipe.
    Descriptor open(const std::string& folder, std::string_view fileName);

private:
    /// A folder as it was when it was listed.
    struct Listing {
        dev_t device = 0;
        ino_t node = 0;
        std::timespec changed{};
        std::multimap<std::string, std::string> namesByFolded;
    };

    std::optional<std::string> actualPath(int root, const std::vector<std::string>& parts);
    std::optional<std::string> actualName(const std::string& key, int folder,
                                          const std::string& name);
    const Listing& listing(const std::string& key, int folder);

    std::map<std::string, Listing> listings_;
};

} // namespace kintar::platform
