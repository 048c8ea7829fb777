// What the board looks up for a holder that is clicked: devices and user-defined fields.
#pragma once

#include "search/HolderState.h"
#include "server/Companion.h"

#include <cstdint>
#include <optional>
#include <string>

namespace kintar::board {

/// Read once a list and searched in memory from then on. Database errors pass everywhere.
class BoardTables {
public:
    /// Reads the names of the group's fields, then all devices.
    void load(TarnRec& record, Connection& connection, std::int32_t locGrp);

    /// The name of the device of a last use; nothing where there is none.
    std::optional<std::string> deviceName(TarnRec& record, const HolderState& state);

    /// A line `Name: Value` for each value of a name, in the order of the fields' numbers, CR LF
    /// between them. Fields of other groups and hidden ones are left out.
    std::string ShowUdfs(TarnRec& record, Connection& connection, std::int32_t nameId);

private:
    Recordset udfNames_;
    Recordset devices_;
};

} // namespace kintar::board
