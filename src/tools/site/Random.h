// Random choices that come out the same on every machine and with every library.
#pragma once

#include <cstdint>
#include <random>
#include <span>
#include <string_view>

namespace kintar::site {

/// A source of choices for one purpose and one number (a person's, a card's): what it gives depends
/// on seed, purpose and number alone, so that person 17 is the same in a small and in a large site.
///
/// The standard library's distributions differ between implementations; the engine does not.
class Random {
public:
    Random(std::uint64_t seed, std::string_view purpose, std::uint64_t number = 0);

    /// 0 to `bound` - 1, all equally likely. `bound` is at least 1.
    std::uint64_t below(std::uint64_t bound);
    /// `low` to `high`, both included.
    int between(int low, int high);
    /// True in `share` of 1000 cases.
    bool perMille(int share) { return between(0, 999) < share; }
    bool percent(int share) { return perMille(share * 10); }
    /// One of a list that is not empty.
    template <class T, std::size_t N>
    const T& pick(std::span<const T, N> list) {
        return list[static_cast<std::size_t>(below(list.size()))];
    }

private:
    std::mt19937_64 engine_;
};

} // namespace kintar::site
