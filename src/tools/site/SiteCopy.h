// Moving a site's data from one database to another, on whichever engines.
#pragma once

#include <functional>
#include <map>
#include <string>
#include <vector>

namespace kintar::site {

struct CopyOptions {
    /// Called between rows every now and then; what it throws ends the copy, which can go on later.
    std::function<void()> checkpoint = [] {};
    /// Hears what is being done, a line each.
    std::function<void(const std::string&)> progress = [](const std::string&) {};
};

struct CopyOutcome {
    std::map<std::string, long long> rows; ///< by table, each compared on both sides
    std::vector<std::string> leftOut;      ///< tables of the source that are none of a site's
};

/// Copies every table of a site, a table at a time, compares both sides row by row, and makes the
/// indexes. `to` must hold nothing, or what an earlier, interrupted copy left; that goes on where
/// it ended, and copies again what has changed since. `from` is only read, in one state of its
/// data. Throws SiteError.
CopyOutcome copySite(const std::string& from, const std::string& to, const CopyOptions& options);

} // namespace kintar::site
