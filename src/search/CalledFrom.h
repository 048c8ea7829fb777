// The form that opened the criteria dialog, as the dialog sees it.
#pragma once

#include <string>

namespace kintar::search {

class CalledFrom {
public:
    virtual ~CalledFrom() = default;
    /// Fills the opener's list from a complete statement. An error passes, and leaves the dialog
    /// open.
    virtual void PopulateListView(const std::string& sql) = 0;
};

} // namespace kintar::search
