// An environment variable set, or unset, for the length of a test.
#pragma once

#include <cstdlib>
#include <optional>
#include <string>

namespace kintar::testing {

class Environment {
public:
    /// No value: unset.
    Environment(std::string name, const std::optional<std::string>& value)
        : name_(std::move(name)) {
        if (const char* before = std::getenv(name_.c_str())) {
            before_ = before;
        }
        assign(value);
    }
    Environment(const Environment&) = delete;
    Environment& operator=(const Environment&) = delete;
    ~Environment() { assign(before_); }

private:
    void assign(const std::optional<std::string>& value) const {
        if (value) {
            ::setenv(name_.c_str(), value->c_str(), 1);
        } else {
            ::unsetenv(name_.c_str());
        }
    }

    std::string name_;
    std::optional<std::string> before_;
};

} // namespace kintar::testing
