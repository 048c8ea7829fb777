#include "tools/site/Person.h"

#include "base/Unicode.h"
#include "tools/site/NameLists.h"
#include "tools/site/Plan.h"

#include <gtest/gtest.h>

#include <map>
#include <set>

namespace kintar::site {
namespace {

TEST(Person, IsTheSameInEverySiteOfASeed) {
    const Persons small(7, 10);
    const Persons large(7, 500);
    for (int id = 1; id <= 300; ++id) {
        EXPECT_EQ(small.person(id).lastName, large.person(id).lastName);
        EXPECT_EQ(small.person(id).firstName, large.person(id).firstName);
        EXPECT_EQ(small.person(id).locGrp, large.person(id).locGrp);
    }
}

TEST(Person, DiffersFromSeedToSeedButForTheExamples) {
    const Persons one(1, 0);
    const Persons two(2, 0);
    int equal = 0;
    for (int id = exampleCount() + 1; id <= 200; ++id) {
        equal += displayName(one.person(id)) == displayName(two.person(id)) ? 1 : 0;
    }
    EXPECT_LT(equal, 10);
    for (int id = 1; id <= exampleCount(); ++id) {
        EXPECT_EQ(displayName(one.person(id)), displayName(two.person(id)));
    }
}

TEST(Person, HasAwkwardNamesAmongTheFirstTwentyThousand) {
    const Persons persons(1, 0);
    int apostrophes = 0;
    int oneLetter = 0;
    int veryLong = 0;
    int withoutFirstName = 0;
    int rightToLeft = 0;
    std::map<std::string, int> seen;
    for (int id = 1; id <= 20000; ++id) {
        const Person person = persons.person(id);
        const std::string name = displayName(person);
        EXPECT_EQ(unicode::toValidUtf8(name), name);
        apostrophes += name.find('\'') != std::string::npos ? 1 : 0;
        oneLetter += person.lastName.size() == 1 ? 1 : 0;
        veryLong += person.lastName.size() > 200 ? 1 : 0;
        withoutFirstName += person.firstName ? 0 : 1;
        rightToLeft += isRightToLeft(person) ? 1 : 0;
        ++seen[name];
    }
    EXPECT_GT(apostrophes, 500);
    EXPECT_GT(oneLetter, 20);
    EXPECT_GT(veryLong, 5);
    EXPECT_GT(withoutFirstName, 20);
    EXPECT_GT(rightToLeft, 1000);
    EXPECT_GT(seen["Smith, John"], 1);
}

TEST(Person, BelongsToACompanyOfItsOwnGroupOrToNone) {
    const Persons persons(3, 0);
    for (int id = 1; id <= 2000; ++id) {
        const Person person = persons.person(id);
        bool known = person.company == none;
        for (const Company& company : companies()) {
            known = known || (company.locGrp == person.locGrp && company.company == person.company);
        }
        EXPECT_TRUE(known) << id;
    }
}

TEST(Person, HasNoPhotoBeyondTheCountOfPhotos) {
    const Persons persons(1, 50);
    EXPECT_EQ(persons.person(1).photo.state, PhotoState::Present);
    EXPECT_EQ(persons.person(51).photo.state, PhotoState::NoRow);
}

TEST(Person, HasPhotosOfEveryFormatAndState) {
    const Persons persons(1, 500);
    std::set<PhotoFormat> formats;
    std::map<PhotoState, int> states;
    std::set<std::string> paths;
    for (int id = 1; id <= 500; ++id) {
        const Photo photo = persons.person(id).photo;
        ++states[photo.state];
        if (photo.state == PhotoState::Present) {
            formats.insert(photo.format);
            EXPECT_TRUE(paths.insert(photo.path).second) << photo.path;
        }
    }
    EXPECT_EQ(formats.size(), 4U);
    EXPECT_GT(states[PhotoState::Present], 400);
    EXPECT_GT(states[PhotoState::Missing], 5);
    EXPECT_GT(states[PhotoState::NoRow], 10);
}

TEST(Person, ExamplesHoldOneOfEveryKind) {
    const Persons persons(9, 500);
    EXPECT_EQ(displayName(persons.person(1)), "Lindqvist, Astrid");
    EXPECT_EQ(persons.person(1).photo.state, PhotoState::Present);
    EXPECT_EQ(persons.person(3).photo.state, PhotoState::NoRow);
    EXPECT_EQ(persons.person(5).photo.state, PhotoState::Missing);
    EXPECT_TRUE(isRightToLeft(persons.person(4)));
    EXPECT_TRUE(isRightToLeft(persons.person(6)));
    EXPECT_FALSE(isRightToLeft(persons.person(7)));
}

TEST(NameLists, SharesAddUpToAHundred) {
    int sum = 0;
    for (const NameList& list : nameLists()) {
        sum += list.share;
    }
    EXPECT_EQ(sum, 100);
}

TEST(Plan, GroupSharesAddUpToAHundredAndGroupsStandInOrder) {
    int sum = 0;
    for (const Group& entry : groups()) {
        sum += entry.share;
        EXPECT_EQ(group(entry.locGrp).name, entry.name);
    }
    EXPECT_EQ(sum, 100);
}

} // namespace
} // namespace kintar::site
