// The override subsystem's database: the shared data connection.
#pragma once

#include "overrides/OverrideServices.h"
#include "server/modGlobals.h"

namespace kintar {

class SharedOverrideDatabase final : public OverrideDatabase {
public:
    explicit SharedOverrideDatabase(modGlobals& globals) : globals_(globals) {}

    Recordset open(std::string_view sql) override {
        return globals_.tarnRec().OpenRecordset(sql, globals_.gCnn());
    }
    void execute(std::string_view sql) override {
        globals_.tarnRec().ExecuteSQL(sql, globals_.gCnn());
    }
    void announceFailure(const std::exception& error) override {
        globals_.tarnRec().AnnounceFailure(error.what());
    }
    std::string SqlText(std::string_view text) override { return globals_.tarnRec().SqlText(text); }
    std::string SqlDate(DateTime value) override { return globals_.tarnRec().SqlDate(value); }
    void report(const std::exception& error, std::string_view routine) override {
        globals_.reportError(error, routine);
    }

private:
    modGlobals& globals_;
};

} // namespace kintar
