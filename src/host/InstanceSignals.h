// The change signals of one instance.
#pragma once

#include "host/BusConnection.h"
#include "host/InstanceRegistry.h"

#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace kintar::host {

/// Sends the signals of one instance to its creator alone: they may carry a person's name.
class InstanceSignals final : public ObjectSignals {
public:
    /// `instance` outlives this.
    InstanceSignals(BusConnection& connection, const Instance& instance,
                    std::function<void(const std::string&)> log)
        : connection_(connection), instance_(instance), log_(std::move(log)) {}

    /// Nothing while the instance is being created: its creator does not know it yet.
    void changed(std::string_view name) override;
    void signal(std::string_view name, const std::vector<Value>& arguments) override;

private:
    void send(const Member& member);
    void send(const Signal& declared, const std::vector<Value>& arguments);

    BusConnection& connection_;
    const Instance& instance_;
    std::function<void(const std::string&)> log_;
};

} // namespace kintar::host
