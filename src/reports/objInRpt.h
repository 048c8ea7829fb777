// The public class that builds the who-is-in report's data.
#pragma once

#include "reports/InRptBuild.h"
#include "server/ClassTable.h"
#include "server/modGlobals.h"

#include <optional>

namespace kintar {

/// Takes no part in the shared lifetime: it works on the shared state that others brought up, and
/// reports an error where there is none.
class objInRpt final : public PublicObject {
public:
    objInRpt(modGlobals& globals, ReportDatabases& databases, platform::Files& files,
             const platform::Clock& clock, platform::Application& application)
        : globals_(globals), databases_(databases), files_(files), clock_(clock),
          application_(application) {}

    /// Builds "InRpt.Mdb" in the temporary folder for the location's group. Errors are reported to
    /// the companion, never raised; after one there is no such file. Windows are served meanwhile.
    void Create(std::int32_t loc);

    /// The printer that the printer map names; empty where it names none.
    [[nodiscard]] std::string Printer() const { return state_.printer; }

    /// The same in steps, for a caller that has an event loop: begin, then step until it is false.
    void begin(std::int32_t loc);
    bool step();
    /// Of the last build; nothing before the first.
    [[nodiscard]] const reports::InRptBuild* build() const { return build_ ? &*build_ : nullptr; }

    static PublicClass describe(modGlobals& globals, ReportDatabases& databases,
                                platform::Files& files, const platform::Clock& clock,
                                platform::Application& application);

private:
    modGlobals& globals_;
    ReportDatabases& databases_;
    platform::Files& files_;
    const platform::Clock& clock_;
    platform::Application& application_;
    reports::InRptState state_;
    std::optional<reports::InRptBuild> build_;
};

} // namespace kintar
