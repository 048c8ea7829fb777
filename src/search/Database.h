// The data connection as the name search reads it.
#pragma once

#include "server/Companion.h"

#include <string_view>

namespace kintar::search {

/// The record helper and the connection that statements run on. Errors of both pass through.
struct Database {
    TarnRec& record;
    Connection& connection;

    [[nodiscard]] Recordset open(std::string_view sql) const {
        return record.OpenRecordset(sql, connection);
    }
};

} // namespace kintar::search
