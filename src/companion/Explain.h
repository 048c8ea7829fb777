// What an engine would get for a statement, told without a database.
#pragma once

#include "companion/Catalog.h"
#include "companion/DatabaseError.h"
#include "companion/dialect/EngineWriter.h"

#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace kintar::companion {

/// A number beyond 64 bits, with a fraction or an exponent: plain decimal text with every digit
/// kept.
struct DecimalNumber {
    std::string text;
};

/// A value that was lifted out of a statement.
using LiftedValue = std::variant<std::int64_t, DecimalNumber, std::string, DateTime>;

/// A statement as an engine gets it.
struct Explained {
    std::string text;
    /// The statement's literals in its order: parameters 1, 2 and so on of the text.
    std::vector<LiftedValue> values;
    /// What the parameters behind those hold: values made from the literals, such as the bounds of
    /// a search.
    std::vector<dialect::ParameterValue> derived;
    std::vector<Column> columns; ///< of the result; none for a statement that writes
};

/// The names of the engines that `explainDialect` knows.
std::vector<std::string> knownEngines();

/// Translates a statement for an engine. Throws DatabaseError: with a position where the statement
/// is at fault, without one for an unknown engine.
Explained explainDialect(std::string_view sql, std::string_view engine,
                         const Catalog& catalog = Catalog::ofSite());

/// The same for a translation that a connection has made of the statement.
Explained explainTranslation(std::string_view sql, std::string_view engine,
                             const dialect::Translation& translation);

} // namespace kintar::companion
