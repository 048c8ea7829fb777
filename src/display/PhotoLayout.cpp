#include "display/PhotoLayout.h"

#include <algorithm>

namespace kintar {

namespace {

constexpr int leastGap = 1;
constexpr int mostGap = 5;
constexpr int gaps = 4;    ///< above the name, above the texts, above and below the commands
constexpr int between = 4; ///< between two commands
constexpr int margin = 6;
constexpr int leastImageHeight = 48;

bool besideEachOther(const PhotoLayoutInput& input) {
    return 2 * input.commandWidth + 2 * margin + between <= input.width;
}

int commandsHeight(const PhotoLayoutInput& input) {
    return besideEachOther(input) ? input.commandHeight : 2 * input.commandHeight + between;
}

/// Of everything below the photo, without gaps.
int textsHeight(const PhotoLayoutInput& input) {
    return input.nameHeight + 2 * input.lineHeight + commandsHeight(input);
}

/// As wide as the photo's wish leaves room for.
int gapOf(const PhotoLayoutInput& input) {
    const int free = input.height - input.imageHeight - textsHeight(input);
    return std::clamp(free / gaps, leastGap, mostGap);
}

} // namespace

PhotoLayout photoLayout(const PhotoLayoutInput& input) {
    PhotoLayout layout;
    const int gap = gapOf(input);
    const int room = std::max(0, input.height - textsHeight(input) - gaps * gap);
    layout.lead1 = {0, 0, input.width, std::clamp(input.imageHeight, 0, room)};
    const int width = std::max(0, input.width - 2 * margin);
    int top = layout.lead1.height + gap;
    const auto line = [&](int height) {
        const Area area{margin, top, width, height};
        top += height;
        return area;
    };
    layout.lblName = line(input.nameHeight);
    top += gap;
    layout.label1 = line(input.lineHeight);
    layout.label2 = line(input.lineHeight);
    top += gap;
    layout.lblStatus = line(input.commandHeight);
    layout.lblEnable = layout.lblStatus;
    layout.lblDisAble = layout.lblStatus;
    if (besideEachOther(input)) {
        const int half = (width - between) / 2;
        layout.lblEnable.width = half;
        layout.lblDisAble.width = half;
        layout.lblDisAble.left += width - half;
    } else {
        layout.lblDisAble.top += input.commandHeight + between;
    }
    return layout;
}

int leastPhotoHeight(const PhotoLayoutInput& input) {
    return textsHeight(input) + gaps * leastGap + leastImageHeight;
}

} // namespace kintar
