#include "tools/site/PeopleFiller.h"

#include "tools/site/Card.h"
#include "tools/site/Person.h"
#include "tools/site/Plan.h"
#include "tools/site/Random.h"

#include <array>

namespace kintar::site {

namespace {

std::string number(int value) {
    return std::to_string(value);
}

std::string inventedText(std::string_view field, Random& random) {
    constexpr std::array<std::string_view, 6> words{"blue",   "north wing", "see front desk",
                                                    "gültig", "да",         "O'Malley's list"};
    const std::string amount = number(random.between(1, 999));
    if (field == "Web page") {
        return "https://people.example/" + amount;
    }
    if (field == "Car registration") {
        return "KX " + amount + " " + static_cast<char>('A' + random.between(0, 25));
    }
    if (field == "Date of birth") {
        return number(random.between(1950, 2005)) + "-0" + number(random.between(1, 9)) + "-1" +
               number(random.between(0, 9));
    }
    return random.percent(50) ? amount : std::string(random.pick(std::span(words)));
}

/// The prepared statements of one run over all persons.
class PeopleFiller {
public:
    PeopleFiller(SiteLoader& loader, const SiteOptions& options)
        : options_(options), names_(loader, "Names"), cards_(loader, "Cards"),
          uses_(loader, "LocCards"), fields_(loader, "UDF"), skills_(loader, "Skills"),
          images_(loader, "Images") {}

    void add(const Person& person) {
        const std::optional<int> company =
            person.company == none ? std::nullopt : std::optional(person.company);
        names_.run(person.id, person.lastName, person.firstName, person.locGrp, company,
                   yesNo(person.visitor), yesNo(person.trace));
        addCards(person);
        addFields(person);
        addSkills(person);
        addImages(person);
    }

private:
    void addCards(const Person& person) {
        for (const Card& card : cardsOf(person, nextCard_, options_.seed, options_.now)) {
            cards_.run(card.id, person.id, person.locGrp, card.code, card.cardNum, card.status,
                       card.startDate, card.stopDate, yesNo(card.guardTour), card.dlFlag);
            ++nextCard_;
            for (const CardUse& use : card.uses) {
                uses_.run(nextUse_++, card.id, use.loc, use.lastDate, use.lastDev, use.inOut[0],
                          use.inOut[1], use.inOut[2], use.inOut[3]);
            }
        }
    }

    void addFields(const Person& person) {
        Random random(options_.seed, "fields", static_cast<std::uint64_t>(person.id));
        const int count = group(person.locGrp).udfNames;
        for (int i = 0; i < count; ++i) {
            const bool filled = random.percent(count > 10 ? 15 : 35);
            const bool withoutText = random.percent(3);
            const std::string text =
                inventedText(udfFields()[static_cast<std::size_t>(i)].name, random);
            if (filled) {
                fields_.run(person.id, i + 1, withoutText ? std::nullopt : std::optional(text),
                            person.locGrp);
            }
        }
    }

    void addSkills(const Person& person) {
        Random random(options_.seed, "skills", static_cast<std::uint64_t>(person.id));
        for (int i = 0; i < group(person.locGrp).skills; ++i) {
            if (random.percent(9)) {
                skills_.run(person.id, skillId(person.locGrp, i));
            }
        }
    }

    void addImages(const Person& person) {
        if (person.photo.state == PhotoState::NoRow) {
            return;
        }
        const int type = group(person.locGrp).defaultImageType;
        images_.run(person.id, type, person.photo.fileName);
        if (!person.photo.otherType.empty()) {
            images_.run(person.id, type == 1 ? 2 : 1, person.photo.otherType);
        }
    }

    SiteOptions options_;
    SiteRows names_;
    SiteRows cards_;
    SiteRows uses_;
    SiteRows fields_;
    SiteRows skills_;
    SiteRows images_;
    int nextCard_ = 1;
    int nextUse_ = 1;
};

} // namespace

void fillPeople(SiteLoader& loader, const SiteOptions& options) {
    const Persons persons(options.seed, options.photos);
    PeopleFiller filler(loader, options);
    for (int id = 1; id <= options.names; ++id) {
        filler.add(persons.person(id));
        options.checkpoint();
    }
}

} // namespace kintar::site
