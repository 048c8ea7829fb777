// The words that mean something in a statement.
#pragma once

#include <string>
#include <string_view>

namespace kintar::companion::dialect {

/// Same letters without regard to case; ASCII, as all keywords and table names compare.
bool sameName(std::string_view a, std::string_view b);

/// An order in which the same names are equal.
struct NameOrder {
    bool operator()(std::string_view a, std::string_view b) const;
};

/// A name as every engine takes it whatever it holds.
std::string quotedName(std::string_view name);

/// A word that cannot be a name unless it stands in brackets.
bool isReserved(std::string_view word);

/// `True`, `False` or `Null`.
bool isConstant(std::string_view word);

} // namespace kintar::companion::dialect
