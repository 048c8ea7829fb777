// Translated and prepared statements, by their shape.
#pragma once

#include "companion/dialect/EngineWriter.h"
#include "companion/dialect/LiftedStatement.h"
#include "companion/dialect/SearchLeads.h"
#include "companion/dialect/Statements.h"
#include "companion/sqlite/SqliteHandle.h"

#include <list>
#include <map>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace kintar::companion::sqlite {

/// One text of a shape, ready to run.
struct PreparedStatement {
    dialect::Translation translation;
    StatementHandle handle;
    SharedColumns columns;
    /// Literals in front that are bound as they are; what lies behind is made from them.
    std::size_t plainParameters = 0;
    int preparations = 0; ///< the engine's own count of having prepared it anew
};

/// What tells how many rows a search would begin with, were this its lead.
struct LeadRunner {
    static constexpr std::size_t sampledRows = 64;
    const dialect::InSelectTest* test = nullptr;
    const dialect::Expression* range = nullptr;
    PreparedStatement servedRows;
    PreparedStatement sample;
    PreparedStatement largestRow;
};

/// The texts of a variant, one for each plan that was ever the best, and how to choose among them.
struct StatementVariant {
    std::vector<LeadRunner> runners; ///< none where there is nothing to choose
    std::map<dialect::SearchPlan, PreparedStatement> byPlan;
};

/// A shape: its tree, and the texts for each variant of its searches.
struct StatementShape {
    std::string key;
    dialect::ShapeOutline outline;
    dialect::Statement tree;
    std::vector<dialect::TextSearch> searches;
    std::map<std::string, StatementVariant, std::less<>> variants;
};

/// The shapes used last, at most `capacity`. A reference stays valid until the next insertion.
class StatementCache {
public:
    static constexpr std::size_t capacity = 256;
    static constexpr std::size_t variantCapacity = 16;

    /// Null where the shape is not known; otherwise it counts as the one used last.
    StatementShape* find(std::string_view key);
    /// The shape of a statement, with its literals, where it is one of the few used last and can be
    /// told without reading every token; null otherwise. Throws as the lexer does.
    StatementShape* findLately(std::string_view statement,
                               std::vector<dialect::LiteralValue>& values);
    /// Takes in a shape that is not known yet, and drops the one not used for longest.
    StatementShape& insert(StatementShape shape);
    void clear();
    [[nodiscard]] std::size_t size() const { return byKey_.size(); }

private:
    StatementShape* useNow(std::list<StatementShape>::iterator shape);

    std::list<StatementShape> shapes_; ///< the one used last in front
    std::unordered_map<std::string_view, std::list<StatementShape>::iterator> byKey_;
};

} // namespace kintar::companion::sqlite
