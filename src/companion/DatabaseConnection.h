// A connection on which statements of the dialect run.
#pragma once

#include "companion/Catalog.h"
#include "companion/dialect/EngineWriter.h"
#include "server/Companion.h"

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace kintar::companion {

enum class DatabaseAccess : std::uint8_t { ReadWrite, ReadOnly };

/// What an engine offers to the record helper. Every operation throws DatabaseError.
class DatabaseConnection : public Connection {
public:
    /// The rows of a SELECT. Another statement is an error.
    virtual Recordset open(std::string_view sql) = 0;
    /// See TarnRec::readTogether and TarnRec::OpenRecordsets.
    [[nodiscard]] virtual std::size_t readTogether() const { return 1; }
    virtual std::vector<ReadOfMany> openTogether(std::span<const std::string> statements) {
        return readOneByOne(statements, [this](const std::string& sql) { return open(sql); });
    }
    /// The same, read aside; see TarnRec::BeginRecordset.
    virtual std::unique_ptr<PendingRecordset> openAside(std::string_view sql,
                                                        std::function<void()> ended) = 0;
    /// Runs an INSERT, UPDATE or DELETE, whole or not at all; the number of rows that it met. A
    /// SELECT is an error.
    virtual std::size_t execute(std::string_view sql) = 0;
    /// How the engine would go about the statement, a step a line; nothing is run.
    virtual std::vector<std::string> plan(std::string_view sql) = 0;
    /// What the engine gets for a statement.
    virtual dialect::Translation translate(std::string_view sql) = 0;
    /// The tables as they were when last read.
    [[nodiscard]] virtual const Catalog& catalog() const = 0;
    /// The name of the engine, as `explainDialect` takes it.
    [[nodiscard]] virtual std::string_view engine() const = 0;

    /// Statements fail soon after `stop` has become true; null: no more. It must outlive that.
    virtual void stopWhen(const std::atomic<bool>* stop) = 0;
    /// Statements fail at once, also one that runs, while `away` is true: it is known from
    /// elsewhere that the database does not answer.
    virtual void failWhile(const std::shared_ptr<const std::atomic<bool>>& /*away*/) {}
    /// From the first statement after `beginRead` until `endRead`, every SELECT sees the same state
    /// of the data.
    virtual void beginRead() = 0;
    /// No error, also where nothing was begun.
    virtual void endRead() noexcept = 0;
};

} // namespace kintar::companion
