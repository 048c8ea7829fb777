#include "tools/site/Random.h"

namespace kintar::site {

namespace {

std::uint64_t mix(std::uint64_t value) {
    value += 0x9e3779b97f4a7c15U;
    value = (value ^ (value >> 30U)) * 0xbf58476d1ce4e5b9U;
    value = (value ^ (value >> 27U)) * 0x94d049bb133111ebU;
    return value ^ (value >> 31U);
}

std::uint64_t hash(std::string_view text) {
    std::uint64_t result = 0xcbf29ce484222325U;
    for (const char c : text) {
        result = (result ^ static_cast<unsigned char>(c)) * 0x100000001b3U;
    }
    return result;
}

} // namespace

Random::Random(std::uint64_t seed, std::string_view purpose, std::uint64_t number)
    : engine_(mix(seed + mix(hash(purpose) + mix(number)))) {}

std::uint64_t Random::below(std::uint64_t bound) {
    // Values above the last whole multiple of the bound would favour the small results.
    const std::uint64_t limit = std::mt19937_64::max() - std::mt19937_64::max() % bound;
    std::uint64_t value = engine_();
    while (value >= limit) {
        value = engine_();
    }
    return value % bound;
}

int Random::between(int low, int high) {
    const auto width = static_cast<std::uint64_t>(static_cast<std::int64_t>(high) - low + 1);
    return static_cast<int>(low + static_cast<std::int64_t>(below(width)));
}

} // namespace kintar::site
