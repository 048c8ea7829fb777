// How an invented face looks, in numbers.
#pragma once

#include <cstdint>

namespace kintar::site {

/// Each trait counts from 0 to one less than its `...Kinds`.
struct Face {
    int skin = 0;
    int hairStyle = 0;
    int hairColour = 0;
    int shape = 0;
    int ground = 0;  ///< colour behind the person
    int pattern = 0; ///< what is drawn on it
    int clothes = 0;
    int clothesColour = 0;
    int glasses = 0; ///< 0: none
    int beard = 0;   ///< 0: none
    int eyes = 0;
    int eyeColour = 0;
    int brows = 0;
    int nose = 0;
    int mouth = 0;
    int marks = 0; ///< freckles, blush, a mole; 0: none
    int earrings = 0;
    int hairAccent = 0;
};

inline constexpr int skinKinds = 9;
inline constexpr int hairStyleKinds = 12;
inline constexpr int hairColourKinds = 11;
inline constexpr int shapeKinds = 5;
inline constexpr int groundKinds = 14;
inline constexpr int patternKinds = 8;
inline constexpr int clothesKinds = 6;
inline constexpr int clothesColourKinds = 12;
inline constexpr int glassesKinds = 5;
inline constexpr int beardKinds = 5;
inline constexpr int eyesKinds = 3;
inline constexpr int eyeColourKinds = 5;
inline constexpr int browsKinds = 3;
inline constexpr int noseKinds = 4;
inline constexpr int mouthKinds = 5;
inline constexpr int marksKinds = 4;

/// The face of a person. No two of the first 665,280 persons of a site share skin, hair, face form
/// and background; only the persons whom examples name have skin and hair of their own choice.
Face faceOf(int id, std::uint64_t seed);

} // namespace kintar::site
