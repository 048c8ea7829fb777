#include "tools/site/FaceColours.h"

#include <array>

namespace kintar::site {

namespace {

constexpr std::array<QRgb, skinKinds> skins{0xffffe0cc, 0xfff9cfae, 0xffeebd92,
                                            0xffdfa574, 0xffc98a5b, 0xffad6f45,
                                            0xff8f5735, 0xff6f4128, 0xff52301f};
constexpr std::array<QRgb, hairColourKinds> hairs{0xff221d1c, 0xff3d2a20, 0xff5f3e28, 0xff8a5a33,
                                                  0xffb9813f, 0xffe3b860, 0xfff2dfa3, 0xffb5462a,
                                                  0xffd9d9de, 0xff8c8f99, 0xff5a3f8f};
constexpr std::array<QRgb, groundKinds> grounds{
    0xff8ecae6, 0xffa8dadc, 0xffb7e4c7, 0xffd8e2a0, 0xffffe5a0, 0xffffd0a0, 0xffffb4a2,
    0xfff4acb7, 0xffd8b4e2, 0xffb8b8ff, 0xff9fb8d9, 0xff7fb5a8, 0xffd6ccc2, 0xffe9edc9};
constexpr std::array<QRgb, clothesColourKinds> clothes{
    0xff264653, 0xff2a9d8f, 0xffe76f51, 0xff457b9d, 0xff6d597a, 0xffb56576,
    0xff386641, 0xffbc6c25, 0xff1d3557, 0xff9b2226, 0xff5f6f52, 0xff3a3a4a};
constexpr std::array<QRgb, eyeColourKinds> eyes{0xff4a2c17, 0xff2f5d8a, 0xff3e7d4f, 0xff6b6f76,
                                                0xff8a5a1f};

template <std::size_t N>
QColor at(const std::array<QRgb, N>& list, int number) {
    return QColor::fromRgb(list.at(static_cast<std::size_t>(number)));
}

} // namespace

QColor skinColour(const Face& face) {
    return at(skins, face.skin);
}

QColor hairColour(const Face& face) {
    return at(hairs, face.hairColour);
}

QColor groundColour(const Face& face) {
    return at(grounds, face.ground);
}

QColor clothesColour(int number) {
    return at(clothes, number);
}

QColor eyeColour(const Face& face) {
    return at(eyes, face.eyeColour);
}

} // namespace kintar::site
