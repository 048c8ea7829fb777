// A connection to the embedded engine.
#pragma once

#include "companion/Catalog.h"
#include "companion/DatabaseConnection.h"
#include "companion/dialect/LiftedStatement.h"
#include "companion/dialect/SqliteWriter.h"
#include "companion/sqlite/SqliteHandle.h"
#include "companion/sqlite/StatementCache.h"

#include <atomic>
#include <cstddef>
#include <functional>
#include <memory>
#include <optional>
#include <string>

namespace kintar::companion::sqlite {

/// Runs statements of the dialect on a SQLite database. Statements that differ in their values only
/// are parsed and prepared once. A change of the schema by another program is noticed.
class SqliteConnection final : public DatabaseConnection {
public:
    /// Opens an existing database; throws DatabaseError as `openDatabase` does.
    SqliteConnection(const std::string& path, Access access);

    [[nodiscard]] bool isOpen() const override { return database_ != nullptr; }
    void Close() override;
    Recordset open(std::string_view sql) override;
    /// One after the other; what surrounds a read is done once for all.
    [[nodiscard]] std::size_t readTogether() const override { return 64; }
    /// What takes no longer than an instant is read at once; the rest on a second, read-only
    /// connection to the same file, which is kept for the next time.
    std::unique_ptr<PendingRecordset> openAside(std::string_view sql,
                                                std::function<void()> ended) override;
    std::size_t execute(std::string_view sql) override;
    std::vector<std::string> plan(std::string_view sql) override;
    std::shared_ptr<void> Snapshot() override;

    void stopWhen(const std::atomic<bool>* stop) override;
    void beginRead() override;
    void endRead() noexcept override;
    dialect::Translation translate(std::string_view sql) override;
    [[nodiscard]] const Catalog& catalog() const override { return *catalog_; }
    [[nodiscard]] std::string_view engine() const override { return writer_.engine(); }
    /// What is executed from here on becomes real at `commit`, or not at all.
    void begin();
    void commit();

    /// The engine's own handle, for measuring beside it; null once closed.
    [[nodiscard]] sqlite3* handle() const { return database_.get(); }
    [[nodiscard]] std::size_t knownShapes() const { return cache_.size(); }

private:
    enum class Wanted : std::uint8_t { Rows, Change, Either };

    template <class Run>
    auto withCurrentSchema(Run run);
    PreparedStatement& prepared(std::string_view sql, Wanted wanted);
    std::optional<Recordset> openInAnInstant(std::string_view sql);
    StatementShape& shapeOf(std::string_view sql);
    StatementVariant& variantOf(StatementShape& shape);
    PreparedStatement madeReady(dialect::Translation translation);
    std::vector<LeadRunner> runnersOf(const dialect::Statement& tree);
    dialect::SearchPlan planOf(StatementVariant& variant);
    void bind(const PreparedStatement& statement);
    void bindLiteral(sqlite3_stmt* handle, int index, const dialect::LiteralValue& literal);
    void bindDerived(const PreparedStatement& statement, std::size_t parameter);
    Recordset readRows(PreparedStatement& statement);
    void finish(PreparedStatement& statement, int code);
    void readCatalog();
    bool schemaHasChanged();

    std::string path_;
    DatabaseHandle database_;
    std::unique_ptr<Catalog> catalog_;
    std::int64_t schemaVersion_ = 0;
    StatementHandle schemaVersionQuery_;
    dialect::SqliteWriter writer_;
    dialect::LiftedStatement lifted_;
    std::string variantKey_;
    StatementCache cache_;
    bool isUtf8_ = true; ///< the database keeps its texts so, not as UTF-16
    bool schemaIsStale_ = false;
    std::shared_ptr<SqliteConnection> aside_;
};

} // namespace kintar::companion::sqlite
