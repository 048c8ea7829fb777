// A line of the raw language: words, quoted where they hold blanks.
#pragma once

#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace kintar::ctl {

/// What a person wrote wrong: an argument, or a line of the raw language.
class UsageError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// The words of a line. Blanks and tabs separate them. "…" holds blanks and knows \\ \" \n \r \t;
/// '…' takes all as it stands. What follows a # at the start of a word is a comment.
/// Throws UsageError where a quote is not closed or an escape is unknown.
std::vector<std::string> splitWords(std::string_view line);

/// A text on one line: backslash, line feed, carriage return and tab as \\ \n \r \t.
std::string onOneLine(std::string_view text);

} // namespace kintar::ctl
