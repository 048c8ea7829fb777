#include "companion/SiteCompanion.h"

#include "companion/SiteSystem.h"

namespace kintar::companion {

std::shared_ptr<TarnSys> SiteCompanion::newSystem() {
    return std::make_shared<SiteSystem>(records_, log_, notices_);
}

} // namespace kintar::companion
