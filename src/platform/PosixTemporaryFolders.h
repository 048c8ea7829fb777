// The temporary folder of a POSIX system, and the folder in it that is this process's own.
#pragma once

#include "platform/Descriptor.h"
#include "platform/Platform.h"

#include <sys/types.h>

namespace kintar::platform {

/// `$TMPDIR`, else `$XDG_RUNTIME_DIR`, else `/tmp`; a value that is no absolute path does not
/// count.
///
/// Every error is a std::system_error whose text names the folder and what is wrong with it.
class PosixTemporaryFolders final : public TemporaryFolders {
public:
    [[nodiscard]] std::string systemFolder() const override;
    /// Asked again for a folder that this process holds already, it checks it again.
    void makeOwn(const std::string& folder) override;
    void deleteFiles(const std::string& folder) override;

private:
    struct Held {
        dev_t device = 0;
        ino_t node = 0;
        Descriptor folder;
    };

    [[nodiscard]] bool holds(dev_t device, ino_t node) const;

    std::vector<Held> held_;
};

} // namespace kintar::platform
