#include "platform/CupsAnswers.h"

namespace kintar::platform {
namespace {

constexpr std::string_view defaultStart = "system default destination: ";
constexpr std::string_view deviceStart = "device for ";

std::string_view takeLine(std::string_view& rest) {
    const std::size_t end = rest.find('\n');
    const std::string_view line = rest.substr(0, end);
    rest.remove_prefix(end == std::string_view::npos ? rest.size() : end + 1);
    return line;
}

} // namespace

PrinterList readPrinterList(std::string_view answer) {
    PrinterList list;
    while (!answer.empty()) {
        std::string_view line = takeLine(answer);
        if (line.starts_with(defaultStart)) {
            list.defaultDevice = line.substr(defaultStart.size());
        } else if (line.starts_with(deviceStart)) {
            line.remove_prefix(deviceStart.size());
            const std::size_t colon = line.find(": ");
            if (colon != std::string_view::npos && colon > 0) {
                list.printers.push_back({std::string(line.substr(0, colon)), "CUPS",
                                         std::string(line.substr(colon + 2))});
            }
        }
    }
    return list;
}

std::string firstComplaint(std::string_view standardError) {
    std::string_view line = takeLine(standardError);
    for (const std::string_view program : {"lp: ", "lpstat: ", "Error - "}) {
        if (line.starts_with(program)) {
            line.remove_prefix(program.size());
        }
    }
    return std::string(line);
}

} // namespace kintar::platform
