// The toolkit's event loop as a queue of work.
#pragma once

#include "platform/Printers.h"

namespace kintar::platform {

class QtEventLoop final : public EventLoop {
public:
    void later(std::function<void()> work) override;
};

} // namespace kintar::platform
