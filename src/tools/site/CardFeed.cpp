#include "tools/site/CardFeed.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <array>
#include <limits>

namespace kintar::site {

namespace {

/// Persons that every feed shows first: the examples of an invented site.
constexpr int firstShown = 16;

std::string_view inventedEvent(Random& random) {
    constexpr std::array<std::string_view, 5> refused{
        "Access denied: card expired", "Access denied: wrong time", "Access denied: no right here",
        "Anti-passback violation", "Access denied: lost card"};
    return random.percent(80) ? "Access granted" : random.pick(std::span(refused));
}

std::string line(const nlohmann::ordered_json& json) {
    return json.dump(-1, ' ', false, nlohmann::ordered_json::error_handler_t::replace) + "\n";
}

} // namespace

CardFeed::CardFeed(SiteDatabase& database, std::uint64_t seed)
    : database_(database), seed_(seed), anybody_(seed, "feed") {}

CardFeed::Place CardFeed::placeIn(int locGrp, Random& random) {
    SiteStatement places(database_,
                         "SELECT Loc.Name, Dev.Name FROM Loc JOIN Dev ON Dev.Loc = Loc.Loc "
                         "WHERE Loc.LocGrp = ? ORDER BY Loc.Loc, Dev.Device LIMIT 1000");
    places.start(locGrp);
    std::vector<Place> all;
    while (places.next()) {
        all.push_back({places.text(0), places.text(1)});
    }
    return all.empty() ? Place{} : random.pick(std::span<const Place>(all));
}

std::optional<int> CardFeed::personFrom(int id) {
    SiteStatement query(database_, "SELECT ID FROM Names WHERE ID >= ? ORDER BY ID LIMIT 1");
    query.start(id);
    return query.next() ? std::optional(static_cast<int>(query.integer(0))) : std::nullopt;
}

std::optional<CardEvent> CardFeed::eventOf(int person) {
    SiteStatement query(
        database_, "SELECT LName, FName, LocGrp, (SELECT Code FROM Cards WHERE NameID = Names.ID "
                   "AND Status <> 0 ORDER BY ID LIMIT 1) FROM Names WHERE ID = ?");
    query.start(person);
    if (!query.next()) {
        return std::nullopt;
    }
    CardEvent event;
    event.id = person;
    event.lastName = query.text(0);
    event.firstName = query.text(1);
    event.locGrp = static_cast<int>(query.integer(2));
    event.code = query.text(3);
    const int before = eventsOfPerson_[person]++;
    Random random(seed_, "event of " + std::to_string(person), static_cast<std::uint64_t>(before));
    const Place place = placeIn(event.locGrp, random);
    event.locName = place.loc;
    event.device = place.device;
    event.eventDesc = before == 0 ? "Access granted" : inventedEvent(random);
    return event;
}

std::vector<CardEvent> CardFeed::events(int count) {
    std::vector<CardEvent> events;
    int next = std::numeric_limits<int>::min();
    while (static_cast<int>(events.size()) < std::min(count, firstShown)) {
        const std::optional<int> person = personFrom(next);
        if (!person) {
            break;
        }
        events.push_back(*eventOf(*person));
        next = *person + 1;
    }
    SiteStatement range(database_, "SELECT min(ID), max(ID) FROM Names");
    range.start();
    range.next();
    const auto lowest = static_cast<int>(range.integer(0));
    const auto highest = static_cast<int>(range.integer(1));
    while (!events.empty() && static_cast<int>(events.size()) < count) {
        events.push_back(*eventOf(*personFrom(anybody_.between(lowest, highest))));
    }
    return events;
}

std::string CardFeed::menusOf(std::int64_t profile) {
    SiteStatement query(database_, "SELECT MenuID, Loc FROM MenuProfile WHERE PwProfileID = ? AND "
                                   "View <> 0");
    query.start(profile);
    std::string menus;
    while (query.next()) {
        const std::int64_t menu = query.integer(0);
        const std::int64_t loc = query.integer(1);
        menus += (menus.empty() ? "" : ", ") +
                 (menu == 2      ? std::string("cards")
                  : menu == 1061 ? std::string("hidden fields")
                                 : "menu " + std::to_string(menu)) +
                 (loc == 0 ? std::string() : " at " + std::to_string(loc));
    }
    return menus;
}

std::vector<FeedOperator> CardFeed::operators() {
    SiteStatement query(database_,
                        "SELECT OPR.ID, AllMenus, OPR.PwProfile FROM OPR LEFT JOIN PwProfile "
                        "ON PwProfile.ID = OPR.PwProfile ORDER BY OPR.ID LIMIT 1000");
    query.start();
    std::vector<FeedOperator> all;
    while (query.next()) {
        const std::string menus = menusOf(query.integer(2));
        const std::string rights = query.integer(1) != 0 ? "all rights"
                                   : menus.empty()       ? "no rights"
                                                         : menus;
        all.push_back({static_cast<int>(query.integer(0)), rights});
    }
    return all;
}

std::vector<FeedPoint> CardFeed::points() {
    std::vector<FeedPoint> all;
    SiteStatement points(database_,
                         "SELECT IO.ID, Loc.Name, (SELECT max(PointType) FROM OvrSchedule WHERE "
                         "PointID = IO.ID AND PointType IN (0, 1)) FROM IO LEFT JOIN Loc ON "
                         "Loc.Loc = IO.Loc ORDER BY IO.ID LIMIT 24");
    points.start();
    while (points.next()) {
        const auto id = static_cast<int>(points.integer(0));
        const auto type = static_cast<int>(points.integer(2));
        const std::string kind = type == 0 ? "Door " : "Input ";
        all.push_back({id, type, kind + std::to_string(id), points.text(1)});
    }
    SiteStatement groups(database_,
                         "SELECT OvrGrpName.ID, Loc.Name, coalesce((SELECT max(PointType) FROM "
                         "OvrSchedule WHERE PointID = OvrGrpName.ID AND PointType IN (2, 3)), 2) "
                         "FROM OvrGrpName LEFT JOIN Loc ON Loc.Loc = OvrGrpName.LocGrp ORDER BY "
                         "OvrGrpName.ID LIMIT 6");
    groups.start();
    while (groups.next()) {
        const auto id = static_cast<int>(groups.integer(0));
        const auto type = static_cast<int>(groups.integer(2));
        all.push_back({id, type, "Group " + std::to_string(id), groups.text(1)});
    }
    return all;
}

std::string feedLine(const CardEvent& event) {
    return line({{"kind", "event"},
                 {"ID", event.id},
                 {"LocGrp", event.locGrp},
                 {"LocName", event.locName},
                 {"FName", event.firstName},
                 {"LName", event.lastName},
                 {"Device", event.device},
                 {"EventDesc", event.eventDesc},
                 {"Code", event.code}});
}

std::string feedLine(const FeedOperator& who) {
    return line({{"kind", "operator"}, {"OprID", who.id}, {"rights", who.rights}});
}

std::string feedLine(const FeedPoint& point) {
    return line({{"kind", "point"},
                 {"PointID", point.id},
                 {"PointType", point.type},
                 {"PointName", point.name},
                 {"LocName", point.locName}});
}

} // namespace kintar::site
