#include "search/WebAddress.h"

#include <algorithm>
#include <cctype>
#include <vector>

namespace kintar::search {
namespace {

constexpr std::size_t longestAddress = 2048;

bool isAsciiDigit(char c) {
    return c >= '0' && c <= '9';
}

bool isAsciiLetter(char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}

bool isHostCharacter(char c) {
    // Letters of other scripts are bytes above ASCII: the browser makes the host's name of them.
    return isAsciiDigit(c) || isAsciiLetter(c) || c == '-' || static_cast<unsigned char>(c) >= 0x80;
}

std::string_view trimmed(std::string_view text) {
    constexpr std::string_view blanks = " \t\r\n";
    const std::size_t first = text.find_first_not_of(blanks);
    if (first == std::string_view::npos) {
        return {};
    }
    return text.substr(first, text.find_last_not_of(blanks) - first + 1);
}

bool hasForbiddenCharacter(std::string_view text) {
    return std::any_of(text.begin(), text.end(), [](char c) {
        const auto byte = static_cast<unsigned char>(c);
        return byte <= 0x20 || byte == 0x7f || c == '"' || c == '\'' || c == '`' || c == '<' ||
               c == '>' || c == '\\';
    });
}

bool startsWithScheme(std::string_view text, std::string_view scheme) {
    return text.size() >= scheme.size() &&
           std::equal(scheme.begin(), scheme.end(), text.begin(), [](char wanted, char c) {
               return wanted == static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
           });
}

std::vector<std::string_view> labelsOf(std::string_view host) {
    std::vector<std::string_view> labels;
    while (true) {
        const std::size_t dot = host.find('.');
        labels.push_back(host.substr(0, dot));
        if (dot == std::string_view::npos) {
            return labels;
        }
        host.remove_prefix(dot + 1);
    }
}

bool isLabel(std::string_view label) {
    return !label.empty() && label.front() != '-' && label.back() != '-' &&
           std::all_of(label.begin(), label.end(), isHostCharacter);
}

bool isByteNumber(std::string_view label) {
    return !label.empty() && label.size() <= 3 &&
           std::all_of(label.begin(), label.end(), isAsciiDigit) &&
           std::stoi(std::string(label)) <= 255;
}

/// Two labels or more of which the last is no number (`3.14` and `1.2.2024` are none), four
/// numbers, or this machine.
bool looksLikeHost(std::string_view host) {
    if (startsWithScheme(host, "localhost") &&
        host.size() == std::string_view("localhost").size()) {
        return true;
    }
    const std::vector<std::string_view> labels = labelsOf(host);
    if (!std::all_of(labels.begin(), labels.end(), isLabel) || labels.size() < 2) {
        return false;
    }
    const std::string_view last = labels.back();
    if (!std::all_of(last.begin(), last.end(), isAsciiDigit)) {
        return last.size() >= 2;
    }
    return labels.size() == 4 && std::all_of(labels.begin(), labels.end(), isByteNumber);
}

bool isPort(std::string_view text) {
    return !text.empty() && text.size() <= 5 && std::all_of(text.begin(), text.end(), isAsciiDigit);
}

/// host, optionally `:port`, optionally a path, query or fragment.
bool looksLikeHostAndMore(std::string_view text) {
    std::string_view authority = text.substr(0, text.find_first_of("/?#"));
    const std::size_t colon = authority.find(':');
    if (colon != std::string_view::npos) {
        if (!isPort(authority.substr(colon + 1))) {
            return false;
        }
        authority = authority.substr(0, colon);
    }
    return looksLikeHost(authority);
}

/// What follows `http://` must begin with a host.
bool hasHost(std::string_view afterScheme) {
    return !afterScheme.empty() &&
           (isHostCharacter(afterScheme.front()) || afterScheme.front() == '[');
}

} // namespace

WebAddress webAddress(std::string_view text) {
    const std::string_view candidate = trimmed(text);
    if (candidate.empty()) {
        return {};
    }
    WebAddress refused{.kind = WebAddress::Kind::Refused, .address = {}};
    if (candidate.size() > longestAddress || hasForbiddenCharacter(candidate)) {
        return refused;
    }
    for (const std::string_view scheme :
         {std::string_view("http://"), std::string_view("https://")}) {
        if (startsWithScheme(candidate, scheme)) {
            return hasHost(candidate.substr(scheme.size()))
                       ? WebAddress{WebAddress::Kind::Open, std::string(candidate)}
                       : refused;
        }
    }
    return looksLikeHostAndMore(candidate)
               ? WebAddress{WebAddress::Kind::Open, "http://" + std::string(candidate)}
               : refused;
}

} // namespace kintar::search
