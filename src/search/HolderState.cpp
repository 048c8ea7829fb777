#include "search/HolderState.h"

#include "base/Number.h"
#include "base/RunTimeError.h"

namespace kintar::board {
namespace {

std::int32_t numberOrZero(std::string_view text) {
    try {
        return leadingLong(text);
    } catch (const RunTimeError&) {
        return 0;
    }
}

} // namespace

std::string stateQuery(std::int32_t nameId) {
    return "SELECT Status, Loc, LastDate, LastDev, (Inout1 & '  ' & Inout2 & '  ' & Inout3 & '  ' "
           "& Inout4) as InOut FROM Cards Left Join LocCards On Cards.ID = LocCards.CardID WHERE "
           "NameID = " +
           std::to_string(nameId) + " And Status <> 0 Order By LastDate Desc";
}

bool isIn(std::string_view inOut) {
    return inOut.find('I') != std::string_view::npos;
}

HolderState stateOf(const std::optional<LastUse>& use) {
    HolderState state;
    if (!use) {
        return state;
    }
    state.icon = isIn(use->inOut) ? Icon::In : Icon::Out;
    state.lastLoc = numberOrZero(use->loc);
    const std::int32_t device = numberOrZero(use->lastDev);
    state.lastDev = static_cast<std::int16_t>(device) == device ? static_cast<std::int16_t>(device)
                                                                : std::int16_t{0};
    state.lastDate = use->lastDate;
    return state;
}

std::string sortText(Icon icon, std::string_view name) {
    return std::to_string(static_cast<int>(icon)) + std::string(name);
}

std::string deviceCriterion(const HolderState& state) {
    return "Loc = " + std::to_string(state.lastLoc) +
           " And Device = " + std::to_string(state.lastDev);
}

std::string lastUseCaption(const HolderState& state, std::string_view deviceName) {
    // A blank behind "Dev:" and none behind "Loc:": meant.
    return "Loc:" + std::to_string(state.lastLoc) + "  Dev: " + std::string(deviceName) + "  " +
           state.lastDate;
}

} // namespace kintar::board
