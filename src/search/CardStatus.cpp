#include "search/CardStatus.h"

#include "server/IgnoringErrors.h"

namespace kintar::search {
namespace {

/// The date of last use, a blank, the device's name; a device that is gone leaves its name empty.
std::string lastUseText(const Database& database, const Recordset& use,
                        const LocaleFormats& formats) {
    const FieldValue date = use.field("LastDate");
    const FieldValue loc = use.field("Loc");
    const FieldValue device = use.field("LastDev");
    if (date.isNull() || loc.isNull() || device.isNull()) {
        return {}; // never used: there is no device to ask for
    }
    const Recordset devices =
        database.open("Select Name From Dev Where Loc = " + std::to_string(loc.leadingLong()) +
                      " And Device = " + std::to_string(device.leadingLong()));
    const std::string name = devices.atEnd() ? std::string() : devices.field("Name").text();
    return "  " + formats.formatGeneralDate(date.asDateTime()) + " " + name;
}

} // namespace

CardStatus readCardStatus(const Database& database, std::string_view tag, std::int32_t nameId,
                          const LocaleFormats& formats) {
    CardStatus shown;
    shown.visitor = tag == "True";
    if (shown.visitor) {
        shown.status = visitorStatus;
    }
    ignoringErrors([&] {
        const Recordset use = database.open(
            "SELECT Status, Loc, LastDate, LastDev, (Inout1 & '  ' & Inout2 & '  ' & Inout3 & '  ' "
            "& Inout4) as InOut FROM Cards Left Join LocCards On Cards.ID = LocCards.CardID WHERE "
            "NameID = " +
            std::to_string(nameId) + " And Status <> 0 Order By LastDate Desc");
        if (use.atEnd()) {
            return;
        }
        const std::string inOut = use.field("InOut").text();
        if (inOut != "N  N  N  N") {
            shown.status = "     " + inOut;
        }
        shown.lastUse = lastUseText(database, use, formats);
    });
    return shown;
}

} // namespace kintar::search
