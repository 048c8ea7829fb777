// The command that switches a card on or off, as the import service reads it.
#pragma once

#include "base/DateTime.h"
#include "base/LocaleFormats.h"
#include "base/RunTimeError.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace kintar {

/// The last number of a command file.
inline constexpr int lastCommandNumber = 32000;

/// The date on which a card stops.
///
/// Disabling: now. Enabling without a rule file: tomorrow at 00:00. With one, its first line is a
/// number of days from today, or "9999" for 12/31/9999; the first line after it that is not empty
/// is a time of that day. Nothing where the first line is empty. Raises run-time error 13 where the
/// time cannot be read, 6 where the date lies beyond year 9999.
std::optional<DateTime> cardStopDate(bool enable, DateTime now,
                                     const std::optional<std::string>& ruleFile,
                                     const LocaleFormats& formats);

/// Whether a card code may be written: one printable whole number above 0. False for a number that
/// is not above 0; run-time error 13 for anything else.
bool isCardCode(std::string_view code);

/// The five lines, each with CR LF.
std::string cardCommandText(std::int32_t id, std::int32_t locGrp, std::string_view code,
                            DateTime stopDate, const LocaleFormats& formats);

/// The first number from `from` on whose file name is not among `existing` (their case ignored);
/// nothing where all up to 32000 are taken.
std::optional<int> freeCommandNumber(const std::vector<std::string>& existing, int from = 1);

/// What is reported where no number is free.
RunTimeError allNamesTaken();

/// "^IMP3.txt".
std::string commandFileName(int number);

/// What the command needs to know.
struct CardCommandInput {
    bool enable = false;
    std::int32_t id = 0;
    std::int32_t locGrp = 0;
    std::string code;
    DateTime now;
    LocaleFormats formats;
    std::optional<std::string> ruleFile; ///< the text of "CardEnable.txt", where there is one
    std::vector<std::string> existing;   ///< the names in the shared data folder
};

/// What comes of it.
struct CardCommandResult {
    bool written = false;                ///< whether the staging file is written
    std::string staging;                 ///< its text; empty where it is not
    std::optional<DateTime> stopDate;    ///< nothing where it came to none
    std::optional<std::string> fileName; ///< the name dropped; nothing where none is
    /// Why nothing was dropped; empty where it was, or where a code of 0 just ended the command.
    std::string error;
    int errorNumber = 0; ///< its number, 0 where there is none
};

/// The whole command without a file being touched. Never throws: an error of the rules is in the
/// result.
CardCommandResult planCardCommand(const CardCommandInput& input);

} // namespace kintar
