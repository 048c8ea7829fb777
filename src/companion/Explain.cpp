#include "companion/Explain.h"

#include "base/Number.h"
#include "companion/dialect/Keyword.h"
#include "companion/dialect/LiftedStatement.h"
#include "companion/dialect/Parser.h"
#include "companion/dialect/PostgresWriter.h"
#include "companion/dialect/Resolver.h"
#include "companion/dialect/Rewriter.h"
#include "companion/dialect/SqliteWriter.h"

#include <algorithm>

namespace kintar::companion {

namespace {

/// A decimal literal without what only statements allow: `.5`, `5.`, zeros in front.
std::string plainDecimal(std::string_view raw) {
    const std::size_t exponentAt = std::min(raw.find_first_of("eE"), raw.size());
    const std::string_view mantissa = raw.substr(0, exponentAt);
    return numericText(mantissa).value_or(std::string(mantissa)) +
           std::string(raw.substr(exponentAt));
}

LiftedValue liftedOf(const dialect::LiteralValue& literal) {
    switch (literal.kind) {
    case dialect::LiteralKind::Integer:
        return literal.integer;
    case dialect::LiteralKind::Decimal:
        return DecimalNumber{plainDecimal(literal.raw)};
    case dialect::LiteralKind::Text:
        return literal.text();
    case dialect::LiteralKind::DateTime:
        break;
    }
    return literal.dateTime;
}

const dialect::EngineWriter& writerFor(std::string_view engine) {
    static const dialect::SqliteWriter sqlite;
    static const dialect::PostgresWriter postgres;
    if (dialect::sameName(engine, postgres.engine())) {
        return postgres;
    }
    if (!dialect::sameName(engine, sqlite.engine())) {
        throw DatabaseError(ErrorKind::Other,
                            "There is no such engine; there are sqlite and postgresql.");
    }
    return sqlite;
}

Explained explained(const dialect::EngineWriter& writer, const dialect::Translation& translation,
                    const dialect::LiftedStatement& lifted) {
    Explained explained{translation.text, {}, {}, translation.columns};
    for (const dialect::LiteralValue& literal : lifted.values) {
        explained.values.push_back(liftedOf(literal));
    }
    for (const dialect::Parameter& parameter : translation.parameters) {
        if (parameter.use != dialect::Parameter::Use::Value) {
            explained.derived.push_back(
                writer.valueOf(parameter, lifted.values[parameter.literal]));
        }
    }
    return explained;
}

} // namespace

std::vector<std::string> knownEngines() {
    return {"sqlite", "postgresql"};
}

Explained explainDialect(std::string_view sql, std::string_view engine, const Catalog& catalog) {
    const dialect::EngineWriter& writer = writerFor(engine);
    dialect::LiftedStatement lifted;
    dialect::liftLiterals(sql, lifted);
    dialect::Statement statement = dialect::parseStatement(sql);
    dialect::Resolver(catalog, sql).resolve(statement);
    dialect::rewrite(statement);
    return explained(writer, writer.write(statement, lifted.values), lifted);
}

Explained explainTranslation(std::string_view sql, std::string_view engine,
                             const dialect::Translation& translation) {
    dialect::LiftedStatement lifted;
    dialect::liftLiterals(sql, lifted);
    return explained(writerFor(engine), translation, lifted);
}

} // namespace kintar::companion
