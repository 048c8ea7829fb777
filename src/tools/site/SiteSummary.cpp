#include "tools/site/SiteSummary.h"

#include "tools/site/Card.h"
#include "tools/site/Person.h"
#include "tools/site/Plan.h"

#include <nlohmann/json.hpp>

#include <functional>
#include <optional>
#include <vector>

namespace kintar::site {

namespace {

/// Kinds of persons that examples and scripts look for.
struct Kind {
    const char* key;
    const char* words;
    std::function<bool(const Person&)> fits;
};

std::vector<Kind> kinds() {
    const auto state = [](PhotoState wanted) {
        return [wanted](const Person& person) { return person.photo.state == wanted; };
    };
    return {
        {"withPhoto", "person with a photo", state(PhotoState::Present)},
        {"withoutPhoto", "person without a photo row", state(PhotoState::NoRow)},
        {"missingPhoto", "person whose photo file is missing", state(PhotoState::Missing)},
        {"rightToLeft", "person with a right-to-left name and a photo", [](const Person& person) {
             return isRightToLeft(person) && person.photo.state == PhotoState::Present;
         }}};
}

/// The first person of a kind, looked for among those whom examples name.
std::optional<Person> firstOf(const SiteSummary& summary, const Kind& kind) {
    const Persons persons(summary.options.seed, summary.options.photos);
    for (int id = 1; id <= std::min(summary.options.names, exampleCount()); ++id) {
        Person person = persons.person(id);
        if (kind.fits(person)) {
            return person;
        }
    }
    return std::nullopt;
}

} // namespace

std::string summaryText(const SiteSummary& summary) {
    std::string text = "site: " + summary.folder.string() + "\n";
    text += "seed: " + std::to_string(summary.options.seed) + "\n";
    text += "now: " + summary.options.now.iso() + "\n";
    for (const auto& [table, rows] : summary.counts) {
        text += "rows of " + table + ": " + std::to_string(rows) + "\n";
    }
    for (const Operator& who : operators()) {
        text += "operator " + std::to_string(who.id) + ": " + std::string(who.summary) + "\n";
    }
    for (const Kind& kind : kinds()) {
        if (const std::optional<Person> person = firstOf(summary, kind)) {
            text += std::string(kind.words) + ": " + std::to_string(person->id) + ", group " +
                    std::to_string(person->locGrp) + ", " + displayName(*person) + "\n";
        }
    }
    return text;
}

std::string summaryJson(const SiteSummary& summary) {
    nlohmann::ordered_json json;
    json["site"] = summary.folder.string();
    json["seed"] = summary.options.seed;
    json["now"] = summary.options.now.iso();
    json["rows"] = summary.counts;
    json["operators"] = nlohmann::ordered_json::array();
    for (const Operator& who : operators()) {
        json["operators"].push_back({{"id", who.id}, {"rights", who.summary}});
    }
    json["people"] = nlohmann::ordered_json::object();
    for (const Kind& kind : kinds()) {
        if (const std::optional<Person> person = firstOf(summary, kind)) {
            json["people"][kind.key] = {
                {"id", person->id}, {"locGrp", person->locGrp}, {"name", displayName(*person)}};
        }
    }
    return json.dump(-1, ' ', false, nlohmann::ordered_json::error_handler_t::replace) + "\n";
}

} // namespace kintar::site
