// The criteria dialog and the In / Out board: their places among the server's forms.
#pragma once

#include "base/LocaleFormats.h"
#include "platform/Platform.h"
#include "search/CalledFrom.h"
#include "search/frmInOut.h"
#include "search/frmSelName.h"
#include "server/Forms.h"
#include "server/modGlobals.h"

#include <cstdint>
#include <string>

namespace kintar::search {

/// What both windows stand on. All outlive them.
struct SelectionSurroundings {
    modGlobals& globals;
    const platform::Clock& clock;
    platform::SettingsStore& settings;
    const LocaleFormats& formats;
};

/// Holds the default instances of both windows for as long as it lives, and opens them as the name
/// search asks.
class SelectionWindows {
public:
    explicit SelectionWindows(const SelectionSurroundings& services);
    SelectionWindows(const SelectionWindows&) = delete;
    SelectionWindows& operator=(const SelectionWindows&) = delete;
    ~SelectionWindows();

    /// Shows the criteria of a group modeless; `opener` gets the statement. Database errors pass,
    /// and nothing is shown then.
    frmSelName& showCriteria(std::int32_t locGrp, CalledFrom& opener);
    /// Loads the board of a group with the names of a statement, and shows it modeless.
    frmInOut& showBoard(std::int32_t locGrp, const std::string& sql, bool showUdfs);

    DefaultInstance<frmSelName>& selName() { return selName_; }
    DefaultInstance<frmInOut>& inOut() { return inOut_; }

private:
    SelectionSurroundings services_;
    DefaultInstance<frmSelName> selName_;
    DefaultInstance<frmInOut> inOut_;
};

} // namespace kintar::search
