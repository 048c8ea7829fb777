#include "companion/postgres/ConnectionText.h"

#include "companion/DatabaseError.h"

#include <algorithm>
#include <array>
#include <libpq-fe.h>
#include <map>
#include <memory>

namespace kintar::companion::postgres {

namespace {

constexpr std::size_t longestText = 4096;
constexpr std::size_t mostHosts = 16;

/// What a site may say about its server. Everything else either belongs to the user (passwords),
/// or would change what statements mean.
constexpr std::array<std::string_view, 19> allowed{"host",
                                                   "hostaddr",
                                                   "port",
                                                   "dbname",
                                                   "user",
                                                   "passfile",
                                                   "sslmode",
                                                   "sslrootcert",
                                                   "sslcert",
                                                   "sslkey",
                                                   "sslcrl",
                                                   "sslcrldir",
                                                   "sslsni",
                                                   "channel_binding",
                                                   "gssencmode",
                                                   "krbsrvname",
                                                   "requirepeer",
                                                   "ssl_min_protocol_version",
                                                   "target_session_attrs"};

DatabaseError refused(const std::string& what) {
    return {ErrorKind::Other, "The connection text of the database: " + what};
}

struct FreeOptions {
    void operator()(PQconninfoOption* options) const { PQconninfoFree(options); }
};

std::map<std::string, std::string> settingsOf(const std::string& text) {
    char* message = nullptr;
    const std::unique_ptr<PQconninfoOption, FreeOptions> options(
        PQconninfoParse(text.c_str(), &message));
    PQfreemem(message); // it would quote the text
    if (!options) {
        throw refused("it cannot be read; one is written postgresql://user@host/name");
    }
    std::map<std::string, std::string> settings;
    for (const PQconninfoOption* option = options.get(); option->keyword != nullptr; ++option) {
        if (option->val == nullptr) {
            continue;
        }
        const std::string keyword = option->keyword;
        if (keyword == "password" || keyword == "sslpassword") {
            throw refused("it holds a password, which belongs into the password file of the user "
                          "(~/.pgpass)");
        }
        if (std::ranges::count(allowed, keyword) == 0) {
            throw refused("a site cannot set " + keyword + ".");
        }
        settings.emplace(keyword, option->val);
    }
    return settings;
}

std::vector<std::string> partsOf(const std::map<std::string, std::string>& settings,
                                 const std::string& keyword) {
    std::vector<std::string> parts;
    const auto found = settings.find(keyword);
    if (found == settings.end()) {
        return parts;
    }
    std::string_view rest = found->second;
    for (;;) {
        const std::size_t comma = rest.find(',');
        parts.emplace_back(rest.substr(0, comma));
        if (comma == std::string_view::npos) {
            return parts;
        }
        rest.remove_prefix(comma + 1);
    }
}

/// A list of one value stands for all hosts, as the server's own programs take it.
void setPart(ConnectionText::Parameters& parameters, const std::string& keyword,
             const std::vector<std::string>& parts, std::size_t at) {
    if (!parts.empty()) {
        const std::string& part = parts.size() == 1 ? parts.front() : parts[at];
        if (!part.empty()) {
            parameters.emplace_back(keyword, part);
        }
    }
}

} // namespace

bool isConnectionText(std::string_view database) {
    return database.starts_with("postgresql://") || database.starts_with("postgres://");
}

ConnectionText::ConnectionText(std::string_view text) {
    if (text.size() > longestText || text.find('\0') != std::string_view::npos ||
        !isConnectionText(text)) {
        throw refused("it cannot be read; one is written postgresql://user@host/name");
    }
    std::map<std::string, std::string> settings = settingsOf(std::string(text));
    const auto hosts = partsOf(settings, "host");
    const auto addresses = partsOf(settings, "hostaddr");
    const auto ports = partsOf(settings, "port");
    const std::size_t count = std::max({std::size_t{1}, hosts.size(), addresses.size()});
    const auto fits = [&](const auto& parts) { return parts.size() <= 1 || parts.size() == count; };
    if (count > mostHosts || !fits(hosts) || !fits(addresses) || !fits(ports)) {
        throw refused("its hosts and ports are not equally many, or more than 16.");
    }
    // With several servers, the one that takes writes is the one whose data are current.
    settings.try_emplace("target_session_attrs", count > 1 ? "read-write" : "any");
    for (std::size_t at = 0; at < count; ++at) {
        Parameters parameters;
        for (const auto& [keyword, value] : settings) {
            if (keyword != "host" && keyword != "hostaddr" && keyword != "port") {
                parameters.emplace_back(keyword, value);
            }
        }
        setPart(parameters, "host", hosts, at);
        setPart(parameters, "hostaddr", addresses, at);
        setPart(parameters, "port", ports, at);
        attempts_.push_back(std::move(parameters));
    }
    shownName_ = settings.contains("dbname") ? settings["dbname"] : std::string("(default)");
    if (!settings["host"].empty()) {
        shownName_ += " on " + settings["host"];
    }
}

} // namespace kintar::companion::postgres
