// The program as its windows need it.
#pragma once

#include "platform/Platform.h"

#include <functional>
#include <string>

namespace kintar::platform {

class WindowApplication final : public Application {
public:
    /// `$KINTAR3_APP_DIR` where that is set, else the executable's folder.
    [[nodiscard]] std::string folder() const override;
    [[nodiscard]] Version version() const override;
    void setHelpFile(const std::string& path) override { helpFile_ = path; }
    [[nodiscard]] std::string helpFile() const override { return helpFile_; }
    /// The box does not block other windows; the bus is served from the event loop meanwhile.
    void messageBox(const std::string& text) override;
    void runPendingWindowMessages() override;

    /// What `runPendingWindowMessages` calls around its work: the host keeps the bus out of it, by
    /// not watching its sockets between the two. `after` is called whatever happens; where the
    /// routine is run within itself, only the outer one calls them.
    void setPendingMessagesGate(std::function<void()> before, std::function<void()> after);

private:
    std::string helpFile_;
    std::function<void()> before_;
    std::function<void()> after_;
    int depth_ = 0;
};

} // namespace kintar::platform
