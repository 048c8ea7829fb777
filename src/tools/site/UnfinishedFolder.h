// The folder in which a site is put together before it has its name.
#pragma once

#include "platform/Descriptor.h"

#include <filesystem>

namespace kintar::site {

/// A folder beside the place of a site, `.NAME.unfinished-XXXXXX`, removed again unless it has been
/// moved there. It is locked for as long as this lives, so that nobody takes it for one that a lost
/// process has left.
class UnfinishedFolder {
public:
    /// Throws SiteError where none can be made.
    explicit UnfinishedFolder(const std::filesystem::path& place);
    UnfinishedFolder(const UnfinishedFolder&) = delete;
    UnfinishedFolder& operator=(const UnfinishedFolder&) = delete;
    ~UnfinishedFolder();

    [[nodiscard]] const std::filesystem::path& path() const { return path_; }

    /// Gives the folder its name. Throws SiteError where something stands there meanwhile.
    void moveTo(const std::filesystem::path& place, std::filesystem::perms permissions);

private:
    std::filesystem::path path_;
    platform::Descriptor lock_;
};

/// Removes what ended processes of this user have left unfinished for the same place. Folders that
/// are being filled, other users' and links are left alone; what cannot be removed stays.
void removeAbandoned(const std::filesystem::path& place);

} // namespace kintar::site
