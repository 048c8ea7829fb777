// Run-time errors by number, as clients of the server know them.
#pragma once

#include <stdexcept>
#include <string>

namespace kintar {

/// An error of the running system: its number and its text. What reaches a client reads
/// "Run-time error '6': Overflow".
class RunTimeError : public std::runtime_error {
public:
    RunTimeError(int number, const std::string& text) : std::runtime_error(text), number_(number) {}

    [[nodiscard]] int number() const { return number_; }
    /// "Run-time error '6': Overflow".
    [[nodiscard]] std::string clientText() const;

    static RunTimeError invalidCall();  ///< 5, "Invalid procedure call or argument"
    static RunTimeError overflow();     ///< 6, "Overflow"
    static RunTimeError typeMismatch(); ///< 13, "Type mismatch"
    static RunTimeError objectNotSet(); ///< 91, "Object variable or With block variable not set"
    static RunTimeError invalidNull();  ///< 94, "Invalid use of Null"
    static RunTimeError
    duplicateKey(); ///< 457, "This key is already associated with an element of this collection"

private:
    int number_;
};

} // namespace kintar
