#include "display/ImageTypes.h"

#include "base/RunTimeError.h"
#include "server/IgnoringErrors.h"

namespace kintar {

void ImageTypes::build(TarnRec& record, Connection& connection) {
    Recordset groups;
    Recordset types;
    ignoringErrors([&] {
        groups = record.OpenRecordset("SELECT LocGrp FROM LocGrp Order By LocGrp", connection);
    });
    ignoringErrors([&] {
        types = record.OpenRecordset("SELECT LocGrp, Num FROM ImageType WHERE DefaultImage <> 0",
                                     connection);
    });
    for (; !groups.atEnd(); groups.MoveNext()) {
        ignoringErrors([&] { add(record, groups.field("LocGrp").text(), types); });
    }
}

void ImageTypes::add(TarnRec& record, const std::string& group, Recordset& types) {
    auto entry = std::make_unique<objImageType>();
    ignoringErrors([&] {
        if (record.FindRecord(types, "LocGrp = " + group)) {
            entry->ImageType = types.field("Num").asInteger();
        }
    });
    // A key that is there already keeps its first entry.
    entries_.try_emplace(group + "L", std::move(entry));
}

std::int16_t ImageTypes::of(std::int32_t locGrp) const {
    const auto entry = entries_.find(std::to_string(locGrp) + "L");
    if (entry == entries_.end()) {
        throw RunTimeError::invalidCall();
    }
    return entry->second->ImageType;
}

} // namespace kintar
