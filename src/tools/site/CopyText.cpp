#include "tools/site/CopyText.h"

namespace kintar::site {

namespace {

void appendEscaped(std::string& out, std::string_view text) {
    for (const char c : text) {
        switch (c) {
        case '\\':
            out += "\\\\";
            break;
        case '\t':
            out += "\\t";
            break;
        case '\n':
            out += "\\n";
            break;
        case '\r':
            out += "\\r";
            break;
        default:
            out += c;
            break;
        }
    }
}

} // namespace

void CopyText::add(std::span<const SiteValue> row) {
    bool first = true;
    for (const SiteValue& value : row) {
        text_ += first ? "" : "\t";
        first = false;
        add(value);
    }
    text_ += '\n';
}

void CopyText::add(const SiteValue& value) {
    if (const auto* whole = std::get_if<std::int64_t>(&value)) {
        text_ += std::to_string(*whole);
    } else if (const auto* text = std::get_if<std::string_view>(&value)) {
        appendEscaped(text_, *text);
    } else if (const auto* moment = std::get_if<DateTime>(&value)) {
        text_ += moment->isoWithBlank();
    } else {
        text_ += "\\N";
    }
}

} // namespace kintar::site
