// The operator's web browser.
#pragma once

#include <string>

namespace kintar::platform {

class WebBrowser {
public:
    virtual ~WebBrowser() = default;
    /// Opens an address that the caller has found fit to be opened. It reaches the browser as one
    /// argument; no shell sees it. False where no browser could be started.
    virtual bool open(const std::string& address) = 0;
};

} // namespace kintar::platform
