// The browser that the desktop prefers.
#pragma once

#include "platform/WebBrowser.h"

namespace kintar::platform {

/// Starts the desktop's opener (`xdg-open`), which outlives the server.
class DesktopBrowser final : public WebBrowser {
public:
    bool open(const std::string& address) override;
};

} // namespace kintar::platform
