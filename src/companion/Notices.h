// What the operator must be told whatever window is open.
#pragma once

#include <string>

namespace kintar::companion {

/// Announces to the operator. The companion shows no windows itself.
class Notices {
public:
    virtual ~Notices() = default;
    /// A change of the database was asked for and did not happen. `reason` says why, in a sentence.
    virtual void writeFailed(const std::string& reason) = 0;
    /// The database does not answer (true), so that what windows show is not up to date any more;
    /// or it does again (false). On any thread.
    virtual void databaseAway(bool /*away*/) {}
};

} // namespace kintar::companion
