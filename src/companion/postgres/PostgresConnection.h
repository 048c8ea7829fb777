// A connection to a PostgreSQL server.
#pragma once

#include "companion/Catalog.h"
#include "companion/DatabaseConnection.h"
#include "companion/dialect/LiftedStatement.h"
#include "companion/dialect/PostgresWriter.h"
#include "companion/postgres/ManyRuns.h"
#include "companion/postgres/PostgresHandle.h"
#include "companion/postgres/ShapeCache.h"

#include <atomic>
#include <chrono>
#include <cstddef>
#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <vector>

namespace kintar::companion::postgres {

/// Runs statements of the dialect on a server. Statements that differ in their values only are
/// parsed and prepared once. A connection that was lost is made again by the next statement; a read
/// that it interrupted is repeated once, a change never is.
class PostgresConnection final : public DatabaseConnection {
public:
    /// Connects; throws DatabaseError where that fails, or where the database is no site's.
    PostgresConnection(const std::string& text, DatabaseAccess access, const Limits& limits = {});

    /// Open until it is closed, also while the server is away.
    [[nodiscard]] bool isOpen() const override { return !closed_; }
    void Close() override;
    Recordset open(std::string_view sql) override;
    [[nodiscard]] std::size_t readTogether() const override { return 256; }
    /// Statements of one shape go as one over the values of all; see ManyRuns.h. Where that fails
    /// each goes by itself, so that an error is that of its own statement.
    std::vector<ReadOfMany> openTogether(std::span<const std::string> statements) override;
    std::unique_ptr<PendingRecordset> openAside(std::string_view sql,
                                                std::function<void()> ended) override;
    /// Throws DatabaseError (OutcomeUnknown) where the connection was lost before the answer came.
    std::size_t execute(std::string_view sql) override;
    std::vector<std::string> plan(std::string_view sql) override;
    std::shared_ptr<void> Snapshot() override;
    void stopWhen(const std::atomic<bool>* stop) override;
    void failWhile(const std::shared_ptr<const std::atomic<bool>>& away) override;
    void beginRead() override;
    void endRead() noexcept override;
    dialect::Translation translate(std::string_view sql) override;
    [[nodiscard]] const Catalog& catalog() const override { return *catalog_; }
    [[nodiscard]] std::string_view engine() const override { return writer_.engine(); }

    /// The live connection, made again where it was lost; for copying data and measuring beside it.
    PostgresHandle& handle();
    [[nodiscard]] std::size_t knownShapes() const { return cache_.size(); }

private:
    enum class Wanted : std::uint8_t { Rows, Change, Either };

    void connect();
    void checkDatabase();
    void readCatalog();
    template <class Run>
    decltype(auto) withCurrentSchema(Run run);
    Recordset readOnce(std::string_view sql);
    Shape& shapeOf(std::string_view sql);
    PreparedText& textOf(std::string_view sql, Wanted wanted);
    PreparedText& variantOf(Shape& shape);
    std::string newName();
    void prepareOnServer(PreparedText& text);
    [[nodiscard]] std::optional<std::string> valueOf(const dialect::Parameter& parameter) const;
    void bind(const PreparedText& text);
    void bind(std::vector<std::optional<std::string>> values);
    ResultHandle runPrepared(PreparedText& text);
    [[nodiscard]] std::string variantKeyOf(const Shape& shape) const;
    std::vector<ValuesOfRuns> valuesOfRuns(std::span<const std::string> statements);
    PreparedText& textOfRuns(PreparedText& text, const std::vector<ValuesOfRuns>& values);
    bool readAsOne(std::span<const std::string> statements, std::vector<ReadOfMany>& results);
    void beginReading();

    ConnectionText text_;
    std::string source_;
    DatabaseAccess access_;
    Limits limits_;
    bool closed_ = false;
    bool inTransaction_ = false;
    std::unique_ptr<PostgresHandle> handle_;
    std::uint64_t session_ = 0;
    std::uint64_t names_ = 0;
    std::chrono::steady_clock::time_point nextAttempt_;
    std::optional<DatabaseError> lastFailure_;
    std::unique_ptr<Catalog> catalog_;
    dialect::PostgresWriter writer_;
    dialect::LiftedStatement lifted_;
    ShapeCache cache_;
    BoundValues bound_;
    const std::atomic<bool>* stop_ = nullptr;
    std::shared_ptr<const std::atomic<bool>> away_;
    std::shared_ptr<PostgresConnection> aside_;
};

} // namespace kintar::companion::postgres
