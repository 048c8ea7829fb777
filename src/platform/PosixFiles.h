// Files of a POSIX system.
#pragma once

#include "platform/Platform.h"

namespace kintar::platform {

/// Plain files only: a folder, a pipe or a device in a file's place is an error, never waited for.
/// Every error is a std::system_error whose text names the file and what was to be done with it.
class PosixFiles final : public Files {
public:
    std::optional<std::string> read(const std::string& path, std::size_t limit) override;
    void deleteIfExists(const std::string& path) override;
    /// Appends all of the text, or leaves the file as it was. Does not write through a link.
    void append(const std::string& path, std::string_view text) override;
    /// Without "." and "..", in no order.
    std::vector<std::string> names(const std::string& folder) override;
    /// Writes a hidden file beside `path` and gives it that name in one step, so that nobody ever
    /// sees a part of it and no file is replaced. Whatever fails, the hidden file goes again.
    bool createWhole(const std::string& path, std::string_view content) override;
};

} // namespace kintar::platform
