// Many runs of one statement as one run of another.
#pragma once

#include <cstddef>
#include <libpq-fe.h>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace kintar::companion::postgres {

/// The values of one parameter, one for each run; none is Null.
using ValuesOfRuns = std::vector<std::optional<std::string>>;

[[nodiscard]] bool areEqual(const ValuesOfRuns& values);
/// The values as an array in the engine's text form.
std::string arrayText(const ValuesOfRuns& values);
/// The type of an array of values of a parameter's type.
Oid arrayTypeOf(Oid type);

/// The text of a SELECT made into one that gives the rows of many runs of it. The parameters that
/// `areArrays` names hold an array, with a value for each run; at least one does. In front of the
/// SELECT's `columns` columns stands the number of the run, from 1. The rows of one run come in the
/// SELECT's own order.
std::string textOfManyRuns(std::string_view text, const std::vector<bool>& areArrays,
                           std::size_t columns);

} // namespace kintar::companion::postgres
