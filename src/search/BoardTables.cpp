#include "search/BoardTables.h"

#include "server/IgnoringErrors.h"

namespace kintar::board {
namespace {

/// A mark that cannot be read hides: what is not known to be open stays closed.
bool isHidden(const FieldValue& mark) {
    bool hidden = true;
    ignoringErrors([&] { hidden = mark.asBoolean(); });
    return hidden;
}

} // namespace

void BoardTables::load(TarnRec& record, Connection& connection, std::int32_t locGrp) {
    udfNames_ = record.OpenRecordset("Select Name, UdfNum, Hidden from UdfName Where LocGrp = " +
                                         std::to_string(locGrp) + " Order By UdfNum",
                                     connection);
    devices_ = record.OpenRecordset("Select Loc, Device, Name From Dev", connection);
}

std::optional<std::string> BoardTables::deviceName(TarnRec& record, const HolderState& state) {
    if (devices_.RecordCount() == 0 || !record.FindRecord(devices_, deviceCriterion(state))) {
        return std::nullopt;
    }
    return devices_.field("Name").text();
}

std::string BoardTables::ShowUdfs(TarnRec& record, Connection& connection, std::int32_t nameId) {
    std::string lines;
    Recordset values = record.OpenRecordset("Select UdfNum, UdfText From Udf Where NameID = " +
                                                std::to_string(nameId) + " Order By UdfNum",
                                            connection);
    if (udfNames_.RecordCount() == 0) {
        return lines;
    }
    for (; !values.atEnd(); values.MoveNext()) {
        const FieldValue number = values.field("UdfNum");
        if (number.isNull() ||
            !record.FindRecord(udfNames_, "UdfNum = " + std::to_string(number.leadingLong())) ||
            isHidden(udfNames_.field("Hidden"))) {
            continue;
        }
        lines += (lines.empty() ? "" : "\r\n") + udfNames_.field("Name").text() + ": " +
                 values.field("UdfText").text();
    }
    return lines;
}

} // namespace kintar::board
