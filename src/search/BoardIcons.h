// The images of the board: told apart by their shape, not by colour alone.
#pragma once

#include "search/HolderState.h"

#include <QIcon>

namespace kintar::search {

/// In: a filled disc with a tick. Out: an open ring with a bar. Drawn for any size and pixel
/// density; nothing for a state that is not known.
QIcon boardIcon(board::Icon icon);

} // namespace kintar::search
