#include "companion/postgres/PostgresConnection.h"

#include "companion/AsideRead.h"
#include "companion/dialect/Parser.h"
#include "companion/dialect/Resolver.h"
#include "companion/dialect/Rewriter.h"
#include "companion/postgres/CatalogReader.h"
#include "companion/postgres/ResultReader.h"
#include "server/IgnoringErrors.h"

#include <algorithm>
#include <charconv>
#include <cstdio>
#include <iterator>
#include <utility>

namespace kintar::companion::postgres {

using dialect::LiteralKind;
using dialect::Parameter;

namespace {

/// After a failed attempt to connect, statements fail at once for so long: each would otherwise
/// hold up the windows for the whole limit.
constexpr std::chrono::milliseconds pauseBetweenAttempts{2000};

constexpr Oid textType = 25;
constexpr Oid wholeType = 20;
constexpr Oid doubleType = 701;
constexpr Oid numericType = 1700;
constexpr Oid momentType = 1114;

Oid typeOf(const Parameter& parameter, LiteralKind literal) {
    if (parameter.use == Parameter::Use::Decimal || parameter.use == Parameter::Use::NumberOfText) {
        return numericType;
    }
    if (parameter.use != Parameter::Use::Value) {
        return textType;
    }
    switch (literal) {
    case LiteralKind::Integer:
        return wholeType;
    case LiteralKind::Decimal:
        return doubleType;
    case LiteralKind::DateTime:
        return momentType;
    default:
        return textType;
    }
}

std::string plainText(const dialect::ParameterValue& value) {
    if (const auto* whole = std::get_if<std::int64_t>(&value)) {
        return std::to_string(*whole);
    }
    if (const auto* real = std::get_if<double>(&value)) {
        char text[32];
        std::snprintf(text, sizeof text, "%.17g", *real);
        return text;
    }
    const auto* text = std::get_if<std::string>(&value);
    return text != nullptr ? *text : std::string();
}

/// What is bound for many runs: an array of all their values, or the one value that all have.
std::vector<std::optional<std::string>> textsOf(const std::vector<ValuesOfRuns>& values,
                                                const std::vector<bool>& areArrays) {
    std::vector<std::optional<std::string>> texts;
    texts.reserve(values.size());
    for (std::size_t at = 0; at < values.size(); ++at) {
        texts.push_back(areArrays[at] ? arrayText(values[at]) : values[at].front());
    }
    return texts;
}

std::size_t rowsMetBy(PGresult* result) {
    std::size_t rows = 0;
    const std::string_view count = PQcmdTuples(result);
    std::from_chars(count.data(), count.data() + count.size(), rows);
    return rows;
}

bool isLoss(const DatabaseError& error) {
    return error.kind() == ErrorKind::Unreachable || error.kind() == ErrorKind::TimedOut;
}

} // namespace

PostgresConnection::PostgresConnection(const std::string& text, DatabaseAccess access,
                                       const Limits& limits)
    : text_(text), source_(text), access_(access), limits_(limits) {
    handle();
    checkDatabase();
    readCatalog();
}

void PostgresConnection::checkDatabase() {
    const ResultHandle row =
        handle_->run("SELECT current_setting('server_encoding') = 'UTF8', "
                     "to_regprocedure('public.kintar_fold(text)') IS NOT NULL");
    if (PQgetvalue(row.get(), 0, 0)[0] != 't') {
        throw DatabaseError(ErrorKind::Other, "The database " + text_.shownName() +
                                                  " does not keep its texts in UTF-8.");
    }
    if (PQgetvalue(row.get(), 0, 1)[0] != 't') {
        throw DatabaseError(ErrorKind::Missing,
                            "The database " + text_.shownName() + " holds no site.");
    }
}

void PostgresConnection::Close() {
    closed_ = true;
    cache_.clear();
    handle_.reset();
    aside_.reset();
}

void PostgresConnection::connect() {
    handle_.reset();
    const auto now = std::chrono::steady_clock::now();
    if (lastFailure_ && now < nextAttempt_) {
        throw DatabaseError(*lastFailure_);
    }
    try {
        handle_ = std::make_unique<PostgresHandle>(text_, access_ == DatabaseAccess::ReadOnly,
                                                   limits_, stop_);
        handle_->loseWhen(away_);
        ++session_;
        cache_.dropped.clear();
        lastFailure_.reset();
    } catch (const DatabaseError& error) {
        lastFailure_ = error;
        nextAttempt_ = std::chrono::steady_clock::now() + pauseBetweenAttempts;
        throw;
    }
}

PostgresHandle& PostgresConnection::handle() {
    if (closed_) {
        throw DatabaseError::closed();
    }
    if (away_ && away_->load()) {
        handle_.reset();
        inTransaction_ = false;
        throw DatabaseError(ErrorKind::Unreachable,
                            "The database " + text_.shownName() + " does not answer.");
    }
    if (!handle_ || !handle_->isAlive()) {
        if (std::exchange(inTransaction_, false)) {
            handle_.reset();
            throw DatabaseError(ErrorKind::Unreachable,
                                "The database " + text_.shownName() +
                                    ": the connection was lost while it was read.");
        }
        connect();
    }
    if (inTransaction_ && handle_->isTransactionBroken()) {
        handle_->run("ROLLBACK TO SAVEPOINT kintar");
    }
    return *handle_;
}

void PostgresConnection::stopWhen(const std::atomic<bool>* stop) {
    stop_ = stop;
    if (handle_) {
        handle_->stopWhen(stop);
    }
}

void PostgresConnection::failWhile(const std::shared_ptr<const std::atomic<bool>>& away) {
    away_ = away;
    if (handle_) {
        handle_->loseWhen(away_);
    }
}

void PostgresConnection::readCatalog() {
    cache_.clear();
    catalog_ = std::make_unique<Catalog>(readTables(handle()));
}

/// Runs `run`; where it fails over a name, once more with the tables as they are now.
template <class Run>
decltype(auto) PostgresConnection::withCurrentSchema(Run run) {
    try {
        return run();
    } catch (const DatabaseError& error) {
        if (error.kind() != ErrorKind::UnknownName || inTransaction_) {
            throw;
        }
    }
    readCatalog();
    return run();
}

Recordset PostgresConnection::readOnce(std::string_view sql) {
    return withCurrentSchema([&] {
        PreparedText& text = textOf(sql, Wanted::Rows);
        const ResultHandle result = runPrepared(text);
        return readResult(result.get(), text.columns);
    });
}

Recordset PostgresConnection::open(std::string_view sql) {
    const bool mayRepeat = !inTransaction_;
    handle();
    try {
        return readOnce(sql);
    } catch (const DatabaseError& error) {
        const bool hungUp =
            error.kind() == ErrorKind::Unreachable && (!handle_ || !handle_->isAlive());
        if (!mayRepeat || !hungUp) {
            throw;
        }
    }
    return readOnce(sql);
}

std::size_t PostgresConnection::execute(std::string_view sql) {
    // All that may fail before anything is sent comes first.
    PreparedText& text = withCurrentSchema([&]() -> PreparedText& {
        PreparedText& ready = textOf(sql, Wanted::Change);
        prepareOnServer(ready);
        return ready;
    });
    bind(text);
    try {
        const ResultHandle result = handle_->runPrepared(text.name, bound_);
        return rowsMetBy(result.get());
    } catch (const DatabaseError& error) {
        if (isLoss(error) && !handle_->isAlive()) {
            throw DatabaseError(ErrorKind::OutcomeUnknown,
                                "The database " + text_.shownName() +
                                    " did not answer: it is not known whether the change was "
                                    "made. It is not tried again.");
        }
        throw;
    }
}

std::unique_ptr<PendingRecordset> PostgresConnection::openAside(std::string_view sql,
                                                                std::function<void()> ended) {
    // What is wrong with the statement is told at once.
    withCurrentSchema([&] { textOf(sql, Wanted::Rows); });
    if (!aside_ || aside_.use_count() > 1) {
        Limits patient = limits_;
        patient.statement = std::chrono::milliseconds(0);
        aside_ = std::make_shared<PostgresConnection>(source_, DatabaseAccess::ReadOnly, patient);
        aside_->failWhile(away_);
    }
    return std::make_unique<AsideRead>(aside_, std::string(sql), std::move(ended));
}

void PostgresConnection::beginReading() {
    // A statement that fails is taken back to the mark, so that those behind it can be read.
    handle().run("BEGIN ISOLATION LEVEL REPEATABLE READ READ ONLY; SAVEPOINT kintar");
    inTransaction_ = true;
}

void PostgresConnection::beginRead() {
    beginReading();
}

void PostgresConnection::endRead() noexcept {
    if (std::exchange(inTransaction_, false) && handle_) {
        ignoringErrors([this] { handle_->run("ROLLBACK"); });
    }
}

std::shared_ptr<void> PostgresConnection::Snapshot() {
    if (inTransaction_) {
        return nullptr;
    }
    beginReading();
    return {nullptr, [this](void*) { endRead(); }};
}

dialect::Translation PostgresConnection::translate(std::string_view sql) {
    return withCurrentSchema([&] { return textOf(sql, Wanted::Either).translation; });
}

std::vector<std::string> PostgresConnection::plan(std::string_view sql) {
    PreparedText& text =
        withCurrentSchema([&]() -> PreparedText& { return textOf(sql, Wanted::Either); });
    prepareOnServer(text);
    bind(text);
    std::string call = "EXPLAIN EXECUTE " + text.name;
    for (std::size_t at = 0; at < bound_.values.size(); ++at) {
        const char* value = bound_.values[at];
        call += at == 0 ? "(" : ", ";
        if (value == nullptr) {
            call += "NULL";
            continue;
        }
        char* literal =
            PQescapeLiteral(handle_->raw(), value, std::char_traits<char>::length(value));
        call += literal != nullptr ? literal : "NULL";
        PQfreemem(literal);
    }
    const ResultHandle rows = handle_->run(call + (bound_.values.empty() ? "" : ")"));
    std::vector<std::string> lines;
    const int count = PQntuples(rows.get());
    lines.reserve(static_cast<std::size_t>(count));
    for (int row = 0; row < count; ++row) {
        lines.emplace_back(PQgetvalue(rows.get(), row, 0));
    }
    return lines;
}

Shape& PostgresConnection::shapeOf(std::string_view sql) {
    dialect::liftLiterals(sql, lifted_);
    if (Shape* known = cache_.find(lifted_.shape)) {
        return *known;
    }
    Shape shape;
    shape.key = lifted_.shape;
    shape.outline = dialect::ShapeOutline(sql);
    shape.tree = dialect::parseStatement(sql);
    dialect::Resolver(*catalog_, sql).resolve(shape.tree);
    dialect::rewrite(shape.tree);
    shape.searches = writer_.write(shape.tree, lifted_.values).searches;
    return cache_.insert(std::move(shape));
}

std::string PostgresConnection::variantKeyOf(const Shape& shape) const {
    std::string key;
    for (const dialect::TextSearch& search : shape.searches) {
        key += writer_.variantOf(search, lifted_.values[search.literal]);
    }
    return key;
}

std::string PostgresConnection::newName() {
    return "kintar" + std::to_string(++names_);
}

PreparedText& PostgresConnection::variantOf(Shape& shape) {
    const std::string key = variantKeyOf(shape);
    const auto known = shape.variants.find(key);
    if (known != shape.variants.end()) {
        return known->second;
    }
    PreparedText made;
    made.translation = writer_.write(shape.tree, lifted_.values);
    made.columns = std::make_shared<const std::vector<Column>>(made.translation.columns);
    for (const Parameter& parameter : made.translation.parameters) {
        made.types.push_back(typeOf(parameter, lifted_.values[parameter.literal].kind));
    }
    made.name = newName();
    return cache_.addVariant(shape, key, std::move(made));
}

PreparedText& PostgresConnection::textOf(std::string_view sql, Wanted wanted) {
    if (closed_) {
        throw DatabaseError::closed();
    }
    Shape& shape = shapeOf(sql);
    if (wanted == Wanted::Rows && !shape.tree.isSelect()) {
        throw DatabaseError(ErrorKind::Syntax, "A recordset is opened with a SELECT statement.");
    }
    if (wanted == Wanted::Change && shape.tree.isSelect()) {
        throw DatabaseError(ErrorKind::Syntax, "A SELECT statement changes nothing.");
    }
    return variantOf(shape);
}

void PostgresConnection::prepareOnServer(PreparedText& text) {
    PostgresHandle& live = handle();
    if (text.session == session_) {
        return;
    }
    for (const std::string& name : std::exchange(cache_.dropped, {})) {
        live.run("DEALLOCATE " + name);
    }
    live.prepare(text.name, text.translation.text, text.types);
    text.session = session_;
}

/// The value as text; nothing where it is Null.
std::optional<std::string> PostgresConnection::valueOf(const Parameter& parameter) const {
    std::string text = plainText(writer_.valueOf(parameter, lifted_.values[parameter.literal]));
    if (parameter.use == Parameter::Use::NumberOfText && text.empty()) {
        return std::nullopt; // a text that is no number
    }
    return text;
}

void PostgresConnection::bind(const PreparedText& text) {
    std::vector<std::optional<std::string>> values;
    values.reserve(text.translation.parameters.size());
    for (const Parameter& parameter : text.translation.parameters) {
        values.push_back(valueOf(parameter));
    }
    bind(std::move(values));
}

void PostgresConnection::bind(std::vector<std::optional<std::string>> values) {
    bound_.kept.clear();
    bound_.values.clear();
    bound_.lengths.clear();
    bound_.kept.reserve(values.size());
    for (std::optional<std::string>& value : values) {
        const bool none = !value;
        const std::string& kept = bound_.kept.emplace_back(std::move(value).value_or(""));
        bound_.values.push_back(none ? nullptr : kept.c_str());
        bound_.lengths.push_back(static_cast<int>(kept.size()));
    }
}

ResultHandle PostgresConnection::runPrepared(PreparedText& text) {
    prepareOnServer(text);
    bind(text);
    return handle_->runPrepared(text.name, bound_);
}

/// The values of those in front that have the shape and the text of the first.
std::vector<ValuesOfRuns>
PostgresConnection::valuesOfRuns(std::span<const std::string> statements) {
    const Shape& shape = shapeOf(statements.front());
    const std::string variant = variantKeyOf(shape);
    const auto& parameters = shape.variants.at(variant).translation.parameters;
    std::vector<ValuesOfRuns> values(parameters.size());
    for (const std::string& sql : statements) {
        if (!shape.outline.lift(shape.key, sql, lifted_.values) || variantKeyOf(shape) != variant) {
            break;
        }
        for (std::size_t at = 0; at < parameters.size(); ++at) {
            values[at].push_back(valueOf(parameters[at]));
        }
    }
    return values;
}

/// The text that takes these values: arrays where they differ, or have differed before.
PreparedText& PostgresConnection::textOfRuns(PreparedText& text,
                                             const std::vector<ValuesOfRuns>& values) {
    std::vector<bool> areArrays = text.areArrays;
    areArrays.resize(values.size());
    for (std::size_t at = 0; at < values.size(); ++at) {
        areArrays[at] = areArrays[at] || !areEqual(values[at]);
    }
    if (text.ofManyRuns && areArrays == text.areArrays) {
        return *text.ofManyRuns;
    }
    if (text.ofManyRuns) {
        cache_.drop(*text.ofManyRuns);
    }
    auto made = std::make_unique<PreparedText>();
    made->translation.text = textOfManyRuns(text.translation.text, areArrays, text.columns->size());
    made->columns = text.columns;
    made->name = newName();
    for (std::size_t at = 0; at < values.size(); ++at) {
        made->types.push_back(areArrays[at] ? arrayTypeOf(text.types[at]) : text.types[at]);
    }
    text.ofManyRuns = std::move(made);
    text.areArrays = std::move(areArrays);
    return *text.ofManyRuns;
}

/// Reads those in front that are of one shape. False where nothing was read: each is to be read by
/// itself then.
bool PostgresConnection::readAsOne(std::span<const std::string> statements,
                                   std::vector<ReadOfMany>& results) {
    const bool inTransaction = inTransaction_;
    try {
        PreparedText& text = textOf(statements.front(), Wanted::Rows);
        const std::vector<ValuesOfRuns> values = valuesOfRuns(statements);
        const std::size_t runs = values.empty() ? 0 : values.front().size();
        if (runs < 2 || std::ranges::all_of(values, areEqual)) {
            return false;
        }
        PreparedText& ofRuns = textOfRuns(text, values);
        prepareOnServer(ofRuns);
        bind(textsOf(values, text.areArrays));
        const ResultHandle rows = handle_->runPrepared(ofRuns.name, bound_);
        for (Recordset& read : readResultOfManyRuns(rows.get(), text.columns, runs)) {
            results.emplace_back(std::move(read));
        }
        return true;
    } catch (const DatabaseError&) {
        const bool endedTheTransaction = inTransaction != inTransaction_;
        if (endedTheTransaction) {
            results.emplace_back(std::current_exception());
        }
        return endedTheTransaction;
    }
}

std::vector<ReadOfMany> PostgresConnection::openTogether(std::span<const std::string> statements) {
    std::vector<ReadOfMany> results;
    results.reserve(statements.size());
    while (results.size() < statements.size() && (results.empty() || !results.back().failed())) {
        const auto left = statements.subspan(results.size());
        if (!readAsOne(left, results)) {
            std::ranges::move(DatabaseConnection::openTogether(left), std::back_inserter(results));
            break;
        }
    }
    return results;
}

} // namespace kintar::companion::postgres
