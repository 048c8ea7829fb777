// The reference companion as a whole.
#pragma once

#include "companion/Log.h"
#include "companion/Notices.h"
#include "companion/RecordHelper.h"
#include "server/Companion.h"

namespace kintar::companion {

/// Gives the record helper and system objects of a site. Reports go to `log`, failed writes are
/// announced to `notices`; both must outlive the companion and every system object it gave.
class SiteCompanion final : public Companion {
public:
    SiteCompanion(Log& log, Notices& notices) : log_(log), notices_(notices), records_(notices) {}

    TarnRec& record() override { return records_; }
    std::shared_ptr<TarnSys> newSystem() override;

private:
    Log& log_;
    Notices& notices_;
    RecordHelper records_;
};

} // namespace kintar::companion
