#include "display/CardCommand.h"

#include "base/Number.h"
#include "base/RunTimeError.h"
#include "base/Unicode.h"

#include <algorithm>
#include <array>
#include <bitset>
#include <charconv>

namespace kintar {

namespace {

constexpr std::string_view byteOrderMark = "\xEF\xBB\xBF";
constexpr std::string_view noEndLine = "9999";
constexpr std::string_view lineEnd = "\r\n";

/// The first line and the first line behind it that is not empty. A line ends at CR, LF or both.
std::array<std::string_view, 2> ruleLines(std::string_view text) {
    if (text.starts_with(byteOrderMark)) {
        text.remove_prefix(byteOrderMark.size());
    }
    std::array<std::string_view, 2> lines;
    bool first = true;
    while (!text.empty() && lines[1].empty()) {
        const std::size_t end = std::min(text.find_first_of("\r\n"), text.size());
        lines[first ? 0 : 1] = text.substr(0, end);
        first = false;
        text.remove_prefix(end);
        text.remove_prefix(text.starts_with(lineEnd) ? lineEnd.size() : text.empty() ? 0 : 1);
    }
    return lines;
}

std::string_view withoutBlanksAround(std::string_view text) {
    const std::size_t start = text.find_first_not_of(" \t");
    if (start == std::string_view::npos) {
        return {};
    }
    return text.substr(start, text.find_last_not_of(" \t") - start + 1);
}

DateTime lastDay() {
    return DateTime(std::chrono::local_days(std::chrono::year(9999) / 12 / 31));
}

/// The number of a command file's name, 0 where it is none. The name is folded already.
int numberOfName(std::string_view folded) {
    constexpr std::string_view start = "^imp";
    constexpr std::string_view end = ".txt";
    if (!folded.starts_with(start) || !folded.ends_with(end) ||
        folded.size() <= start.size() + end.size()) {
        return 0;
    }
    const std::string_view digits =
        folded.substr(start.size(), folded.size() - start.size() - end.size());
    int number = 0;
    const auto [rest, error] =
        std::from_chars(digits.data(), digits.data() + digits.size(), number);
    const bool whole = error == std::errc() && rest == digits.data() + digits.size();
    // "^IMP01.txt" is another name than "^IMP1.txt".
    return whole && digits.front() != '0' && number <= lastCommandNumber ? std::max(number, 0) : 0;
}

void planFile(const CardCommandInput& input, CardCommandResult& result) {
    result.stopDate = cardStopDate(input.enable, input.now, input.ruleFile, input.formats);
    if (!isCardCode(input.code)) {
        return;
    }
    if (!result.stopDate) {
        throw RunTimeError(62, "Input past end of file: the first line of CardEnable.txt is empty");
    }
    result.staging =
        cardCommandText(input.id, input.locGrp, input.code, *result.stopDate, input.formats);
    result.written = true;
    if (const std::optional<int> number = freeCommandNumber(input.existing)) {
        result.fileName = commandFileName(*number);
    } else {
        throw allNamesTaken();
    }
}

} // namespace

std::optional<DateTime> cardStopDate(bool enable, DateTime now,
                                     const std::optional<std::string>& ruleFile,
                                     const LocaleFormats& formats) {
    if (!enable) {
        return now;
    }
    const DateTime today = now.dateOnly();
    if (!ruleFile) {
        return today.plusDays(1);
    }
    const auto [days, time] = ruleLines(*ruleFile);
    if (days.empty()) {
        return std::nullopt;
    }
    const DateTime date =
        withoutBlanksAround(days) == noEndLine ? lastDay() : today.plusDays(leadingNumber(days));
    if (time.empty()) {
        return date;
    }
    return formats.parse(formats.formatShortDate(date) + " " + std::string(time));
}

bool isCardCode(std::string_view code) {
    const std::string number = wholeNumber(code);
    const bool printable =
        std::all_of(code.begin(), code.end(), [](char c) { return c >= ' ' && c <= '~'; });
    if (!printable) {
        throw RunTimeError::typeMismatch();
    }
    return isPositive(number);
}

std::string cardCommandText(std::int32_t id, std::int32_t locGrp, std::string_view code,
                            DateTime stopDate, const LocaleFormats& formats) {
    const auto line = [](const std::string& text) { return text + std::string(lineEnd); };
    // The time brings a blank of its own: two blanks stand between date and time. That is meant.
    return line("I L" + std::to_string(locGrp) + " NameID ^" + std::to_string(id) + "^^^") +
           line("T Cards") + line("F Code ^" + std::string(code) + "^^^") +
           line("F StopDate ^" + formats.formatShortDate(stopDate) + " " +
                formatBlankTime24(stopDate) + "^^^") +
           line("W");
}

std::optional<int> freeCommandNumber(const std::vector<std::string>& existing, int from) {
    std::bitset<lastCommandNumber + 1> taken;
    for (const std::string& name : existing) {
        taken.set(static_cast<std::size_t>(numberOfName(unicode::fold(name))));
    }
    for (int number = from; number <= lastCommandNumber; ++number) {
        if (!taken.test(static_cast<std::size_t>(number))) {
            return number;
        }
    }
    return std::nullopt;
}

RunTimeError allNamesTaken() {
    return {67, "Too many files: all names from ^IMP1.txt to ^IMP32000.txt are taken"};
}

std::string commandFileName(int number) {
    return "^IMP" + std::to_string(number) + ".txt";
}

CardCommandResult planCardCommand(const CardCommandInput& input) {
    CardCommandResult result;
    try {
        planFile(input, result);
    } catch (const RunTimeError& error) {
        result.error = error.what();
        result.errorNumber = error.number();
    }
    return result;
}

} // namespace kintar
