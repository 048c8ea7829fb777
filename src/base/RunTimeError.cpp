#include "base/RunTimeError.h"

namespace kintar {

std::string RunTimeError::clientText() const {
    return "Run-time error '" + std::to_string(number_) + "': " + what();
}

RunTimeError RunTimeError::invalidCall() {
    return {5, "Invalid procedure call or argument"};
}

RunTimeError RunTimeError::overflow() {
    return {6, "Overflow"};
}

RunTimeError RunTimeError::typeMismatch() {
    return {13, "Type mismatch"};
}

RunTimeError RunTimeError::objectNotSet() {
    return {91, "Object variable or With block variable not set"};
}

RunTimeError RunTimeError::invalidNull() {
    return {94, "Invalid use of Null"};
}

RunTimeError RunTimeError::duplicateKey() {
    return {457, "This key is already associated with an element of this collection"};
}

} // namespace kintar
