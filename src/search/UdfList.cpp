#include "search/UdfList.h"

#include "server/IgnoringErrors.h"

namespace kintar::search {
namespace {

/// A mark that cannot be read hides: what is not known to be open stays closed.
bool isHidden(const FieldValue& mark) {
    bool hidden = true;
    ignoringErrors([&] { hidden = mark.asBoolean(); });
    return hidden;
}

} // namespace

std::vector<UdfRow> readUdfRows(const Database& database, std::int32_t locGrp, std::int32_t nameId,
                                bool canViewUdf) {
    Recordset names = database.open("SELECT UdfNum, Name, Hidden FROM UdfName WHERE LocGrp = " +
                                    std::to_string(locGrp) + " Order By UdfNum");
    Recordset values =
        database.open("SELECT UdfNum, UdfText FROM UDF WHERE NameID = " + std::to_string(nameId) +
                      " Order By UdfNum");
    std::vector<UdfRow> rows;
    rows.reserve(names.RecordCount());
    for (; !names.atEnd(); names.MoveNext()) {
        UdfRow row;
        row.key = names.field("UdfNum").text();
        row.name = names.field("Name").text();
        bool found = false;
        ignoringErrors([&] {
            values.MoveFirst();
            const std::string number = std::to_string(names.field("UdfNum").asLong());
            found = database.record.FindRecord(values, "UdfNum = " + number);
        });
        if (found && isHidden(names.field("Hidden")) && !canViewUdf) {
            row.withheld = true;
        } else if (found) {
            row.value = values.field("UdfText").text();
        }
        rows.push_back(std::move(row));
    }
    return rows;
}

} // namespace kintar::search
