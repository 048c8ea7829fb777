#include "companion/sqlite/SqliteConnection.h"

#include "companion/AsideRead.h"
#include "companion/dialect/Parser.h"
#include "companion/dialect/Resolver.h"
#include "companion/dialect/Rewriter.h"
#include "companion/sqlite/LeadRace.h"
#include "companion/sqlite/SchemaReader.h"
#include "companion/sqlite/SqliteFunctions.h"

#include <algorithm>
#include <chrono>
#include <limits>
#include <utility>

namespace kintar::companion::sqlite {

using dialect::LiteralKind;
using dialect::LiteralValue;
using dialect::Parameter;

namespace {

/// Ends a run of a statement however it ends, so that it holds no lock and no view of a text.
class Running {
public:
    explicit Running(sqlite3_stmt* handle) : handle_(handle) {}
    Running(const Running&) = delete;
    Running& operator=(const Running&) = delete;
    ~Running() { sqlite3_reset(handle_); }

private:
    sqlite3_stmt* handle_;
};

/// Steps of the engine between two looks at whether it is to stop: some microseconds.
constexpr int stepsBetweenLooks = 1000;

bool isUtf8(sqlite3* database) {
    const StatementHandle query = prepare(database, "PRAGMA encoding");
    return sqlite3_step(query.get()) == SQLITE_ROW &&
           std::string_view(reinterpret_cast<const char*>(sqlite3_column_text(query.get(), 0))) ==
               "UTF-8";
}

/// The bytes of a text where it lies. Asked for as text, the engine would copy it first, to put a
/// zero behind it; but it gives the bytes of UTF-16 as they are, so there it has to be text.
std::string_view textOf(sqlite3_value* value, bool isUtf8) {
    const void* bytes = isUtf8 ? sqlite3_value_blob(value) : sqlite3_value_text(value);
    return {static_cast<const char*>(bytes), static_cast<std::size_t>(sqlite3_value_bytes(value))};
}

void addValue(Recordset& rows, sqlite3_stmt* handle, int column, bool isUtf8) {
    // Asked for its value once, a column answers each further question at half the cost. That is
    // safe as long as one thread at a time uses the connection, and connections promise no more.
    sqlite3_value* const value = sqlite3_column_value(handle, column);
    switch (sqlite3_value_type(value)) {
    case SQLITE_INTEGER:
        rows.addInteger(sqlite3_value_int64(value));
        break;
    case SQLITE_FLOAT:
        rows.addReal(sqlite3_value_double(value));
        break;
    case SQLITE_NULL:
        rows.addNull();
        break;
    default:
        rows.addText(textOf(value, isUtf8));
        break;
    }
}

/// The leads that are worth counting: of many that search for texts, those for the longest.
std::vector<dialect::SearchLead> mostPromising(std::vector<dialect::SearchLead> leads,
                                               const std::vector<LiteralValue>& values) {
    constexpr std::size_t most = 7;
    const auto promise = [&](const dialect::SearchLead& lead) {
        const dialect::Literal* text =
            lead.range != nullptr ? dialect::searchedText(*lead.range) : nullptr;
        return text != nullptr && lead.test != nullptr ? values[text->ordinal].raw.size()
                                                       : std::numeric_limits<std::size_t>::max();
    };
    if (leads.size() > most) {
        std::ranges::stable_sort(leads, std::ranges::greater(), promise);
        leads.resize(most);
    }
    return leads;
}

} // namespace

SqliteConnection::SqliteConnection(const std::string& path, Access access)
    : path_(path), database_(openDatabase(path, access)) {
    registerFunctions(database_.get());
    isUtf8_ = isUtf8(database_.get());
    schemaVersionQuery_ = prepare(database_.get(), "PRAGMA schema_version");
    schemaHasChanged();
    readCatalog();
}

void SqliteConnection::Close() {
    cache_.clear();
    schemaVersionQuery_.reset();
    database_.reset();
    aside_.reset();
}

std::unique_ptr<PendingRecordset> SqliteConnection::openAside(std::string_view sql,
                                                              std::function<void()> ended) {
    if (!isOpen()) {
        throw DatabaseError::closed();
    }
    if (std::optional<Recordset> rows = openInAnInstant(sql)) {
        ended();
        return std::make_unique<ReadRecordset>(std::move(*rows));
    }
    // A read that still goes on holds the one that is kept.
    if (!aside_ || aside_.use_count() > 1) {
        aside_ = std::make_shared<SqliteConnection>(path_, Access::ReadOnly);
    }
    return std::make_unique<AsideRead>(aside_, std::string(sql), std::move(ended));
}

/// Most reads are over before another thread would have begun with them.
std::optional<Recordset> SqliteConnection::openInAnInstant(std::string_view sql) {
    using Clock = std::chrono::steady_clock;
    struct Deadline {
        Clock::time_point at;
        bool passed = false;
    } deadline{Clock::now() + std::chrono::milliseconds(5)};
    const auto look = [](void* asked) {
        auto* own = static_cast<Deadline*>(asked);
        own->passed = own->passed || Clock::now() > own->at;
        return own->passed ? 1 : 0;
    };
    std::optional<Recordset> rows;
    sqlite3_progress_handler(database_.get(), stepsBetweenLooks, look, &deadline);
    try {
        rows = open(sql);
    } catch (const DatabaseError&) {
        sqlite3_progress_handler(database_.get(), 0, nullptr, nullptr);
        if (!deadline.passed) {
            throw;
        }
    }
    sqlite3_progress_handler(database_.get(), 0, nullptr, nullptr);
    return rows;
}

void SqliteConnection::stopWhen(const std::atomic<bool>* stop) {
    const auto look = [](void* asked) {
        return static_cast<const std::atomic<bool>*>(asked)->load() ? 1 : 0;
    };
    sqlite3_progress_handler(database_.get(), stop != nullptr ? stepsBetweenLooks : 0,
                             stop != nullptr ? +look : nullptr,
                             const_cast<std::atomic<bool>*>(stop));
}

bool SqliteConnection::schemaHasChanged() {
    const Running running(schemaVersionQuery_.get());
    const int code = sqlite3_step(schemaVersionQuery_.get());
    if (code != SQLITE_ROW) {
        throw errorOf(database_.get(), code);
    }
    const std::int64_t version = sqlite3_column_int64(schemaVersionQuery_.get(), 0);
    return std::exchange(schemaVersion_, version) != version;
}

void SqliteConnection::readCatalog() {
    cache_.clear();
    catalog_ = std::make_unique<Catalog>(readTables(database_.get()));
    schemaIsStale_ = false;
}

/// Runs `run`; where it fails and the schema is not the one it was checked against, once more.
template <class Run>
auto SqliteConnection::withCurrentSchema(Run run) {
    if (!isOpen()) {
        throw DatabaseError::closed();
    }
    if (schemaIsStale_) {
        readCatalog();
    }
    try {
        return run();
    } catch (const DatabaseError& error) {
        const bool couldBeSchema =
            error.kind() == ErrorKind::UnknownName || error.kind() == ErrorKind::Other;
        if (!couldBeSchema || !schemaHasChanged()) {
            throw;
        }
    }
    readCatalog();
    return run();
}

Recordset SqliteConnection::open(std::string_view sql) {
    return withCurrentSchema([&] { return readRows(prepared(sql, Wanted::Rows)); });
}

std::size_t SqliteConnection::execute(std::string_view sql) {
    return withCurrentSchema([&] {
        PreparedStatement& statement = prepared(sql, Wanted::Change);
        const Running running(statement.handle.get());
        finish(statement, sqlite3_step(statement.handle.get()));
        return static_cast<std::size_t>(sqlite3_changes64(database_.get()));
    });
}

void SqliteConnection::beginRead() {
    if (!isOpen()) {
        throw DatabaseError::closed();
    }
    runPlain(database_.get(), "BEGIN");
}

void SqliteConnection::endRead() noexcept {
    if (isOpen() && sqlite3_get_autocommit(database_.get()) == 0) {
        sqlite3_exec(database_.get(), "ROLLBACK", nullptr, nullptr, nullptr);
    }
}

std::shared_ptr<void> SqliteConnection::Snapshot() {
    if (!isOpen() || sqlite3_get_autocommit(database_.get()) == 0) {
        return nullptr;
    }
    begin();
    return {nullptr, [this](void*) {
                // Closing the connection meanwhile has ended the transaction with it.
                if (isOpen()) {
                    sqlite3_exec(database_.get(), "COMMIT", nullptr, nullptr, nullptr);
                }
            }};
}

void SqliteConnection::begin() {
    runPlain(database_.get(), "BEGIN");
}

void SqliteConnection::commit() {
    runPlain(database_.get(), "COMMIT");
}

dialect::Translation SqliteConnection::translate(std::string_view sql) {
    return withCurrentSchema([&] { return prepared(sql, Wanted::Either).translation; });
}

std::vector<std::string> SqliteConnection::plan(std::string_view sql) {
    const std::string text = "EXPLAIN QUERY PLAN " + translate(sql).text;
    const StatementHandle query = prepare(database_.get(), text);
    std::vector<std::string> lines;
    int code = sqlite3_step(query.get());
    for (; code == SQLITE_ROW; code = sqlite3_step(query.get())) {
        constexpr int detail = 3;
        lines.emplace_back(reinterpret_cast<const char*>(sqlite3_column_text(query.get(), detail)));
    }
    if (code != SQLITE_DONE) {
        throw errorOf(database_.get(), code);
    }
    return lines;
}

StatementShape& SqliteConnection::shapeOf(std::string_view sql) {
    if (StatementShape* lately = cache_.findLately(sql, lifted_.values)) {
        return *lately;
    }
    dialect::liftLiterals(sql, lifted_);
    if (StatementShape* known = cache_.find(lifted_.shape)) {
        return *known;
    }
    StatementShape shape;
    shape.key = lifted_.shape;
    shape.outline = dialect::ShapeOutline(sql);
    shape.tree = dialect::parseStatement(sql);
    dialect::Resolver(*catalog_, sql).resolve(shape.tree);
    dialect::rewrite(shape.tree);
    shape.searches = writer_.write(shape.tree, lifted_.values).searches;
    return cache_.insert(std::move(shape));
}

PreparedStatement SqliteConnection::madeReady(dialect::Translation translation) {
    PreparedStatement made;
    made.translation = std::move(translation);
    made.handle = prepare(database_.get(), made.translation.text);
    made.columns = std::make_shared<const std::vector<Column>>(made.translation.columns);
    made.plainParameters = lifted_.values.size();
    return made;
}

std::vector<LeadRunner> SqliteConnection::runnersOf(const dialect::Statement& tree) {
    std::vector<LeadRunner> runners;
    for (const dialect::SearchLead& lead : mostPromising(dialect::leadsOf(tree), lifted_.values)) {
        runners.push_back(
            {lead.test, lead.range, madeReady(writer_.writeServedRows(lead, lifted_.values)),
             madeReady(writer_.writeSample(lead, lifted_.values, LeadRunner::sampledRows)),
             madeReady(writer_.writeLargestRow(lead))});
    }
    return runners;
}

StatementVariant& SqliteConnection::variantOf(StatementShape& shape) {
    variantKey_.clear();
    for (const dialect::TextSearch& search : shape.searches) {
        variantKey_ += writer_.variantOf(search, lifted_.values[search.literal]);
    }
    const auto known = shape.variants.find(variantKey_);
    if (known != shape.variants.end()) {
        return known->second;
    }
    if (shape.variants.size() >= StatementCache::variantCapacity) {
        shape.variants.clear();
    }
    return shape.variants.emplace(variantKey_, StatementVariant{runnersOf(shape.tree), {}})
        .first->second;
}

dialect::SearchPlan SqliteConnection::planOf(StatementVariant& variant) {
    if (variant.runners.empty()) {
        return {};
    }
    for (const LeadRunner& runner : variant.runners) {
        bind(runner.servedRows);
        bind(runner.sample);
    }
    return bestPlan(database_.get(), variant.runners);
}

PreparedStatement& SqliteConnection::prepared(std::string_view sql, Wanted wanted) {
    StatementShape& shape = shapeOf(sql);
    if (wanted == Wanted::Rows && !shape.tree.isSelect()) {
        throw DatabaseError(ErrorKind::Syntax, "A recordset is opened with a SELECT statement.");
    }
    if (wanted == Wanted::Change && shape.tree.isSelect()) {
        throw DatabaseError(ErrorKind::Syntax, "A SELECT statement changes nothing.");
    }
    StatementVariant& variant = variantOf(shape);
    const dialect::SearchPlan plan = planOf(variant);
    auto known = variant.byPlan.find(plan);
    if (known == variant.byPlan.end()) {
        if (variant.byPlan.size() >= StatementCache::variantCapacity) {
            variant.byPlan.clear();
        }
        known =
            variant.byPlan.emplace(plan, madeReady(writer_.write(shape.tree, lifted_.values, plan)))
                .first;
    }
    bind(known->second);
    return known->second;
}

void SqliteConnection::bind(const PreparedStatement& statement) {
    for (std::size_t at = 0; at < statement.plainParameters; ++at) {
        bindLiteral(statement.handle.get(), static_cast<int>(at + 1), lifted_.values[at]);
    }
    for (std::size_t at = statement.plainParameters; at < statement.translation.parameters.size();
         ++at) {
        bindDerived(statement, at);
    }
}

void SqliteConnection::bindLiteral(sqlite3_stmt* handle, int index, const LiteralValue& literal) {
    if (literal.kind == LiteralKind::Integer) {
        sqlite3_bind_int64(handle, index, literal.integer);
    } else if (literal.kind == LiteralKind::Decimal) {
        sqlite3_bind_double(handle, index, literal.real());
    } else if (literal.kind == LiteralKind::Text && !literal.hasDoubledQuotes) {
        // A view into the statement, which outlives the run.
        sqlite3_bind_text64(handle, index, literal.raw.data(), literal.raw.size(), SQLITE_STATIC,
                            SQLITE_UTF8);
    } else {
        const std::string text =
            literal.kind == LiteralKind::Text ? literal.text() : literal.dateTime.isoWithBlank();
        sqlite3_bind_text64(handle, index, text.data(), text.size(), SQLITE_TRANSIENT, SQLITE_UTF8);
    }
}

void SqliteConnection::bindDerived(const PreparedStatement& statement, std::size_t parameter) {
    const Parameter& wanted = statement.translation.parameters[parameter];
    const dialect::ParameterValue value = writer_.valueOf(wanted, lifted_.values[wanted.literal]);
    sqlite3_stmt* handle = statement.handle.get();
    const auto index = static_cast<int>(parameter + 1);
    if (const auto* number = std::get_if<double>(&value)) {
        sqlite3_bind_double(handle, index, *number);
    } else if (const auto* whole = std::get_if<std::int64_t>(&value)) {
        sqlite3_bind_int64(handle, index, *whole);
    } else if (const auto* text = std::get_if<std::string>(&value)) {
        if (wanted.use == Parameter::Use::SortKey) {
            sqlite3_bind_blob64(handle, index, text->data(), text->size(), SQLITE_TRANSIENT);
        } else {
            sqlite3_bind_text64(handle, index, text->data(), text->size(), SQLITE_TRANSIENT,
                                SQLITE_UTF8);
        }
    } else {
        sqlite3_bind_null(handle, index);
    }
}

Recordset SqliteConnection::readRows(PreparedStatement& statement) {
    sqlite3_stmt* handle = statement.handle.get();
    const Running running(handle);
    Recordset rows(statement.columns);
    const auto columns = static_cast<int>(statement.columns->size());
    int code = sqlite3_step(handle);
    for (; code == SQLITE_ROW; code = sqlite3_step(handle)) {
        for (int column = 0; column < columns; ++column) {
            addValue(rows, handle, column, isUtf8_);
        }
    }
    finish(statement, code);
    rows.finish();
    return rows;
}

void SqliteConnection::finish(PreparedStatement& statement, int code) {
    if (code != SQLITE_DONE) {
        throw errorOf(database_.get(), code);
    }
    const int preparations =
        sqlite3_stmt_status(statement.handle.get(), SQLITE_STMTSTATUS_REPREPARE, 0);
    if (preparations != std::exchange(statement.preparations, preparations)) {
        // The engine saw another schema and prepared the statement anew; ours is read again next.
        schemaIsStale_ = true;
    }
}

} // namespace kintar::companion::sqlite
