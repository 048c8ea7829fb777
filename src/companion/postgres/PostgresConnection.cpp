#include "companion/postgres/PostgresConnection.h"

#include "companion/AsideRead.h"
#include "companion/dialect/Parser.h"
#include "companion/dialect/Resolver.h"
#include "companion/dialect/Rewriter.h"
#include "companion/postgres/CatalogReader.h"
#include "companion/postgres/ResultReader.h"
#include "server/IgnoringErrors.h"

#include <cstdio>
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

void PostgresConnection::execute(std::string_view sql) {
    // All that may fail before anything is sent comes first.
    PreparedText& text = withCurrentSchema([&]() -> PreparedText& {
        PreparedText& ready = textOf(sql, Wanted::Change);
        prepareOnServer(ready);
        return ready;
    });
    bind(text);
    try {
        handle_->runPrepared(text.name, bound_);
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
    handle().run("BEGIN ISOLATION LEVEL REPEATABLE READ READ ONLY");
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
    shape.tree = dialect::parseStatement(sql);
    dialect::Resolver(*catalog_, sql).resolve(shape.tree);
    dialect::rewrite(shape.tree);
    shape.searches = writer_.write(shape.tree, lifted_.values).searches;
    return cache_.insert(std::move(shape));
}

PreparedText& PostgresConnection::variantOf(Shape& shape) {
    variantKey_.clear();
    for (const dialect::TextSearch& search : shape.searches) {
        variantKey_ += writer_.variantOf(search, lifted_.values[search.literal]);
    }
    const auto known = shape.variants.find(variantKey_);
    if (known != shape.variants.end()) {
        return known->second;
    }
    PreparedText made;
    made.translation = writer_.write(shape.tree, lifted_.values);
    made.columns = std::make_shared<const std::vector<Column>>(made.translation.columns);
    for (const Parameter& parameter : made.translation.parameters) {
        made.types.push_back(typeOf(parameter, lifted_.values[parameter.literal].kind));
    }
    made.name = "kintar" + std::to_string(++names_);
    return cache_.addVariant(shape, variantKey_, std::move(made));
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

void PostgresConnection::bind(const PreparedText& text) {
    bound_.kept.clear();
    bound_.values.clear();
    bound_.lengths.clear();
    for (const Parameter& parameter : text.translation.parameters) {
        bound_.kept.push_back(
            plainText(writer_.valueOf(parameter, lifted_.values[parameter.literal])));
    }
    std::size_t at = 0;
    for (const Parameter& parameter : text.translation.parameters) {
        // An empty number is a text that is none.
        const std::string& kept = bound_.kept[at++];
        const bool none = parameter.use == Parameter::Use::NumberOfText && kept.empty();
        bound_.values.push_back(none ? nullptr : kept.c_str());
        bound_.lengths.push_back(static_cast<int>(kept.size()));
    }
}

ResultHandle PostgresConnection::runPrepared(PreparedText& text) {
    prepareOnServer(text);
    bind(text);
    return handle_->runPrepared(text.name, bound_);
}

} // namespace kintar::companion::postgres
