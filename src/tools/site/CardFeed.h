// Invented card events of a site, for the demonstration workstation.
#pragma once

#include "tools/site/Random.h"
#include "tools/site/SiteDatabase.h"

#include <map>
#include <optional>
#include <string>
#include <vector>

namespace kintar::site {

/// What a workstation learns when a card is used. The moment is left to whoever plays the event.
struct CardEvent {
    int id = 0;
    int locGrp = 0;
    std::string locName;
    std::string firstName;
    std::string lastName;
    std::string device;
    std::string eventDesc;
    std::string code; ///< of the person's first active card; empty: none
};

struct FeedOperator {
    int id = 0;
    std::string rights; ///< for people
};

/// A door, output or input, or a group of them, whose overrides can be scheduled.
struct FeedPoint {
    int id = 0;
    int type = 0; ///< 0 door or output, 1 input, 2 and 3 groups of them
    std::string name;
    std::string locName;
};

/// Reads persons, places, points and operators from any site's database. Throws SiteError where it
/// cannot be read.
class CardFeed {
public:
    CardFeed(SiteDatabase& database, std::uint64_t seed);

    /// The next event of this person, the first one always a granted access; nothing where the site
    /// has no such person.
    std::optional<CardEvent> eventOf(int person);
    /// So many events: first the persons with the lowest numbers, one each, then anybody. Fewer
    /// where the site has nobody.
    std::vector<CardEvent> events(int count);
    std::vector<FeedOperator> operators();
    /// The points with the lowest numbers, then such groups. Each is what its schedules say it is,
    /// else a door or a group of doors.
    std::vector<FeedPoint> points();

private:
    struct Place {
        std::string loc;
        std::string device;
    };
    std::string menusOf(std::int64_t profile);
    Place placeIn(int locGrp, Random& random);
    std::optional<int> personFrom(int id);

    SiteDatabase& database_;
    std::uint64_t seed_;
    Random anybody_;
    std::map<int, int> eventsOfPerson_; ///< so many so far
};

/// The event, operator or point as one JSON object on one line. Its `kind` says which, its other
/// names are those of the properties that it is meant for.
std::string feedLine(const CardEvent& event);
std::string feedLine(const FeedOperator& who);
std::string feedLine(const FeedPoint& point);

} // namespace kintar::site
