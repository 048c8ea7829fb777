// The rows of one SELECT, all in memory.
#pragma once

#include "base/DateTime.h"
#include "server/RowBuffers.h"

#include <bit>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace kintar {

/// What a column holds, as far as the statement tells. Decides how a value shows as text.
enum class ColumnType : std::uint8_t { Any, Integer, Real, Text, YesNo, DateTime };

/// One value of a row; a view, valid as long as its recordset.
class FieldValue {
public:
    enum class Kind : std::uint8_t { Null, Integer, Real, Text };

    FieldValue() = default;
    FieldValue(ColumnType type, std::int64_t value)
        : kind_(Kind::Integer), type_(type), integer_(value) {}
    FieldValue(ColumnType type, double value) : kind_(Kind::Real), type_(type), real_(value) {}
    FieldValue(ColumnType type, std::string_view value)
        : kind_(Kind::Text), type_(type), text_(value) {}

    [[nodiscard]] Kind kind() const { return kind_; }
    [[nodiscard]] bool isNull() const { return kind_ == Kind::Null; }

    /// As text: Yes/No as `True` or `False`, date-times as the database holds them, Null as "".
    [[nodiscard]] std::string text() const;
    /// The text without a copy; empty where the value is not text.
    [[nodiscard]] std::string_view view() const { return text_; }
    /// The type of the value's column.
    [[nodiscard]] ColumnType type() const { return type_; }
    /// As it is stored; 0 where it is not of that kind.
    [[nodiscard]] std::int64_t integer() const { return kind_ == Kind::Integer ? integer_ : 0; }
    [[nodiscard]] double real() const { return kind_ == Kind::Real ? real_ : 0; }
    /// As a number by its leading digits; Null as 0. Raises run-time error 6 outside 32 bits.
    [[nodiscard]] std::int32_t leadingLong() const;
    /// As a whole number. Raises 94 for Null, 13 for text that is no number, 6 outside the type.
    [[nodiscard]] std::int32_t asLong() const;
    [[nodiscard]] std::int16_t asInteger() const;
    /// Anything but 0 and Null is true. Raises 13 for text that is neither a number, True nor
    /// False.
    [[nodiscard]] bool asBoolean() const;
    /// Raises 94 for Null, 13 for what is no date-time.
    [[nodiscard]] DateTime asDateTime() const;
    [[nodiscard]] double asReal() const;

private:
    Kind kind_ = Kind::Null;
    ColumnType type_ = ColumnType::Any;
    union {
        std::int64_t integer_ = 0;
        double real_;
    };
    std::string_view text_;
};

struct Column {
    std::string name;
    ColumnType type = ColumnType::Any;
};

/// The columns of a statement's result, shared by all recordsets of that statement.
using SharedColumns = std::shared_ptr<const std::vector<Column>>;

/// A static snapshot: the count is known, rows are read in either direction by column name (without
/// regard to case) or position. A fresh recordset stands on its first row, or at the end if it has
/// none. Movable, not copied.
class Recordset {
public:
    Recordset() = default;
    explicit Recordset(std::vector<Column> columns);
    explicit Recordset(SharedColumns columns) : columns_(std::move(columns)) {}
    // Moved from, a recordset is empty and may still be asked.
    Recordset(Recordset&& other) noexcept { *this = std::move(other); }
    Recordset& operator=(Recordset&& other) noexcept;
    Recordset(const Recordset&) = delete;
    Recordset& operator=(const Recordset&) = delete;
    ~Recordset() = default;

    // Filling, by engines: the values of a row in column order, row after row. In the header, since
    // a large list is filled at the speed at which the engine steps.
    void addNull() { cells_.push(Cell::null()); }
    void addInteger(std::int64_t value) {
        if (Cell::fits(value)) {
            cells_.push(Cell::integer(value));
        } else {
            addWide(Cell::Kind::WideInteger, std::bit_cast<std::uint64_t>(value));
        }
    }
    void addReal(double value) { addWide(Cell::Kind::Real, std::bit_cast<std::uint64_t>(value)); }
    /// Throws RunTimeError 7 where a text is longer than 64 MB or all of them take 32 GB.
    void addText(std::string_view value) { cells_.push(keptText(value)); }
    /// To be called when all rows are added: makes every text valid UTF-8, whatever the database
    /// held.
    void finish();

    [[nodiscard]] std::size_t RecordCount() const;
    [[nodiscard]] std::size_t FieldCount() const { return columns_->size(); }
    [[nodiscard]] const std::vector<Column>& columns() const { return *columns_; }

    [[nodiscard]] bool atEnd() const { return position_ >= count(); }
    [[nodiscard]] bool beforeStart() const { return position_ < 0; }
    void MoveFirst() { position_ = 0; }
    void MoveLast() { position_ = count() - 1; }
    void MoveNext();
    void MovePrevious();
    /// Stands on row `row`, 0 the first.
    void MoveTo(std::size_t row) { position_ = static_cast<std::ptrdiff_t>(row); }

    /// The row it stands on, 0 the first; means nothing at the end and before the start.
    [[nodiscard]] std::size_t position() const { return static_cast<std::size_t>(position_); }

    /// The position of a column; throws RunTimeError 3265 ("Item cannot be found in the collection
    /// corresponding to the requested name or ordinal.") where there is none.
    [[nodiscard]] std::size_t fieldIndex(std::string_view name) const;
    /// A value of the current row; throws RunTimeError 3021 outside the rows.
    [[nodiscard]] FieldValue field(std::string_view name) const { return field(fieldIndex(name)); }
    [[nodiscard]] FieldValue field(std::size_t index) const;
    /// A value of any row, for lists that show rows without moving.
    [[nodiscard]] FieldValue at(std::size_t row, std::size_t index) const;

    /// Bytes held, for reports of memory a row.
    [[nodiscard]] std::size_t memoryUse() const;

private:
    [[nodiscard]] std::ptrdiff_t count() const {
        return static_cast<std::ptrdiff_t>(RecordCount());
    }

    static SharedColumns noColumns();
    [[noreturn]] static void refuseLongText();
    void addWide(Cell::Kind kind, std::uint64_t bits);

    Cell keptText(std::string_view value) {
        const std::size_t place = texts_.append(value.data(), value.size());
        if (value.size() > Cell::longestText || place > Cell::lastTextPlace) {
            refuseLongText();
        }
        return Cell::text(place, value.size());
    }
    [[nodiscard]] std::string_view textOf(const Cell& cell) const {
        // An empty text may lie at a chunk's end, where no item is.
        return cell.textLength() == 0
                   ? std::string_view()
                   : std::string_view(&texts_[cell.textPlace()], cell.textLength());
    }

    SharedColumns columns_ = noColumns();
    ChunkedBuffer<Cell, 15> cells_;
    ChunkedBuffer<char, 20> texts_;
    std::vector<std::uint64_t> wide_; ///< values that no cell holds
    std::ptrdiff_t position_ = 0;
};

} // namespace kintar
