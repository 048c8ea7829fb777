#include "search/SortedOrder.h"

#include "base/Unicode.h"

#include <algorithm>
#include <unordered_map>

namespace kintar::search {
namespace {

/// A row's place in the one buffer of sort keys. Most comparisons end with the first eight bytes.
struct KeyedRow {
    std::uint64_t firstBytes;
    std::size_t offset;
    std::uint32_t length;
    std::uint32_t row;
};

std::uint64_t firstBytesOf(std::string_view key) {
    std::uint64_t bytes = 0;
    for (std::size_t i = 0; i < sizeof bytes; ++i) {
        bytes = bytes << 8U | (i < key.size() ? static_cast<unsigned char>(key[i]) : 0U);
    }
    return bytes;
}

/// Sort keys of texts, one after another in one buffer; texts that come again share theirs as long
/// as there are few of them (companies, marks).
class KeyBuffer {
public:
    KeyedRow keyOf(std::string_view text, std::uint32_t row) {
        const auto known = known_.find(std::string(text));
        if (known != known_.end()) {
            KeyedRow again = known->second;
            again.row = row;
            return again;
        }
        const std::string key = unicode::sortKey(text);
        const KeyedRow made{.firstBytes = firstBytesOf(key),
                            .offset = keys_.size(),
                            .length = static_cast<std::uint32_t>(key.size()),
                            .row = row};
        keys_ += key;
        if (known_.size() < mostShared) {
            known_.emplace(text, made);
        }
        return made;
    }

    [[nodiscard]] std::string_view at(const KeyedRow& row) const {
        return std::string_view(keys_).substr(row.offset, row.length);
    }

private:
    static constexpr std::size_t mostShared = 512;
    std::unordered_map<std::string, KeyedRow> known_;
    std::string keys_;
};

} // namespace

std::vector<std::uint32_t>
sortedOrder(std::size_t count, const std::function<std::string_view(std::size_t row)>& textOf,
            const std::atomic<bool>& stop) {
    KeyBuffer keys;
    std::vector<KeyedRow> rows;
    rows.reserve(count);
    for (std::size_t row = 0; row < count; ++row) {
        if (stop) {
            return {};
        }
        rows.push_back(keys.keyOf(textOf(row), static_cast<std::uint32_t>(row)));
    }
    std::sort(rows.begin(), rows.end(), [&keys](const KeyedRow& a, const KeyedRow& b) {
        if (a.firstBytes != b.firstBytes) {
            return a.firstBytes < b.firstBytes;
        }
        if (a.offset != b.offset) {
            if (const int order = keys.at(a).compare(keys.at(b)); order != 0) {
                return order < 0;
            }
        }
        return a.row < b.row;
    });
    std::vector<std::uint32_t> order;
    order.reserve(count);
    for (const KeyedRow& row : rows) {
        order.push_back(row.row);
    }
    return order;
}

} // namespace kintar::search
