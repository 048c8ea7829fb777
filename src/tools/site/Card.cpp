#include "tools/site/Card.h"

#include "tools/site/Plan.h"
#include "tools/site/Random.h"

#include <algorithm>
#include <cstdio>

namespace kintar::site {

namespace {

constexpr int minutesOfDay = 24 * 60;
constexpr int recentMinutes = 48 * 60;

std::string padded(long long number, int width) {
    std::array<char, 32> text{};
    std::snprintf(text.data(), text.size(), "%0*lld", width, number);
    return text.data();
}

std::string codeOf(int id, Random& random) {
    // Steps of 7, so that one code is never another one with leading zeros.
    const long long number = 100000 + 7LL * id;
    const int form = random.between(0, 99);
    if (form < 55) {
        return std::to_string(number);
    }
    if (form < 95) {
        return padded(number, 10);
    }
    return "70" + padded(number, 18);
}

std::optional<DateTime> stopDateOf(DateTime now, bool current, Random& random) {
    const int form = random.between(0, 99);
    const int days = random.between(1, 900);
    if (form < 25) {
        return std::nullopt;
    }
    if (form < 50) {
        return DateTime::fromFields(9999, 12, 31);
    }
    const bool past = form > 92 && !current;
    return now.dateOnly().plusDays(past ? -days : days);
}

std::string flag(Random& random, int unused, int in) {
    const int choice = random.between(0, 99);
    return choice < unused ? "N" : choice < unused + in ? "I" : "O";
}

CardUse useAt(const Location& location, DateTime now, Random& random) {
    CardUse use;
    use.loc = location.loc;
    const int kind = random.between(0, 999);
    if (kind < 60) {
        // Known at the location, and never used there.
        use.inOut = {"N", "N", "N", "N"};
        return use;
    }
    const int minutes = kind < 560 ? random.between(0, recentMinutes - 1)
                                   : random.between(recentMinutes, 400 * minutesOfDay);
    use.lastDate = now.plusMinutes(-minutes);
    // A few uses were at a device that has been taken away since.
    use.lastDev = random.perMille(5) ? 99 : random.between(1, location.devices);
    use.inOut = {flag(random, 25, 45), flag(random, 90, 4), flag(random, 95, 2),
                 flag(random, 98, 1)};
    return use;
}

std::vector<CardUse> usesOf(const Person& person, bool used, DateTime now, Random& random) {
    std::vector<CardUse> uses;
    const bool never = random.percent(10) && !used;
    for (const Location& location : locations()) {
        if (location.locGrp != person.locGrp) {
            continue;
        }
        const bool main = location.loc == person.locGrp;
        if (!never && random.percent(main ? 90 : 25)) {
            uses.push_back(useAt(location, now, random));
        }
    }
    return uses;
}

int countOf(const Person& person, Random& random) {
    const int choice = random.between(0, 99);
    const int count = choice < 6 ? 0 : choice < 78 ? 1 : choice < 95 ? 2 : 3;
    // The persons that examples name always have a card to show and to disable.
    return person.id <= exampleCount() ? std::max(count, 1) : count;
}

Card cardOf(const Person& person, int id, bool example, DateTime now, Random& random) {
    Card card;
    card.id = id;
    card.code = codeOf(id, random);
    card.cardNum =
        std::string(1, static_cast<char>('A' + random.between(0, 5))) + "-" + padded(id, 6);
    const int status = random.between(0, 99);
    card.status = example || status < 82 ? 1 : status < 88 ? 2 : 0;
    card.startDate = now.dateOnly().plusDays(-random.between(1, 2000));
    card.stopDate = stopDateOf(now, example, random);
    card.guardTour = random.percent(8);
    const int download = random.between(0, 99);
    card.dlFlag = download < 80 ? 0 : download < 95 ? 1 : 2;
    card.uses = usesOf(person, example, now, random);
    return card;
}

} // namespace

std::vector<Card> cardsOf(const Person& person, int firstId, std::uint64_t seed, DateTime now) {
    Random random(seed, "cards", static_cast<std::uint64_t>(person.id));
    const int count = countOf(person, random);
    std::vector<Card> cards;
    for (int i = 0; i < count; ++i) {
        const bool example = i == 0 && person.id <= exampleCount();
        cards.push_back(cardOf(person, firstId + i, example, now, random));
    }
    return cards;
}

} // namespace kintar::site
