#include "reports/PrinterMap.h"

#include "base/Unicode.h"

#include <algorithm>

namespace kintar::reports {
namespace {

constexpr std::string_view byteOrderMark = "\xEF\xBB\xBF";

std::string_view takeLine(std::string_view& rest) {
    const std::size_t end = rest.find_first_of("\r\n");
    const std::string_view line = rest.substr(0, end);
    if (end == std::string_view::npos) {
        rest = {};
        return line;
    }
    const bool both = rest.substr(end, 2) == "\r\n";
    rest.remove_prefix(end + (both ? 2 : 1));
    return line;
}

std::string_view trimmedOfBlanks(std::string_view text) {
    const std::size_t first = text.find_first_not_of(' ');
    if (first == std::string_view::npos) {
        return {};
    }
    return text.substr(first, text.find_last_not_of(' ') - first + 1);
}

std::string_view withoutLastCharacter(std::string_view text) {
    const auto first =
        std::ranges::find_if_not(text.rbegin(), text.rend(), unicode::continuesCharacter);
    return first == text.rend() ? std::string_view() : text.substr(0, text.rend() - first - 1);
}

} // namespace

void applyPrinterMap(std::string_view map, std::int32_t loc, PrinterChoice& choice) {
    if (map.starts_with(byteOrderMark)) {
        map.remove_prefix(byteOrderMark.size());
    }
    const std::string number = std::to_string(loc);
    const std::string betweenCommas = ',' + number + ',';
    while (!map.empty()) {
        std::string_view line = takeLine(map);
        const std::size_t semicolon = line.find(';');
        choice.printer =
            semicolon == std::string_view::npos ? std::string() : line.substr(semicolon + 1);
        line = line.substr(0, semicolon);
        const bool commas = line.find(',') != std::string_view::npos;
        if (line.find(commas ? betweenCommas : number) == std::string_view::npos) {
            continue;
        }
        choice.locationList = commas ? withoutLastCharacter(line) : trimmedOfBlanks(line);
        return;
    }
}

} // namespace kintar::reports
