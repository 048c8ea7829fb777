// Which picture of a name the detail pane shows.
#pragma once

#include "search/Database.h"

#include <cstdint>
#include <string>

namespace kintar::search {

/// The file name of a name's picture, as the database holds it; empty where there is none.
///
/// The picture of type `imageType` is preferred. A name that has none is shown by its picture of
/// another type of the group: the types are tried in the order of their numbers, and the first one
/// of which there is a picture is taken. An operator who looks for a person would rather see that
/// person's badge or signature than nothing. Types of other groups are never tried.
///
/// Database errors pass.
std::string choosePhoto(const Database& database, std::int32_t nameId, std::int32_t imageType,
                        std::int32_t locGrp);

} // namespace kintar::search
