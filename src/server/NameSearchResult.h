// What the name search has found: one result, shared by all clients.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace kintar {

/// The result of the one name search window. Two clients that search at once overwrite each other's
/// result; that is accepted. `SelNameReady` is made False only when the window loads.
class NameSearchResult {
public:
    /// Told the name of a member whose value is (again) what it is now.
    using Observer = std::function<void(std::string_view member)>;
    /// Observes until it is destroyed; must not outlive the result.
    using Observation = std::shared_ptr<void>;

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

    [[nodiscard]] Observation observe(Observer observer);

private:
    void tell(std::string_view member);

    std::int32_t selNameId_ = 0;
    std::string selName_;
    bool selNameReady_ = false;
    std::vector<std::weak_ptr<Observer>> observers_;
};

} // namespace kintar
