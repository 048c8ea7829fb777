// A site's own file: where its parts lie.
#pragma once

#include "companion/ServerLimits.h"

#include <string>
#include <string_view>

namespace kintar::companion {

/// What `kintar3.ini` in a site's folder says:
///
///     [Site]
///     Database=site.db
///     Data=Data
///     Texts=Texts
///     ConnectSeconds=4
///     StatementSeconds=20
///     AnswerSeconds=3
///
/// The seconds, from 1 to 600, are how long a database server is waited for.
/// `Database` may also be the connection text of a database server, `postgresql://host/name`.
/// Paths that are not absolute start at the site's folder. Key names ignore case; blank lines and
/// lines that begin with `;` or `#` count for nothing.
struct SiteSettings {
    std::string database = "site.db"; ///< whole path, or a connection text
    std::string data = "Data";        ///< whole path, without a closing separator
    std::string textsTable = "Texts";
    ServerLimits limits;

    /// Reads the settings of a site. Throws DatabaseError (Missing) where the folder or the file is
    /// not there, (Other) with the line's number where one cannot be read.
    static SiteSettings read(const std::string& siteFolder);
    /// Reads the text of the file; `siteFolder` is what paths start at.
    static SiteSettings parse(std::string_view text, const std::string& siteFolder);
};

} // namespace kintar::companion
