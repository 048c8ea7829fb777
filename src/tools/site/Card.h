// The cards of an invented person and where they were used.
#pragma once

#include "base/DateTime.h"
#include "tools/site/Person.h"

#include <array>
#include <optional>
#include <string>
#include <vector>

namespace kintar::site {

/// The latest use of a card at one location.
struct CardUse {
    int loc = 0;
    std::optional<DateTime> lastDate;
    int lastDev = 0;
    std::array<std::string, 4> inOut; ///< each `I`, `O` or `N`
};

struct Card {
    int id = 0;
    std::string code; ///< no two cards of a site have the same
    std::string cardNum;
    int status = 1; ///< 0: inactive
    DateTime startDate;
    std::optional<DateTime> stopDate;
    bool guardTour = false;
    int dlFlag = 0;
    std::vector<CardUse> uses;
};

/// A person's cards, none to three, numbered on from `firstId`. `now` is the moment that recent
/// uses lie before.
std::vector<Card> cardsOf(const Person& person, int firstId, std::uint64_t seed, DateTime now);

} // namespace kintar::site
