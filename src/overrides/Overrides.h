// The override subsystem: its window's place, and what its classes share.
#pragma once

#include "overrides/OverrideDone.h"
#include "overrides/OverrideServices.h"
#include "overrides/SharedOverrideDatabase.h"
#include "overrides/frmOvrSchedule.h"
#include "platform/WindowRequests.h"
#include "server/Forms.h"

namespace kintar {

/// Holds the default instance of the override window, at its place among the server's forms, for as
/// long as it lives.
class Overrides {
public:
    /// References outlive this object.
    struct Surroundings {
        modGlobals& globals;
        platform::Application& application;
        const platform::Clock& clock;
        platform::ZoneRegistry& zones;
        platform::WindowRequests& windows;
        LocaleFormats formats;
    };

    explicit Overrides(Surroundings surroundings);
    Overrides(const Overrides&) = delete;
    Overrides& operator=(const Overrides&) = delete;
    ~Overrides();

    DefaultInstance<frmOvrSchedule>& ovrSchedule() { return ovrSchedule_; }
    [[nodiscard]] OverrideDone& done() { return done_; }

    /// The public classes, in the order of the table: the editor's facade and the record.
    PublicClass describeOverride();
    PublicClass describeOvrSchedule();

private:
    [[nodiscard]] OverrideServices recordServices();
    [[nodiscard]] OverrideTexts texts() const;

    Surroundings surroundings_;
    SharedOverrideDatabase database_;
    OverrideDone done_;
    DefaultInstance<frmOvrSchedule> ovrSchedule_;
};

} // namespace kintar
