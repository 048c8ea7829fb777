// The companion's announcements, in windows.
#pragma once

#include "companion/Notices.h"

namespace kintar::host {

/// Each announcement is a modeless window that waits for nobody and takes no call's time.
class OperatorNotices final : public companion::Notices {
public:
    void writeFailed(const std::string& reason) override;
    /// Says so in the titles of all forms.
    void databaseAway(bool away) override;
};

} // namespace kintar::host
