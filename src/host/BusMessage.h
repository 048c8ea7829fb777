// A message of the bus that is kept for as long as somebody holds it, and the error it can end in.
#pragma once

#include <stdexcept>
#include <string>
#include <systemd/sd-bus.h>
#include <utility>

namespace kintar::host {

/// Shared ownership of an sd-bus message; may be empty.
class BusMessage {
public:
    BusMessage() = default;
    /// Takes over the reference that the caller holds.
    static BusMessage adopt(sd_bus_message* message) {
        BusMessage adopted;
        adopted.message_ = message;
        return adopted;
    }
    BusMessage(const BusMessage& other) : message_(sd_bus_message_ref(other.message_)) {}
    BusMessage(BusMessage&& other) noexcept : message_(std::exchange(other.message_, nullptr)) {}
    BusMessage& operator=(BusMessage other) noexcept {
        std::swap(message_, other.message_);
        return *this;
    }
    ~BusMessage() { sd_bus_message_unref(message_); }

    [[nodiscard]] sd_bus_message* get() const { return message_; }
    explicit operator bool() const { return message_ != nullptr; }

    // "" where the message has no such field.
    [[nodiscard]] const char* path() const { return text(sd_bus_message_get_path(message_)); }
    [[nodiscard]] const char* interface() const {
        return text(sd_bus_message_get_interface(message_));
    }
    [[nodiscard]] const char* member() const { return text(sd_bus_message_get_member(message_)); }
    [[nodiscard]] const char* sender() const { return text(sd_bus_message_get_sender(message_)); }
    /// The signature of all arguments.
    [[nodiscard]] const char* signature() const {
        return text(sd_bus_message_get_signature(message_, 1));
    }

private:
    static const char* text(const char* field) { return field ? field : ""; }

    sd_bus_message* message_ = nullptr;
};

/// An error of the contract that answers a call: its name on the bus, and words for a person.
class BusError : public std::runtime_error {
public:
    BusError(const char* name, const std::string& text) : std::runtime_error(text), name_(name) {}
    /// A constant of BusNames.h.
    [[nodiscard]] const char* name() const { return name_; }

private:
    const char* name_;
};

} // namespace kintar::host
