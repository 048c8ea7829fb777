// What a recordset's rows are kept in: cells and texts in chunks that never move once full.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <memory>
#include <string_view>
#include <utility>
#include <vector>

namespace kintar {

/// Items one after another in chunks. A chunk is full at `chunkSize` items; only the first grows,
/// so that few items take little memory, and many are never copied.
template <class Item, unsigned Bits>
class ChunkedBuffer {
public:
    static constexpr std::size_t chunkSize = std::size_t{1} << Bits;

    ChunkedBuffer() = default;
    ChunkedBuffer(ChunkedBuffer&& other) noexcept { *this = std::move(other); }
    ChunkedBuffer& operator=(ChunkedBuffer&& other) noexcept {
        chunks_ = std::exchange(other.chunks_, {});
        used_ = std::exchange(other.used_, {});
        next_ = std::exchange(other.next_, nullptr);
        end_ = std::exchange(other.end_, nullptr);
        capacity_ = std::exchange(other.capacity_, 0);
        return *this;
    }
    ChunkedBuffer(const ChunkedBuffer&) = delete;
    ChunkedBuffer& operator=(const ChunkedBuffer&) = delete;
    ~ChunkedBuffer() = default;

    void push(Item item) {
        if (next_ == end_) {
            grow(1);
        }
        *next_++ = item;
    }

    /// Items pushed; not of use where runs were appended.
    [[nodiscard]] std::size_t size() const {
        return chunks_.empty() ? 0
                               : ((chunks_.size() - 1) << Bits) +
                                     static_cast<std::size_t>(next_ - chunks_.back().get());
    }
    Item& operator[](std::size_t index) { return chunks_[index >> Bits][index & (chunkSize - 1)]; }
    const Item& operator[](std::size_t index) const {
        return chunks_[index >> Bits][index & (chunkSize - 1)];
    }

    /// Appends a run that stays in one piece, and returns the index of its first item.
    std::size_t append(const Item* items, std::size_t count) {
        if (count > static_cast<std::size_t>(end_ - next_) || chunks_.empty()) {
            grow(count);
        }
        Item* const place = next_;
        std::copy_n(items, count, place);
        next_ += count;
        return ((chunks_.size() - 1) << Bits) +
               static_cast<std::size_t>(place - chunks_.back().get());
    }

    /// Calls `function` with the items of each chunk in turn.
    template <class Function>
    void forEachChunk(const Function& function) const {
        for (std::size_t chunk = 0; chunk < chunks_.size(); ++chunk) {
            const Item* items = chunks_[chunk].get();
            function(items,
                     chunk < used_.size() ? used_[chunk] : static_cast<std::size_t>(next_ - items));
        }
    }

    /// Items for which there is room.
    [[nodiscard]] std::size_t capacity() const { return capacity_; }

private:
    /// Makes room for `count` more in one piece; a piece larger than a chunk has one of its own.
    void grow(std::size_t count) {
        constexpr std::size_t firstSize = 64;
        const std::size_t room = chunks_.empty() ? 0 : capacity_;
        const auto used = chunks_.empty() ? 0 : static_cast<std::size_t>(next_ - chunks_[0].get());
        if (chunks_.empty() || (chunks_.size() == 1 && used + count <= chunkSize)) {
            const std::size_t larger =
                std::max(std::min(chunkSize, std::max(firstSize, room * 2)), used + count);
            auto chunk = std::make_unique_for_overwrite<Item[]>(larger);
            if (used > 0) {
                std::copy_n(chunks_[0].get(), used, chunk.get());
            }
            chunks_.clear();
            use(std::move(chunk), used, larger);
            capacity_ = larger;
            return;
        }
        const std::size_t size = std::max(count, chunkSize);
        used_.push_back(static_cast<std::size_t>(next_ - chunks_.back().get()));
        use(std::make_unique_for_overwrite<Item[]>(size), 0, size);
        capacity_ += size;
    }

    void use(std::unique_ptr<Item[]> chunk, std::size_t used, std::size_t size) {
        next_ = chunk.get() + used;
        end_ = chunk.get() + size;
        chunks_.push_back(std::move(chunk));
    }

    std::vector<std::unique_ptr<Item[]>> chunks_;
    std::vector<std::size_t> used_; ///< of each chunk but the last
    Item* next_ = nullptr;
    Item* end_ = nullptr;
    std::size_t capacity_ = 0;
};

/// A value in eight bytes: its kind, and the value itself or where it lies.
class Cell {
public:
    enum class Kind : std::uint8_t { Null, Integer, WideInteger, Real, Text };

    static constexpr std::size_t longestText = (std::size_t{1} << 26U) - 1;
    static constexpr std::size_t lastTextPlace = (std::size_t{1} << 35U) - 1;

    Cell() = default;
    static Cell null() { return Cell(Kind::Null, 0); }
    /// A whole number of at most 61 bits.
    static Cell integer(std::int64_t value) {
        return {Kind::Integer, static_cast<std::uint64_t>(value)};
    }
    static bool fits(std::int64_t value) { return value == (value << kindBits) >> kindBits; }
    /// Number `index` of those that are kept beside the cells.
    static Cell kept(Kind kind, std::size_t index) { return {kind, index}; }
    static Cell text(std::size_t place, std::size_t length) {
        return {Kind::Text, place << 26U | length};
    }

    [[nodiscard]] Kind kind() const { return static_cast<Kind>(bits_ & 7U); }
    [[nodiscard]] std::int64_t integer() const {
        return static_cast<std::int64_t>(bits_) >> kindBits;
    }
    [[nodiscard]] std::size_t index() const { return bits_ >> kindBits; }
    [[nodiscard]] std::size_t textPlace() const { return bits_ >> (kindBits + 26U); }
    [[nodiscard]] std::size_t textLength() const { return (bits_ >> kindBits) & longestText; }

private:
    static constexpr unsigned kindBits = 3;

    Cell(Kind kind, std::uint64_t value)
        : bits_(value << kindBits | static_cast<std::uint64_t>(kind)) {}

    std::uint64_t bits_;
};

} // namespace kintar
