// What one of several SELECTs gave that were sent together.
#pragma once

#include "server/Recordset.h"

#include <exception>
#include <span>
#include <string>
#include <utility>
#include <vector>

namespace kintar {

class ReadOfMany {
public:
    explicit ReadOfMany(Recordset rows) : rows_(std::move(rows)) {}
    explicit ReadOfMany(std::exception_ptr error) : error_(std::move(error)) {}

    [[nodiscard]] bool failed() const { return error_ != nullptr; }
    /// The rows, once; throws what the statement threw.
    Recordset take() {
        if (error_) {
            std::rethrow_exception(error_);
        }
        return std::move(rows_);
    }

private:
    Recordset rows_;
    std::exception_ptr error_;
};

/// What `read` gives for each statement in turn, up to the first that fails.
template <class Read>
std::vector<ReadOfMany> readOneByOne(std::span<const std::string> statements, const Read& read) {
    std::vector<ReadOfMany> results;
    results.reserve(statements.size());
    try {
        for (const std::string& sql : statements) {
            results.emplace_back(read(sql));
        }
    } catch (...) {
        // Whatever it was, whoever takes the rows is to have it.
        results.emplace_back(std::current_exception());
    }
    return results;
}

} // namespace kintar
