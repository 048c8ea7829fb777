// The texts that the override editor shows.
#pragma once

#include "base/LocaleFormats.h"
#include "overrides/OverrideTime.h"
#include "overrides/objOvrSchedule.h"

#include <cstddef>
#include <functional>
#include <string>

namespace kintar {

class OverrideTexts {
public:
    /// `textByNumber` gives a text of the site, empty where it has none.
    OverrideTexts(LocaleFormats formats, std::function<std::string(std::int16_t)> textByNumber)
        : formats_(std::move(formats)), textByNumber_(std::move(textByNumber)) {}

    [[nodiscard]] const LocaleFormats& formats() const { return formats_; }

    /// The window's caption on a new schedule.
    [[nodiscard]] std::string newCaption() const;
    /// The window's caption on a stored one; `position` counts from 1.
    [[nodiscard]] std::string positionCaption(std::size_t position, std::size_t count) const;
    /// What the error frame says where a side has no command.
    [[nodiscard]] std::string missingCommand() const;
    /// A slider's time of day.
    [[nodiscard]] std::string readout(int slider) const;
    /// Which zone the times are in, and how far from the workstation's own time that is.
    [[nodiscard]] static std::string zoneLine(const OverrideZone& zone, OverrideOffsets offsets);
    /// Minutes that the times shown are ahead of the workstation's own.
    [[nodiscard]] static int aheadOfWorkstation(const OverrideZone& zone, OverrideOffsets offsets);

private:
    [[nodiscard]] std::string textOr(std::int16_t number, const char* design) const;

    LocaleFormats formats_;
    std::function<std::string(std::int16_t)> textByNumber_;
};

} // namespace kintar
