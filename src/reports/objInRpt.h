// The public class that builds the who-is-in report's data.
#pragma once

#include "reports/InRptBuild.h"
#include "reports/ReportTurns.h"
#include "server/ClassTable.h"
#include "server/modGlobals.h"

#include <memory>
#include <optional>

namespace kintar {

/// Takes no part in the shared lifetime: it works on the shared state that others brought up, and
/// reports an error where there is none.
class objInRpt final : public PublicObject {
public:
    objInRpt(modGlobals& globals, ReportDatabases& databases, platform::Files& files,
             const platform::Clock& clock, platform::EventLoop& loop, ReportTurns& turns)
        : globals_(globals), databases_(databases), files_(files), clock_(clock), loop_(loop),
          turns_(turns), self_(std::make_shared<objInRpt*>(this)) {}
    objInRpt(const objInRpt&) = delete;
    objInRpt& operator=(const objInRpt&) = delete;
    ~objInRpt() override { *self_ = nullptr; }

    /// Builds "InRpt.Mdb" in the temporary folder for the location's group. Errors are reported to
    /// the companion, never raised; after one there is no such file. It waits for whoever has the
    /// report database, and builds a step at each turn of the event loop: windows and other clients
    /// are served meanwhile. Destroyed before its end it leaves nothing.
    void Create(std::int32_t loc, Completion completion);

    /// The printer that the printer map names; empty where it names none.
    [[nodiscard]] std::string Printer() const { return state_.printer; }

    /// The same in steps, for a caller that has the turn: begin, then step until it is false.
    void begin(std::int32_t loc);
    bool step();
    /// Of the last build; nothing before the first.
    [[nodiscard]] const reports::InRptBuild* build() const { return build_ ? &*build_ : nullptr; }

    static PublicClass describe(modGlobals& globals, ReportDatabases& databases,
                                platform::Files& files, const platform::Clock& clock,
                                platform::EventLoop& loop, ReportTurns& turns);

private:
    void stepLater(const ReportTurns::Turn& turn, const Completion& completion);

    modGlobals& globals_;
    ReportDatabases& databases_;
    platform::Files& files_;
    const platform::Clock& clock_;
    platform::EventLoop& loop_;
    ReportTurns& turns_;
    /// Set to nothing when this goes: what comes later sees that.
    std::shared_ptr<objInRpt*> self_;
    reports::InRptState state_;
    std::optional<reports::InRptBuild> build_;
};

} // namespace kintar
