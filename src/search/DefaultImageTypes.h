// The default image type of each location group, as the name search keeps them.
#pragma once

#include "search/Database.h"

#include <cstdint>
#include <map>
#include <string>

namespace kintar::search {

/// Image types under the key of their location group: its decimal text followed by "L".
class DefaultImageTypes {
public:
    /// Reads them anew. Run-time error 457 at a second default of one group; database errors pass.
    void LoadDefaultImageTypes(const Database& database);

    /// Run-time error 5 where the group has none.
    [[nodiscard]] std::int16_t of(std::int32_t locGrp) const;

private:
    std::map<std::string, std::int16_t> types_;
};

} // namespace kintar::search
