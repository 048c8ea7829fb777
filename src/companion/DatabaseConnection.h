// A connection on which statements of the dialect run.
#pragma once

#include "server/Companion.h"

#include <functional>
#include <memory>
#include <string>
#include <string_view>

namespace kintar::companion {

/// What an engine offers to the record helper. Both operations throw DatabaseError.
class DatabaseConnection : public Connection {
public:
    /// The rows of a SELECT. Another statement is an error.
    virtual Recordset open(std::string_view sql) = 0;
    /// The same, read aside; see TarnRec::BeginRecordset.
    virtual std::unique_ptr<PendingRecordset> openAside(std::string_view sql,
                                                        std::function<void()> ended) = 0;
    /// Runs an INSERT, UPDATE or DELETE, whole or not at all. A SELECT is an error.
    virtual void execute(std::string_view sql) = 0;
    /// How the engine would go about the statement, a step a line; nothing is run.
    virtual std::vector<std::string> plan(std::string_view sql) = 0;
};

} // namespace kintar::companion
