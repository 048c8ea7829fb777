// The interfaces to the operating system. No toolkit here; adapters and test twins implement them.
#pragma once

#include "base/DateTime.h"
#include "base/LocaleFormats.h"

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace kintar::platform {

class Clock {
public:
    virtual ~Clock() = default;
    /// The workstation's local date and time.
    [[nodiscard]] virtual DateTime now() const = 0;
    [[nodiscard]] virtual DateTime utcNow() const = 0;
};

/// Per-user settings of the application "Tarnholm_Gates", shared with the client program.
class SettingsStore {
public:
    virtual ~SettingsStore() = default;
    virtual std::string get(std::string_view section, std::string_view key,
                            std::string_view otherwise) = 0;
    /// On disk, whole, when it returns; throws std::system_error where that fails.
    virtual void save(std::string_view section, std::string_view key, std::string_view value) = 0;
};

/// The program: its folder, its version, what it tells the operator in a box.
class Application {
public:
    virtual ~Application() = default;
    /// The application's folder, without a closing separator.
    [[nodiscard]] virtual std::string folder() const = 0;
    /// Major, minor, revision.
    struct Version {
        int major = 0;
        int minor = 0;
        int revision = 0;
    };
    [[nodiscard]] virtual Version version() const = 0;
    virtual void setHelpFile(const std::string& path) = 0;
    [[nodiscard]] virtual std::string helpFile() const = 0;
    /// A message box with one button, titled as the application. Returns when it is closed; the bus
    /// and all windows go on meanwhile.
    virtual void messageBox(const std::string& text) = 0;
    /// Lets pending window messages run: painting, input, timers; never the bus.
    virtual void runPendingWindowMessages() = 0;
};

/// The folder for temporary files, and the one lock on ours.
class TemporaryFolders {
public:
    virtual ~TemporaryFolders() = default;
    /// The system's temporary folder with its closing separator; empty where there is none.
    [[nodiscard]] virtual std::string systemFolder() const = 0;
    /// Makes `folder` for the user alone (0700). Throws std::system_error where it is there and is
    /// not the user's own plain folder of that kind, or where another process holds its lock; else
    /// it is locked until this process ends.
    virtual void makeOwn(const std::string& folder) = 0;
    /// Deletes the files of a folder, not its folders and not what its links point to.
    virtual void deleteFiles(const std::string& folder) = 0;
};

/// Text files of small size, and files that must appear whole.
class Files {
public:
    virtual ~Files() = default;
    /// Nothing where there is no such file; throws std::system_error where it cannot be read or is
    /// larger than `limit` bytes.
    virtual std::optional<std::string> read(const std::string& path, std::size_t limit) = 0;
    virtual void deleteIfExists(const std::string& path) = 0;
    /// Makes the file new, or appends to it.
    virtual void append(const std::string& path, std::string_view text) = 0;
    /// The names in a folder.
    virtual std::vector<std::string> names(const std::string& folder) = 0;
    /// Makes `path` with this content, whole and on disk, or not at all; false where the name is
    /// taken. Throws std::system_error where nothing could be written.
    virtual bool createWhole(const std::string& path, std::string_view content) = 0;
};

/// A path from `base` and a path of the rules with backslashes as separators.
std::string rulePath(const std::string& base, std::string_view rulePart);

} // namespace kintar::platform
