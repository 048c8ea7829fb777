// What the name search has found: one result, shared by all clients.
#pragma once

#include "server/Observers.h"

#include <cstdint>
#include <string>
#include <string_view>

namespace kintar {

/// The result of the one name search window. Two clients that search at once overwrite each other's
/// result; that is accepted. `SelNameReady` is made False only when the window loads.
class NameSearchResult {
public:
    /// Told the name of each member whose value is (again) what it is now.
    Observers<std::string_view> changed;
    /// Told that a print request has ended: which, and why nothing was printed (empty: it was).
    Observers<std::int16_t, const std::string&> printEnded;

    [[nodiscard]] std::int32_t SelNameID() const { return selNameId_; }
    [[nodiscard]] const std::string& SelName() const { return selName_; }
    [[nodiscard]] bool SelNameReady() const { return selNameReady_; }

    /// The window has loaded: no result yet. Tells observers only where that is a change; the name
    /// of an earlier search stays.
    void windowLoaded();
    void storeName(const std::string& name) { selName_ = name; }
    void storeId(std::int32_t id) { selNameId_ = id; }
    /// The dialog has been closed. Tells every observer of all three members, `SelNameReady` last,
    /// also where no value has changed: an observer cannot tell this choice from the one before.
    void dialogClosed();

private:
    std::int32_t selNameId_ = 0;
    std::string selName_;
    bool selNameReady_ = false;
};

} // namespace kintar
