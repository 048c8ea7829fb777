// Writes a card command and drops it where the import service looks.
#pragma once

#include "base/LocaleFormats.h"
#include "platform/Platform.h"

#include <cstdint>
#include <string>

namespace kintar {

/// Whose card, and where it is switched.
struct CardCommandOrder {
    bool enable = false;
    std::int32_t id = 0;
    std::int32_t locGrp = 0;
    std::string code;
    std::string applicationFolder; ///< holds "Errors" and "CardEnable.txt"
    std::string dataPath;          ///< where the command is dropped
};

class CardCommandWriter {
public:
    /// Both must outlive the writer.
    CardCommandWriter(platform::Files& files, const platform::Clock& clock, LocaleFormats formats);

    /// Writes the staging file and drops the command under the first free name; a name that
    /// somebody takes in that moment means the next one. What is dropped comes from memory: the
    /// staging file may be another server's by then. It stays where it is.
    ///
    /// False where the code is not above 0, which writes nothing and is no error. Throws
    /// RunTimeError, or std::system_error where a file cannot be read or written; nothing is
    /// half-written then.
    bool write(const CardCommandOrder& order);

private:
    void drop(const std::string& dataPath, const std::string& command);

    platform::Files& files_;
    const platform::Clock& clock_;
    LocaleFormats formats_;
};

} // namespace kintar
