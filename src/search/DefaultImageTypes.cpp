#include "search/DefaultImageTypes.h"

#include "base/RunTimeError.h"

namespace kintar::search {
namespace {

std::string groupKey(std::int32_t locGrp) {
    return std::to_string(locGrp) + "L";
}

} // namespace

void DefaultImageTypes::LoadDefaultImageTypes(const Database& database) {
    types_.clear();
    Recordset rows = database.open("SELECT LocGrp, Num FROM ImageType WHERE DefaultImage <> 0");
    for (; !rows.atEnd(); rows.MoveNext()) {
        const std::int16_t type = rows.field("Num").asInteger();
        if (!types_.emplace(groupKey(rows.field("LocGrp").asLong()), type).second) {
            throw RunTimeError::duplicateKey();
        }
    }
}

std::int16_t DefaultImageTypes::of(std::int32_t locGrp) const {
    const auto found = types_.find(groupKey(locGrp));
    if (found == types_.end()) {
        throw RunTimeError::invalidCall();
    }
    return found->second;
}

} // namespace kintar::search
