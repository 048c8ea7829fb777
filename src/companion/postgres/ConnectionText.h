// Where a database server is: the connection text of a site, checked.
#pragma once

#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace kintar::companion::postgres {

/// Whether a site's `Database` names a database server rather than a file.
bool isConnectionText(std::string_view database);

/// A connection text: `postgresql://user@host1,host2/name?sslmode=verify-full`.
class ConnectionText {
public:
    /// What one attempt to connect gets, by libpq's keywords.
    using Parameters = std::vector<std::pair<std::string, std::string>>;

    /// Throws DatabaseError (Other) where the text cannot be read, names a keyword that a site may
    /// not set, or holds a password: that belongs into the user's password file. The error never
    /// quotes the text.
    explicit ConnectionText(std::string_view text);

    /// The attempts in the order of the text, one for each host.
    [[nodiscard]] const std::vector<Parameters>& attempts() const { return attempts_; }
    /// What to call the database in messages: its hosts and name, without the user.
    [[nodiscard]] const std::string& shownName() const { return shownName_; }

private:
    std::vector<Parameters> attempts_;
    std::string shownName_;
};

} // namespace kintar::companion::postgres
