#include "search/UdfPermission.h"

#include <string>

namespace kintar::search {
namespace {

/// Location 0 is always in the list: a profile row for it applies to every group.
std::string locationList(const Database& database, std::int32_t locGrp) {
    std::string list = "0";
    Recordset rows = database.open("Select Loc From Loc Where LocGrp = " + std::to_string(locGrp));
    for (; !rows.atEnd(); rows.MoveNext()) {
        list += "," + std::to_string(rows.field("Loc").asLong());
    }
    return list;
}

} // namespace

bool CanViewUDF(const Database& database, std::int32_t oprId, std::int32_t locGrp) {
    const Recordset operators =
        database.open("Select PwProfile From OPR Where ID = " + std::to_string(oprId));
    if (operators.atEnd()) {
        return false;
    }
    const std::string profile = std::to_string(operators.field("PwProfile").asLong());
    const Recordset profiles =
        database.open("Select AllMenus From PwProfile Where ID = " + profile);
    if (profiles.atEnd()) {
        return false;
    }
    if (profiles.field("AllMenus").asBoolean()) {
        return true;
    }
    // Two blanks before the first sign of equality: the statement is sent as it always was.
    Recordset rows =
        database.open("Select [View] From MenuProfile Where PwProfileID = " + profile +
                      " AND MenuID  = 1061 AND Loc IN (" + locationList(database, locGrp) + ")");
    for (; !rows.atEnd(); rows.MoveNext()) {
        if (rows.field("View").asBoolean()) {
            return true;
        }
    }
    return false;
}

} // namespace kintar::search
