// Where the controls of the photo window lie.
#pragma once

namespace kintar {

/// A rectangle in logical pixels.
struct Area {
    int left = 0;
    int top = 0;
    int width = 0;
    int height = 0;

    bool operator==(const Area&) const = default;
};

/// What the layout depends on, in logical pixels.
struct PhotoLayoutInput {
    int width = 0;         ///< of the client area
    int height = 0;        ///< of the client area
    int imageHeight = 0;   ///< wished for; it gives way where the texts need the room
    int nameHeight = 0;    ///< of the line with the name
    int lineHeight = 0;    ///< of a line of text
    int commandWidth = 0;  ///< the least that a command needs
    int commandHeight = 0; ///< of one command
};

/// The photo on top, the name and the two lines of text below it, the commands below those: beside
/// each other where both fit, else one above the other. The status line lies where the first
/// command is, as only one of them shows. Showing the commands moves nothing else, so that what was
/// clicked stays under the pointer.
struct PhotoLayout {
    Area lead1;
    Area lblName;
    Area label1;
    Area label2;
    Area lblEnable;
    Area lblDisAble;
    Area lblStatus;
};

PhotoLayout photoLayout(const PhotoLayoutInput& input);

/// The least client height: the texts, the commands, and a strip of the photo.
int leastPhotoHeight(const PhotoLayoutInput& input);

} // namespace kintar
