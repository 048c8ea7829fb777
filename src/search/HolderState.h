// Whether a holder is in, and where the holder's card was last used: what the board knows of one
// name.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace kintar::board {

/// The images of the board's list: 1 marks a holder who is in, 2 one who is out. None: not read
/// yet.
enum class Icon : std::uint8_t { None = 0, In = 1, Out = 2 };

/// The statement that reads a name's uses of active cards, the most recent first.
std::string stateQuery(std::int32_t nameId);

/// What the first row of that statement holds, each as its text; Null is empty.
struct LastUse {
    std::string loc;
    std::string lastDev;
    std::string lastDate; ///< as it is to be shown
    std::string inOut;    ///< the four reader states joined by two blanks
};

/// In wherever an "I" stands in any of the four reader states of the most recent use. The detail
/// pane and the who-is-in report have rules of their own, which differ: meant.
bool isIn(std::string_view inOut);

struct HolderState {
    Icon icon = Icon::Out;
    std::int32_t lastLoc = 0; ///< 0: no use is known
    std::int16_t lastDev = 0;
    std::string lastDate;
    bool operator==(const HolderState&) const = default;
};

/// The state of a holder by the most recent use; out, and nothing known, without one. A location or
/// device that is no number, or none that its type can hold, is 0.
HolderState stateOf(const std::optional<LastUse>& use);

/// The sort text of an item, its sub-item 1: the icon's number before the name, so that all who are
/// in come before all who are out.
std::string sortText(Icon icon, std::string_view name);

/// `Loc = 3 And Device = 7`.
std::string deviceCriterion(const HolderState& state);

/// The caption for a last use at a known device: "Loc:3  Dev: Main door  3/14/2012 5:05:00 PM".
std::string lastUseCaption(const HolderState& state, std::string_view deviceName);

} // namespace kintar::board
