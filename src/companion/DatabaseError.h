// What can go wrong with a statement or a database.
#pragma once

#include "base/RunTimeError.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>

namespace kintar::companion {

enum class ErrorKind : std::uint8_t {
    Syntax,       ///< the text is no statement of the dialect
    UnknownName,  ///< a table or column that is not there, or that could be several
    TypeMismatch, ///< values that cannot meet: a text for a date
    Closed,
    Missing,
    Damaged,
    Locked,
    ReadOnly,
    DiskFull,
    Constraint,
    Unreachable,    ///< no connection to the database server, or lost before anything was written
    TimedOut,       ///< it took longer than it may
    OutcomeUnknown, ///< a change was sent and no answer came: it may have been made, or not
    Other,
};

/// The one error of statements and databases. Its text never quotes a value of the statement: error
/// texts go to the log, and values are people's names.
///
/// Numbers: -2147217900 for what is wrong with the statement, 3709 for a closed connection,
/// -2147467259 for everything else.
class DatabaseError : public RunTimeError {
public:
    DatabaseError(ErrorKind kind, const std::string& text);
    /// An error of a statement; `offset` is the byte where it was noticed. The text gets its
    /// position in front: "Position 12: …", counted in characters from 1.
    static DatabaseError inStatement(ErrorKind kind, std::string_view statement, std::size_t offset,
                                     const std::string& text);
    static DatabaseError closed();

    [[nodiscard]] ErrorKind kind() const { return kind_; }
    /// The character of the statement where it was noticed, 1 the first; nothing where the
    /// statement is not at fault.
    [[nodiscard]] std::optional<std::size_t> position() const { return position_; }

private:
    ErrorKind kind_;
    std::optional<std::size_t> position_;
};

} // namespace kintar::companion
