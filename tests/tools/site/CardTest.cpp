#include "tools/site/Card.h"

#include "TestSite.h"
#include "tools/site/Plan.h"

#include <gtest/gtest.h>

#include <set>

namespace kintar::site {
namespace {

using testing::testNow;

struct Deck {
    std::vector<Card> cards;
    std::vector<Person> owners; ///< of each card
};

Deck deckOf(int people) {
    const Persons persons(1, 0);
    Deck deck;
    for (int id = 1; id <= people; ++id) {
        const Person person = persons.person(id);
        for (Card& card : cardsOf(person, static_cast<int>(deck.cards.size()) + 1, 1, testNow())) {
            deck.cards.push_back(std::move(card));
            deck.owners.push_back(person);
        }
    }
    return deck;
}

TEST(Card, HasACodeOfItsOwnEvenWithoutLeadingZeros) {
    std::set<std::string> codes;
    bool leadingZero = false;
    bool longOne = false;
    for (const Card& card : deckOf(5000).cards) {
        leadingZero = leadingZero || card.code.front() == '0';
        longOne = longOne || card.code.size() >= 20;
        const std::string plain = card.code.substr(card.code.find_first_not_of('0'));
        EXPECT_TRUE(codes.insert(plain).second) << card.code;
    }
    EXPECT_TRUE(leadingZero);
    EXPECT_TRUE(longOne);
}

TEST(Card, WasUsedBeforeNowAtALocationOfItsGroup) {
    const Deck deck = deckOf(2000);
    int recent = 0;
    int never = 0;
    for (std::size_t i = 0; i < deck.cards.size(); ++i) {
        for (const CardUse& use : deck.cards[i].uses) {
            EXPECT_EQ(use.loc >= 10 ? use.loc / 10 : use.loc, deck.owners[i].locGrp);
            never += use.lastDate ? 0 : 1;
            if (use.lastDate) {
                EXPECT_LE(*use.lastDate, testNow());
                recent += *use.lastDate > testNow().plusDays(-2) ? 1 : 0;
            }
        }
    }
    EXPECT_GT(recent, 500);
    EXPECT_GT(never, 50);
}

TEST(Card, ComesInEveryKindThatAsksForCare) {
    int inactive = 0;
    int guardTour = 0;
    int deleted = 0;
    int endless = 0;
    for (const Card& card : deckOf(2000).cards) {
        inactive += card.status == 0 ? 1 : 0;
        guardTour += card.guardTour ? 1 : 0;
        deleted += card.dlFlag == 2 ? 1 : 0;
        endless += card.stopDate ? 0 : 1;
    }
    EXPECT_GT(inactive, 50);
    EXPECT_GT(guardTour, 50);
    EXPECT_GT(deleted, 20);
    EXPECT_GT(endless, 100);
}

TEST(Card, OfAnExampleIsActive) {
    const Persons persons(4, 0);
    for (int id = 1; id <= exampleCount(); ++id) {
        const std::vector<Card> cards = cardsOf(persons.person(id), 1, 4, testNow());
        ASSERT_FALSE(cards.empty()) << id;
        EXPECT_EQ(cards.front().status, 1) << id;
    }
}

} // namespace
} // namespace kintar::site
