#include "display/PhotoLayout.h"

#include <algorithm>

namespace kintar {

namespace {

constexpr int gap = 4;
constexpr int margin = 6;
constexpr int leastImageHeight = 48;

bool besideEachOther(const PhotoLayoutInput& input) {
    return 2 * input.commandWidth + 2 * margin + gap <= input.width;
}

int textHeight(const PhotoLayoutInput& input) {
    const int rows = besideEachOther(input) ? 1 : 2;
    return gap + 2 * input.lineHeight + gap + rows * (input.commandHeight + gap);
}

} // namespace

PhotoLayout photoLayout(const PhotoLayoutInput& input) {
    PhotoLayout layout;
    const int room = std::max(0, input.height - textHeight(input));
    layout.lead1 = {0, 0, input.width, std::clamp(input.imageHeight, 0, room)};
    const int width = std::max(0, input.width - 2 * margin);
    int top = layout.lead1.height + gap;
    layout.label1 = {margin, top, width, input.lineHeight};
    top += input.lineHeight;
    layout.label2 = {margin, top, width, input.lineHeight};
    top += input.lineHeight + gap;
    if (besideEachOther(input)) {
        const int half = (width - gap) / 2;
        layout.lblEnable = {margin, top, half, input.commandHeight};
        layout.lblDisAble = {margin + width - half, top, half, input.commandHeight};
    } else {
        layout.lblEnable = {margin, top, width, input.commandHeight};
        layout.lblDisAble = {margin, top + input.commandHeight + gap, width, input.commandHeight};
    }
    layout.lblStatus = {margin, top, width, input.commandHeight};
    return layout;
}

int leastPhotoHeight(const PhotoLayoutInput& input) {
    return textHeight(input) + leastImageHeight;
}

} // namespace kintar
