// The raw language: one call a line, over one connection.
#pragma once

#include "tools/ctl/ServerClient.h"

#include <istream>
#include <map>
#include <ostream>
#include <string>
#include <vector>

namespace kintar::ctl {

/// Exit statuses of the program.
namespace status {
inline constexpr int ok = 0;
inline constexpr int callFailed = 1;
inline constexpr int wrongUsage = 2;
inline constexpr int noServer = 3;
} // namespace status

/// What `kintarctl raw --help` says about the language, one command a line.
const char* rawLanguage();

/// Carries out lines. Results go to one stream, a line each; errors to the other, with the number
/// of their line.
class RawSession {
public:
    RawSession(ServerClient& client, std::ostream& results, std::ostream& errors)
        : client_(client), results_(results), errors_(errors) {}

    /// Reads to the end, or to the first line that fails where `stopAtError`. The exit status: that
    /// of the worst line, a line that is none being worse than a call that failed.
    int run(std::istream& lines, bool stopAtError);

private:
    void runLine(const std::vector<std::string>& words);
    void create(const std::vector<std::string>& words);
    void release(const std::vector<std::string>& words);
    void set(const std::vector<std::string>& words);
    void get(const std::vector<std::string>& words);
    void getAll(const std::vector<std::string>& words);
    void call(const std::vector<std::string>& words);
    void members(const std::vector<std::string>& words);
    void wait(const std::vector<std::string>& words);
    [[nodiscard]] std::string pathOf(const std::string& name) const;

    ServerClient& client_;
    std::ostream& results_;
    std::ostream& errors_;
    std::map<std::string, std::string> pathByName_;
};

} // namespace kintar::ctl
