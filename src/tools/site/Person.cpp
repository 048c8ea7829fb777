#include "tools/site/Person.h"

#include "tools/site/NameLists.h"
#include "tools/site/Plan.h"
#include "tools/site/Random.h"

#include <array>
#include <cstdio>
#include <string_view>

namespace kintar::site {

namespace {

/// Persons that examples, documents and scenarios name: one of every kind that matters.
struct Example {
    std::string_view lastName;
    std::string_view firstName;
    int locGrp;
    PhotoState photo;
};

constexpr std::array examples{
    Example{"Lindqvist", "Astrid", 1, PhotoState::Present},
    Example{"O'Brien", "Seán", 1, PhotoState::Present},
    Example{"Okafor", "Daniel", 1, PhotoState::NoRow},
    Example{"الزهراني", "ليلى", 1, PhotoState::Present},
    Example{"Marsh", "Edwin", 1, PhotoState::Missing},
    Example{"שלו", "נועה", 2, PhotoState::Present},
    Example{"Καραγιάννης", "Ελένη", 2, PhotoState::Present},
    Example{"佐藤", "さくら", 3, PhotoState::Present},
    Example{"欧阳", "静怡", 3, PhotoState::Present},
    Example{"Соколова", "Ксения", 1, PhotoState::Present},
    Example{"श्रेष्ठ", "अर्जुन", 3, PhotoState::Present},
    Example{"แสงทอง", "มาลี", 4, PhotoState::Present},
    Example{"O'Brien", "Seán", 2, PhotoState::Present},
    Example{"X", "Y", 1, PhotoState::Present},
    Example{
        "Wolfe-Featherstonehaugh-Cholmondeley-Montgomery of the Upper Valley and the Lower Marshes",
        "Maximiliana Theodora Wilhelmina Alexandrina Bartholomea", 1, PhotoState::Present},
    Example{"<b>Bold</b> & Söhne", "100%_[a-z]", 1, PhotoState::Present},
};

std::string repeated(std::string_view part, int times) {
    std::string result;
    for (int i = 0; i < times; ++i) {
        result += part;
    }
    return result;
}

void inventName(Person& person, Random& random) {
    int share = random.between(0, 99);
    const NameList* list = nameLists().data();
    while (share >= list->share) {
        share -= list->share;
        ++list;
    }
    person.lastName = random.pick(list->lastNames);
    person.firstName = random.pick(list->firstNames);
    if (random.percent(8)) {
        person.lastName += "-" + std::string(random.pick(list->lastNames));
    }
    if (random.percent(10)) {
        *person.firstName += " " + std::string(random.pick(list->firstNames));
    }
}

/// Names as no form expects them, a few in a thousand.
void makeOdd(Person& person, Random& random) {
    switch (random.between(0, 299)) {
    case 0:
        person.lastName = repeated(person.lastName + "-", random.between(5, 24)) + person.lastName;
        break;
    case 1:
        person.lastName = static_cast<char>('A' + random.between(0, 25));
        person.firstName = "";
        break;
    case 2:
        person.firstName.reset();
        break;
    case 3:
        person.firstName = "  " + *person.firstName + " ";
        break;
    case 4:
        person.lastName = "de la " + person.lastName + " y " + person.lastName;
        break;
    default:
        break;
    }
}

int groupOf(Random& random) {
    int share = random.between(0, 99);
    for (const Group& group : groups()) {
        if (share < group.share) {
            return group.locGrp;
        }
        share -= group.share;
    }
    return groups().front().locGrp;
}

int companyOf(int locGrp, Random& random) {
    if (random.percent(12)) {
        return none;
    }
    int count = 0;
    for (const Company& company : companies()) {
        count += company.locGrp == locGrp ? 1 : 0;
    }
    return random.between(1, count);
}

std::string fileName(std::string_view start, int id, std::string_view extension) {
    std::array<char, 16> number{};
    std::snprintf(number.data(), number.size(), "%06d", id);
    return std::string(start) + number.data() + std::string(extension);
}

std::string_view extensionOf(PhotoFormat format) {
    switch (format) {
    case PhotoFormat::Png:
        return ".png";
    case PhotoFormat::Bmp:
        return ".bmp";
    case PhotoFormat::Tiff:
        return ".tif";
    case PhotoFormat::Jpeg:
        break;
    }
    return ".jpg";
}

std::string upperCase(std::string text) {
    for (char& c : text) {
        if (c >= 'a' && c <= 'z') {
            c = static_cast<char>(c - 'a' + 'A');
        }
    }
    return text;
}

PhotoFormat formatOf(Random& random) {
    const int choice = random.between(0, 99);
    if (choice < 64) {
        return PhotoFormat::Jpeg;
    }
    return choice < 84 ? PhotoFormat::Png : choice < 92 ? PhotoFormat::Bmp : PhotoFormat::Tiff;
}

PhotoState stateOf(int id, Random& random) {
    const bool noRow = random.percent(7);
    const bool missing = random.percent(4);
    if (id <= exampleCount()) {
        return examples[static_cast<std::size_t>(id) - 1].photo;
    }
    return noRow ? PhotoState::NoRow : missing ? PhotoState::Missing : PhotoState::Present;
}

} // namespace

Photo Persons::photoOf(int id) const {
    Photo photo;
    if (id > photos_) {
        return photo;
    }
    Random random(seed_, "photo", static_cast<std::uint64_t>(id));
    photo.state = stateOf(id, random);
    photo.format = formatOf(random);
    const bool inFolder = random.percent(10);
    const bool otherCase = random.percent(10);
    const std::string_view extension = extensionOf(photo.format);
    photo.path = fileName(inFolder ? "Visitors/p" : "p", id, extension);
    photo.fileName = fileName(inFolder ? "Visitors\\p" : "p", id, extension);
    if (otherCase) {
        photo.fileName = upperCase(photo.fileName);
    }
    if (random.percent(10) && photo.state == PhotoState::Present) {
        photo.otherType = fileName("grey", id, ".jpg");
    }
    return photo;
}

Person Persons::invented(int id) const {
    Random random(seed_, "person", static_cast<std::uint64_t>(id));
    Person person;
    person.id = id;
    inventName(person, random);
    makeOdd(person, random);
    person.locGrp = groupOf(random);
    person.company = companyOf(person.locGrp, random);
    person.visitor = random.percent(12);
    person.trace = random.percent(6);
    return person;
}

Person Persons::person(int id) const {
    Person person = invented(id);
    if (id <= exampleCount()) {
        const Example& example = examples[static_cast<std::size_t>(id) - 1];
        person.lastName = example.lastName;
        person.firstName = example.firstName;
        person.locGrp = example.locGrp;
        person.company = 1;
        person.visitor = false;
    }
    person.photo = photoOf(id);
    return person;
}

int exampleCount() {
    return static_cast<int>(examples.size());
}

std::string displayName(const Person& person) {
    return person.lastName + ", " + person.firstName.value_or("");
}

bool isRightToLeft(const Person& person) {
    // Hebrew and Arabic letters begin with the bytes D6 to D9 in UTF-8.
    const auto first =
        person.lastName.empty() ? 0U : static_cast<unsigned char>(person.lastName[0]);
    return first >= 0xD7U && first <= 0xD9U;
}

} // namespace kintar::site
