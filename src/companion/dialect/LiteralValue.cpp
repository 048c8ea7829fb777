#include "companion/dialect/LiteralValue.h"

#include "base/Unicode.h"

#include <cstdlib>

namespace kintar::companion::dialect {

namespace {

/// What does not stand for itself in a text literal.
constexpr std::string_view special("'\0", 2);

/// Takes a date-time literal apart from left to right.
class DateTimeReader {
public:
    explicit DateTimeReader(std::string_view text) : rest_(text) {}

    bool read(DateTime& value) {
        int fields[6] = {1899, 12, 30, 0, 0, 0};
        skipBlanks();
        const bool timeAlone = rest_.substr(0, 3).find(':') != std::string_view::npos;
        bool good = timeAlone || date(fields);
        skipBlanks();
        if (good && !rest_.empty()) {
            good = time(fields);
        }
        skipBlanks();
        if (!good || !rest_.empty()) {
            return false;
        }
        const auto read =
            DateTime::fromFields(fields[0], fields[1], fields[2], fields[3], fields[4], fields[5]);
        value = read.value_or(DateTime());
        return read.has_value();
    }

private:
    void skipBlanks() {
        while (rest_.starts_with(' ')) {
            rest_.remove_prefix(1);
        }
    }

    bool take(char expected) {
        if (!rest_.starts_with(expected)) {
            return false;
        }
        rest_.remove_prefix(1);
        return true;
    }

    /// A number of `least` to `most` digits.
    bool number(int& value, std::size_t least, std::size_t most) {
        std::size_t digits = 0;
        value = 0;
        while (digits < rest_.size() && rest_[digits] >= '0' && rest_[digits] <= '9') {
            if (digits == most) {
                return false;
            }
            value = value * 10 + (rest_[digits++] - '0');
        }
        rest_.remove_prefix(digits);
        return digits >= least;
    }

    bool date(int* fields) {
        if (rest_.size() > 4 && rest_[4] == '-') {
            return number(fields[0], 4, 4) && take('-') && number(fields[1], 1, 2) && take('-') &&
                   number(fields[2], 1, 2);
        }
        return number(fields[1], 1, 2) && take('/') && number(fields[2], 1, 2) && take('/') &&
               number(fields[0], 4, 4);
    }

    bool time(int* fields) {
        if (!number(fields[3], 1, 2) || !take(':') || !number(fields[4], 2, 2)) {
            return false;
        }
        if (take(':') && !number(fields[5], 2, 2)) {
            return false;
        }
        skipBlanks();
        return rest_.empty() || halfDay(fields[3]);
    }

    bool halfDay(int& hour) {
        if (rest_.size() != 2 || (rest_[1] | 0x20) != 'm' || hour < 1 || hour > 12) {
            return false;
        }
        const int letter = rest_[0] | 0x20;
        rest_.remove_prefix(2);
        hour = hour % 12 + (letter == 'p' ? 12 : 0);
        return letter == 'a' || letter == 'p';
    }

    std::string_view rest_;
};

} // namespace

std::string LiteralValue::text() const {
    if (!hasDoubledQuotes) {
        return std::string(raw);
    }
    // Which quote is doubled does not stand in the view itself, but just in front of it.
    const char quote = *(raw.data() - 1);
    std::string result;
    result.reserve(raw.size());
    for (std::size_t at = 0; at < raw.size(); ++at) {
        result += raw[at];
        if (raw[at] == quote) {
            ++at;
        }
    }
    return result;
}

double LiteralValue::real() const {
    return kind == LiteralKind::Integer ? static_cast<double>(integer)
                                        : std::strtod(std::string(raw).c_str(), nullptr);
}

std::string textLiteral(std::string_view text) {
    const std::string valid = unicode::toValidUtf8(text);
    std::string literal;
    literal.reserve(valid.size() + 2);
    literal += '\'';
    std::size_t copied = 0;
    for (std::size_t at = valid.find_first_of(special); at != std::string::npos;
         at = valid.find_first_of(special, copied)) {
        literal.append(valid, copied, at - copied);
        literal += valid[at] == '\'' ? "''" : "\uFFFD";
        copied = at + 1;
    }
    literal.append(valid, copied);
    return literal += '\'';
}

std::string dateTimeLiteral(DateTime value) {
    const std::string iso = value.isoWithBlank(); // 2012-03-14 17:05:00
    std::string literal = "#00/00/0000 00:00:00#";
    literal.replace(1, 2, iso, 5, 2);
    literal.replace(4, 2, iso, 8, 2);
    literal.replace(7, 4, iso, 0, 4);
    literal.replace(12, 8, iso, 11, 8);
    return literal;
}

bool readDateTimeLiteral(std::string_view text, DateTime& value) {
    return DateTimeReader(text).read(value);
}

} // namespace kintar::companion::dialect
