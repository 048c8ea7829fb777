// What is wrong with a site.
#pragma once

#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace kintar::site {

/// Findings in the order in which they were made, a line each.
class Findings {
public:
    /// `where` names the file, folder, table or table and column. After the first few of one place
    /// the others are only counted, so that a broken site fills no screen.
    void add(std::string_view where, std::string_view what);
    [[nodiscard]] bool empty() const { return lines_.empty(); }
    /// `where: what`, and behind them a line for each place that had more. No line holds a control
    /// character, whatever the site held.
    [[nodiscard]] std::vector<std::string> lines() const;

private:
    std::vector<std::string> lines_;
    std::map<std::string, int, std::less<>> perPlace_;
};

} // namespace kintar::site
