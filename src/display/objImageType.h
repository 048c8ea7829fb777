// The image type to show for a location group.
#pragma once

#include "server/ClassTable.h"

#include <cstdint>
#include <memory>

namespace kintar {

/// A public class without members; inside the server it holds one image type.
class objImageType final : public PublicObject {
public:
    std::int16_t ImageType = 0;

    static PublicClass describe() {
        return ClassBuilder<objImageType>("objImageType",
                                          "The image type of a location group; has no members.")
            .creates([](ObjectSignals&) { return std::make_unique<objImageType>(); })
            .build();
    }
};

} // namespace kintar
