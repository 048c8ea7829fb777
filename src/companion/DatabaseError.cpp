#include "companion/DatabaseError.h"

#include "base/Unicode.h"

#include <algorithm>
#include <string_view>

namespace kintar::companion {

namespace {

constexpr int statementError = -2147217900;
constexpr int closedConnection = 3709;
constexpr int unspecifiedError = -2147467259;

int numberOf(ErrorKind kind) {
    switch (kind) {
    case ErrorKind::Syntax:
    case ErrorKind::UnknownName:
    case ErrorKind::TypeMismatch:
        return statementError;
    case ErrorKind::Closed:
        return closedConnection;
    default:
        return unspecifiedError;
    }
}

} // namespace

DatabaseError::DatabaseError(ErrorKind kind, const std::string& text)
    : RunTimeError(numberOf(kind), text), kind_(kind) {}

DatabaseError DatabaseError::inStatement(ErrorKind kind, std::string_view statement,
                                         std::size_t offset, const std::string& text) {
    const std::string_view before = statement.substr(0, std::min(offset, statement.size()));
    const auto continuing = std::ranges::count_if(before, unicode::continuesCharacter);
    const std::size_t position = before.size() - static_cast<std::size_t>(continuing) + 1;
    DatabaseError error(kind, "Position " + std::to_string(position) + ": " + text);
    error.position_ = position;
    return error;
}

DatabaseError DatabaseError::closed() {
    return {ErrorKind::Closed, "The connection is closed."};
}

} // namespace kintar::companion
