// The image type to show for a location group.
#pragma once

#include "server/ClassTable.h"

#include <cstdint>

namespace kintar {

/// A public class without members; inside the server it holds one image type.
class objImageType final : public PublicObject {
public:
    std::int16_t ImageType = 0;
};

} // namespace kintar
