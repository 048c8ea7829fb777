// The commands that a schedule applies at its start and at its stop.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

namespace kintar {

/// Codes as the database holds them.
enum class OverrideCommand : std::int32_t {
    None = 0,
    Open = 1,
    Secure = 2,
    TimeZone = 3,
    Arm = 4,
    ByPass = 5,
};

/// In the order of the option buttons, `opt1` to `opt5` and `opt6` to `opt10`.
inline constexpr std::array<OverrideCommand, 5> overrideCommands = {
    OverrideCommand::Secure, OverrideCommand::Open, OverrideCommand::TimeZone, OverrideCommand::Arm,
    OverrideCommand::ByPass};

/// The option buttons of one side: which are available, and which one is selected, if any.
class OverrideOptions {
public:
    void makeAvailable(OverrideCommand command, bool available) {
        available_.at(index(command)) = available;
    }
    [[nodiscard]] bool isAvailable(OverrideCommand command) const {
        return available_.at(index(command));
    }
    void select(OverrideCommand command) { selected_ = command; }
    /// A selected button may have become unavailable since.
    [[nodiscard]] OverrideCommand selected() const { return selected_; }
    /// Selects the button of a code from the database; does nothing for a code without one and
    /// where that button is not available, so that the selection stays what it was.
    void selectCode(std::int32_t code) {
        for (const OverrideCommand command : overrideCommands) {
            if (static_cast<std::int32_t>(command) == code && isAvailable(command)) {
                selected_ = command;
            }
        }
    }

private:
    static std::size_t index(OverrideCommand command) {
        return static_cast<std::size_t>(command) - 1;
    }

    std::array<bool, overrideCommands.size()> available_{};
    OverrideCommand selected_ = OverrideCommand::None;
};

} // namespace kintar
