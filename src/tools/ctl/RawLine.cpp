#include "tools/ctl/RawLine.h"

#include <optional>
#include <utility>

namespace kintar::ctl {

namespace {

bool isBlank(char c) {
    return c == ' ' || c == '\t' || c == '\r';
}

char unescaped(char c) {
    switch (c) {
    case 'n':
        return '\n';
    case 'r':
        return '\r';
    case 't':
        return '\t';
    case '"':
    case '\\':
        return c;
    default:
        throw UsageError(std::string("unknown escape \\") + c + " in a quoted text");
    }
}

// The position behind the closing quote; what stands between goes to `word`.
std::size_t readQuoted(std::string_view line, std::size_t start, std::string& word) {
    const char quote = line[start];
    for (std::size_t i = start + 1; i < line.size(); ++i) {
        if (line[i] == quote) {
            return i + 1;
        }
        if (quote == '"' && line[i] == '\\' && i + 1 < line.size()) {
            word += unescaped(line[++i]);
        } else {
            word += line[i];
        }
    }
    throw UsageError(std::string("a text that begins with ") + quote + " is not closed");
}

} // namespace

std::vector<std::string> splitWords(std::string_view line) {
    std::vector<std::string> words;
    std::optional<std::string> word;
    for (std::size_t i = 0; i < line.size();) {
        const char c = line[i];
        if (isBlank(c)) {
            if (word) {
                words.push_back(*std::exchange(word, std::nullopt));
            }
            ++i;
        } else if (c == '#' && !word) {
            break;
        } else if (c == '"' || c == '\'') {
            word = word.value_or("");
            i = readQuoted(line, i, *word);
        } else {
            word = word.value_or("") + c;
            ++i;
        }
    }
    if (word) {
        words.push_back(*word);
    }
    return words;
}

std::string onOneLine(std::string_view text) {
    std::string line;
    for (const char c : text) {
        switch (c) {
        case '\\':
            line += "\\\\";
            break;
        case '\n':
            line += "\\n";
            break;
        case '\r':
            line += "\\r";
            break;
        case '\t':
            line += "\\t";
            break;
        default:
            line += c;
        }
    }
    return line;
}

} // namespace kintar::ctl
