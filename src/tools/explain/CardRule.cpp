#include "display/CardCommand.h"
#include "tools/explain/Rules.h"

namespace kintar::explain {

void applyCard(const Json& input, Answer& answer) {
    CardCommandInput command;
    command.enable = boolean(input, "enable");
    command.id = number32(input, input.contains("nameId") ? "nameId" : "id");
    command.locGrp = number32(input, "locGrp");
    required(input, "code");
    command.code = textOrNumber(input, "code");
    command.now = dateTime(input, "now");
    command.formats = locale(input, "locale");
    if (input.contains("ruleFile") && !input["ruleFile"].is_null()) {
        command.ruleFile = text(input, "ruleFile");
    }
    command.existing = texts(input, "existing");

    const CardCommandResult result = planCardCommand(command);
    answer.add("written", result.written)
        .add("staging", result.staging)
        .add("stopDate", result.stopDate ? Json(result.stopDate->iso()) : Json())
        .add("fileName", result.fileName ? Json(*result.fileName) : Json());
}

} // namespace kintar::explain
