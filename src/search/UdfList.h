// The user-defined fields of one name, as the list shows them.
#pragma once

#include "search/Database.h"

#include <cstdint>
#include <string>
#include <vector>

namespace kintar::search {

struct UdfRow {
    std::string key;  ///< the field's number
    std::string name; ///< always shown, also of a hidden field
    std::string value;
    /// The name has a value that the operator may not read; `value` is empty.
    bool withheld = false;
};

/// One row for each field of the group, in the order of their numbers. Values of hidden fields are
/// there only where `canViewUdf`. Database errors pass.
std::vector<UdfRow> readUdfRows(const Database& database, std::int32_t locGrp, std::int32_t nameId,
                                bool canViewUdf);

} // namespace kintar::search
