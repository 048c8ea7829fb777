#include "server/Recordset.h"

#include "base/Number.h"
#include "base/RunTimeError.h"
#include "base/Unicode.h"

#include <bit>
#include <cmath>
#include <optional>
#include <utility>

namespace kintar {
namespace {

RunTimeError noCurrentRecord() {
    return {3021, "Either BOF or EOF is True, or the current record has been deleted. Requested "
                  "operation requires a current record."};
}

RunTimeError noSuchColumn() {
    return {3265, "Item cannot be found in the collection corresponding to the requested name or "
                  "ordinal."};
}

char foldedAscii(char c) {
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c + ('a' - 'A')) : c;
}

// Column names are identifiers of the schema: ASCII letters are all the case they have.
bool sameName(std::string_view a, std::string_view b) {
    if (a.size() != b.size()) {
        return false;
    }
    for (std::size_t i = 0; i < a.size(); ++i) {
        if (foldedAscii(a[i]) != foldedAscii(b[i])) {
            return false;
        }
    }
    return true;
}

/// The value of a text that is a number as a whole; run-time error 13 where it is none.
double numberOf(std::string_view text) {
    const std::optional<std::string> number = numericText(text);
    if (!number) {
        throw RunTimeError::typeMismatch();
    }
    return leadingNumber(*number);
}

long long rounded(double value) {
    const double whole = std::nearbyint(value);
    constexpr double limit = 9.0e18;
    if (!(std::fabs(whole) < limit)) {
        throw RunTimeError::overflow();
    }
    return static_cast<long long>(whole);
}

} // namespace

std::string FieldValue::text() const {
    switch (kind_) {
    case Kind::Integer:
        return type_ == ColumnType::YesNo ? std::string(booleanText(integer_ != 0))
                                          : std::to_string(integer_);
    case Kind::Real:
        return decimalText(real_);
    case Kind::Text:
        return std::string(text_);
    case Kind::Null:
        break;
    }
    return {};
}

std::int32_t FieldValue::leadingLong() const {
    switch (kind_) {
    case Kind::Integer:
        return toInt32(integer_);
    case Kind::Real:
        return toInt32(rounded(real_));
    case Kind::Text:
        return kintar::leadingLong(text_);
    case Kind::Null:
        break;
    }
    return 0;
}

std::int32_t FieldValue::asLong() const {
    return kind_ == Kind::Integer ? toInt32(integer_) : toInt32(rounded(asReal()));
}

std::int16_t FieldValue::asInteger() const {
    return kind_ == Kind::Integer ? toInt16(integer_) : toInt16(rounded(asReal()));
}

bool FieldValue::asBoolean() const {
    if (kind_ == Kind::Text && (sameName(text_, "true") || sameName(text_, "false"))) {
        return sameName(text_, "true");
    }
    return kind_ != Kind::Null && asReal() != 0;
}

DateTime FieldValue::asDateTime() const {
    if (kind_ == Kind::Null) {
        throw RunTimeError::invalidNull();
    }
    const std::optional<DateTime> moment = DateTime::fromIso(text_);
    if (!moment) {
        throw RunTimeError::typeMismatch();
    }
    return *moment;
}

double FieldValue::asReal() const {
    switch (kind_) {
    case Kind::Integer:
        return static_cast<double>(integer_);
    case Kind::Real:
        return real_;
    case Kind::Text:
        return numberOf(text_);
    case Kind::Null:
        break;
    }
    throw RunTimeError::invalidNull();
}

SharedColumns Recordset::noColumns() {
    static const SharedColumns none = std::make_shared<const std::vector<Column>>();
    return none;
}

Recordset::Recordset(std::vector<Column> columns)
    : columns_(std::make_shared<const std::vector<Column>>(std::move(columns))) {}

Recordset& Recordset::operator=(Recordset&& other) noexcept {
    columns_ = std::exchange(other.columns_, noColumns());
    cells_ = std::exchange(other.cells_, {});
    texts_ = std::exchange(other.texts_, {});
    wide_ = std::exchange(other.wide_, {});
    position_ = std::exchange(other.position_, 0);
    return *this;
}

void Recordset::refuseLongText() {
    throw RunTimeError(7, "Out of memory");
}

void Recordset::addWide(Cell::Kind kind, std::uint64_t bits) {
    cells_.push(Cell::kept(kind, wide_.size()));
    wide_.push_back(bits);
}

void Recordset::finish() {
    bool ascii = true;
    texts_.forEachChunk([&](const char* text, std::size_t length) {
        ascii = ascii && unicode::isAscii({text, length});
    });
    if (ascii) {
        return;
    }
    const std::size_t count = cells_.size();
    for (std::size_t index = 0; index < count; ++index) {
        Cell& cell = cells_[index];
        if (cell.kind() != Cell::Kind::Text || unicode::isAscii(textOf(cell))) {
            continue;
        }
        const std::string valid = unicode::toValidUtf8(textOf(cell));
        if (valid != textOf(cell)) {
            cell = keptText(valid);
        }
    }
}

std::size_t Recordset::RecordCount() const {
    return columns_->empty() ? 0 : cells_.size() / columns_->size();
}

void Recordset::MoveNext() {
    if (!atEnd()) {
        ++position_;
    }
}

void Recordset::MovePrevious() {
    if (!beforeStart()) {
        --position_;
    }
}

std::size_t Recordset::fieldIndex(std::string_view name) const {
    for (std::size_t i = 0; i < columns_->size(); ++i) {
        if (sameName((*columns_)[i].name, name)) {
            return i;
        }
    }
    throw noSuchColumn();
}

FieldValue Recordset::field(std::size_t index) const {
    if (beforeStart()) {
        throw noCurrentRecord();
    }
    return at(static_cast<std::size_t>(position_), index);
}

FieldValue Recordset::at(std::size_t row, std::size_t index) const {
    if (index >= columns_->size()) {
        throw noSuchColumn();
    }
    if (row >= RecordCount()) {
        throw noCurrentRecord();
    }
    const Cell& cell = cells_[row * columns_->size() + index];
    const ColumnType type = (*columns_)[index].type;
    switch (cell.kind()) {
    case Cell::Kind::Integer:
        return {type, cell.integer()};
    case Cell::Kind::WideInteger:
        return {type, std::bit_cast<std::int64_t>(wide_[cell.index()])};
    case Cell::Kind::Real:
        return {type, std::bit_cast<double>(wide_[cell.index()])};
    case Cell::Kind::Text:
        return {type, textOf(cell)};
    case Cell::Kind::Null:
        break;
    }
    return {};
}

std::size_t Recordset::memoryUse() const {
    return cells_.capacity() * sizeof(Cell) + texts_.capacity() +
           wide_.capacity() * sizeof(std::uint64_t);
}

} // namespace kintar
