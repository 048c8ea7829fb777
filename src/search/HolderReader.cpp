#include "search/HolderReader.h"

#include "server/IgnoringErrors.h"

#include <algorithm>

namespace kintar::board {
namespace {

/// A date-time as "general date"; anything else as its text.
std::string dateText(const FieldValue& value, const LocaleFormats& formats) {
    std::string text = value.text();
    if (!value.isNull()) {
        ignoringErrors([&] { text = formats.formatGeneralDate(value.asDateTime()); });
    }
    return text;
}

void addRows(Board& board, Recordset& names) {
    const std::size_t id = names.fieldIndex("ID");
    const std::size_t name = names.fieldIndex("Name");
    for (; !names.atEnd(); names.MoveNext()) {
        board.add(names.field(id).asLong(), names.field(name).text());
    }
}

Icon iconOf(const Recordset& uses) {
    constexpr std::size_t inOut = 4; // by position: this is done for every holder of a list
    return !uses.atEnd() && isIn(uses.field(inOut).view()) ? Icon::In : Icon::Out;
}

} // namespace

void fillBoard(Board& board, Recordset& names) {
    try {
        addRows(board, names);
    } catch (...) {
        board.finishFilling();
        throw;
    }
    board.finishFilling();
}

std::optional<LastUse> readLastUse(TarnRec& record, Connection& connection, std::int32_t nameId,
                                   const LocaleFormats& formats) {
    const Recordset rows = record.OpenRecordset(stateQuery(nameId), connection);
    if (rows.atEnd()) {
        return std::nullopt;
    }
    LastUse use;
    use.loc = rows.field("Loc").text();
    use.lastDev = rows.field("LastDev").text();
    use.lastDate = dateText(rows.field("LastDate"), formats);
    use.inOut = rows.field("InOut").text();
    return use;
}

bool CompanionStates::prepare() {
    record_ = &globals_.tarnRec();
    if (!own_ && globals_.gSys) {
        own_ = globals_.gSys->newReadSession();
    }
    connection_ = own_ ? &own_->connection() : &globals_.gCnn();
    return own_ != nullptr;
}

void CompanionStates::begin() {
    if (own_) {
        own_->beginRead();
    }
}

std::vector<Icon> CompanionStates::read(std::span<const std::int32_t> nameIds) {
    statements_.clear();
    for (const std::int32_t id :
         nameIds.first(std::min(nameIds.size(), record_->readTogether(*connection_)))) {
        statements_.push_back(stateQuery(id));
    }
    std::vector<Icon> icons;
    for (ReadOfMany& state : record_->OpenRecordsets(statements_, *connection_)) {
        icons.push_back(iconOf(state.take()));
    }
    return icons;
}

void CompanionStates::end() noexcept {
    if (own_) {
        own_->endRead();
    }
}

} // namespace kintar::board
