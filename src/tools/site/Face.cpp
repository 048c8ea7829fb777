#include "tools/site/Face.h"

#include "tools/site/Random.h"

#include <algorithm>
#include <array>

namespace kintar::site {

namespace {

constexpr std::uint64_t combinations = static_cast<std::uint64_t>(skinKinds) * hairStyleKinds *
                                       hairColourKinds * shapeKinds * groundKinds * patternKinds;
static_assert(combinations == 665280);

/// Looks that suit the persons whom examples name, the same for every seed.
struct ExampleLook {
    int id;
    int skin;
    int hairStyle;
    int hairColour;
    int glasses;
    int beard;
    int mouth;
};

/// Bun, scarf, pigtails.
constexpr std::array beardless{6, 8, 11};

constexpr std::array<ExampleLook, 14> exampleLooks{{
    {1, 1, 3, 5, 0, 0, 1},
    {2, 0, 1, 7, 0, 3, 0},
    {4, 3, 8, 0, 0, 0, 0},
    {6, 2, 5, 1, 1, 0, 1},
    {7, 2, 4, 0, 0, 0, 4},
    {8, 1, 6, 0, 0, 0, 0},
    {9, 1, 3, 0, 2, 0, 3},
    {10, 0, 11, 6, 0, 0, 1},
    {11, 5, 2, 0, 0, 1, 0},
    {12, 4, 3, 1, 0, 0, 0},
    {13, 6, 0, 0, 1, 4, 2},
    {14, 7, 10, 0, 0, 0, 3},
    {15, 1, 6, 8, 3, 0, 4},
    {16, 3, 7, 0, 4, 2, 2},
}};

/// A one-to-one scrambling of the numbers below `combinations`: four rounds that each mix one half
/// of 20 bits into the other, repeated while the result is too large.
std::uint64_t scrambled(std::uint64_t number, std::uint64_t seed) {
    constexpr std::uint64_t half = 1U << 10U;
    do {
        for (std::uint64_t round = 0; round < 4; ++round) {
            const std::uint64_t right = number % half;
            const std::uint64_t mixed = Random(seed, "faces", round * half + right).below(half);
            number = right * half + (number / half ^ mixed);
        }
    } while (number >= combinations);
    return number;
}

void dressExample(Face& face, int id) {
    for (const ExampleLook& look : exampleLooks) {
        if (look.id == id) {
            face.skin = look.skin;
            face.hairStyle = look.hairStyle;
            face.hairColour = look.hairColour;
            face.glasses = look.glasses;
            face.beard = look.beard;
            face.mouth = look.mouth;
        }
    }
}

/// Cuts one trait off the number of a combination.
int take(std::uint64_t& rest, int kinds) {
    const auto result = static_cast<int>(rest % static_cast<std::uint64_t>(kinds));
    rest /= static_cast<std::uint64_t>(kinds);
    return result;
}

} // namespace

Face faceOf(int id, std::uint64_t seed) {
    std::uint64_t rest = scrambled(static_cast<std::uint64_t>(id) % combinations, seed);

    Face face;
    face.ground = take(rest, groundKinds);
    face.hairStyle = take(rest, hairStyleKinds);
    face.skin = take(rest, skinKinds);
    face.hairColour = take(rest, hairColourKinds);
    face.pattern = take(rest, patternKinds);
    face.shape = take(rest, shapeKinds);

    Random random(seed, "face", static_cast<std::uint64_t>(id));
    face.clothes = random.between(0, clothesKinds - 1);
    face.clothesColour = random.between(0, clothesColourKinds - 1);
    face.glasses = random.percent(40) ? random.between(1, glassesKinds - 1) : 0;
    const bool mayHaveBeard = !std::ranges::count(beardless, face.hairStyle);
    face.beard = random.percent(30) && mayHaveBeard ? random.between(1, beardKinds - 1) : 0;
    face.eyes = random.between(0, eyesKinds - 1);
    face.eyeColour = random.between(0, eyeColourKinds - 1);
    face.brows = random.between(0, browsKinds - 1);
    face.nose = random.between(0, noseKinds - 1);
    face.mouth = random.between(0, mouthKinds - 1);
    face.marks = random.percent(45) ? random.between(1, marksKinds - 1) : 0;
    face.earrings = random.percent(30) ? 1 : 0;
    face.hairAccent = random.between(0, clothesColourKinds - 1);
    dressExample(face, id);
    return face;
}

} // namespace kintar::site
