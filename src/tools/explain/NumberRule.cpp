#include "base/Number.h"
#include "tools/explain/Rules.h"

#include <optional>

namespace kintar::explain {

void applyNumber(const Json& input, Answer& answer) {
    const std::string source = text(input, "text");
    const std::string reading = text(input, "reading");
    // Decimal text is a JSON number as it stands, whatever its length.
    if (reading == "leading") {
        answer.addText("value", decimalText(leadingNumber(source)));
    } else if (reading == "whole") {
        answer.addText("value", wholeNumber(source));
    } else if (reading == "numeric") {
        const std::optional<std::string> number = numericText(source);
        if (!number) {
            throw BadInput("not numeric");
        }
        answer.addText("value", *number);
    } else {
        throw BadInput("'reading' is '" + reading + "', not leading, whole or numeric");
    }
}

} // namespace kintar::explain
