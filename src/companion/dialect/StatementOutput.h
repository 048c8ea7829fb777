// A statement in an engine's own language while it is being written.
#pragma once

#include "companion/dialect/EngineWriter.h"

#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace kintar::companion::dialect {

/// The text, its parameters, and the names that tables have in it.
class StatementOutput {
public:
    StatementOutput(const StatementOutput&) = delete;
    StatementOutput& operator=(const StatementOutput&) = delete;
    virtual ~StatementOutput() = default;

    StatementOutput& operator<<(std::string_view text) {
        translation_.text += text;
        return *this;
    }
    /// A parameter: the literal itself, or what is made from it.
    StatementOutput& operator<<(const Parameter& parameter);

    [[nodiscard]] std::size_t size() const { return translation_.text.size(); }
    /// Takes away and gives back what was written from `from` on.
    std::string cut(std::size_t from);

    /// The clause that introduces a table: its name, and an alias where that is another.
    virtual void introduce(const TableSource& table) = 0;
    /// The name that the engine knows a table or column of a site by, quoted.
    [[nodiscard]] virtual std::string schemaName(std::string_view name) const = 0;
    /// The name that columns of an introduced table are written with, quoted.
    [[nodiscard]] const std::string& nameOf(const TableSource& table) const;

    [[nodiscard]] const LiteralValue& value(std::size_t literal) const { return values_[literal]; }
    void addSearch(const TextSearch& search) { translation_.searches.push_back(search); }
    Translation take(std::vector<Column> columns);

protected:
    /// `mark` stands before a parameter's number.
    StatementOutput(const std::vector<LiteralValue>& values, char mark);

    /// Writes the clause; both names are quoted.
    void introduceAs(const TableSource& table, const std::string& own, std::string name);
    [[nodiscard]] const std::map<const TableSource*, std::string>& names() const { return names_; }

private:
    const std::vector<LiteralValue>& values_;
    char mark_;
    Translation translation_;
    std::map<const TableSource*, std::string> names_;
};

} // namespace kintar::companion::dialect
