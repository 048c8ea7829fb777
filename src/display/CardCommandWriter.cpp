#include "display/CardCommandWriter.h"

#include "display/CardCommand.h"

#include <utility>

namespace kintar {

namespace {

/// Two short lines are read of it; more than this is not a rule file.
constexpr std::size_t ruleFileLimit = 65536;

} // namespace

CardCommandWriter::CardCommandWriter(platform::Files& files, const platform::Clock& clock,
                                     LocaleFormats formats)
    : files_(files), clock_(clock), formats_(std::move(formats)) {}

bool CardCommandWriter::write(const CardCommandOrder& order) {
    const std::string staging =
        platform::rulePath(order.applicationFolder, R"(\Errors\KintrAscii.txt)");
    files_.deleteIfExists(staging);
    CardCommandInput input{order.enable, order.id, order.locGrp, order.code,
                           clock_.now(), formats_, std::nullopt, {}};
    if (order.enable) {
        input.ruleFile = files_.read(
            platform::rulePath(order.applicationFolder, R"(\CardEnable.txt)"), ruleFileLimit);
    }
    const CardCommandResult plan = planCardCommand(input);
    if (!plan.error.empty()) {
        throw RunTimeError(plan.errorNumber, plan.error);
    }
    if (!plan.written) {
        return false;
    }
    files_.append(staging, plan.staging);
    drop(order.dataPath, plan.staging);
    return true;
}

void CardCommandWriter::drop(const std::string& dataPath, const std::string& command) {
    const std::vector<std::string> existing = files_.names(dataPath);
    std::optional<int> number = freeCommandNumber(existing);
    while (number) {
        const std::string path = platform::rulePath(dataPath, "\\" + commandFileName(*number));
        if (files_.createWhole(path, command)) {
            return;
        }
        number = freeCommandNumber(existing, *number + 1);
    }
    throw allNamesTaken();
}

} // namespace kintar
