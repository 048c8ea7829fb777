#include "tools/site/Findings.h"

#include "base/Unicode.h"

namespace kintar::site {

namespace {

constexpr int mostPerPlace = 20;
constexpr std::size_t longestLine = 400;

std::string onOneLine(std::string_view where, std::string_view what) {
    std::string line = std::string(where) + ": " + std::string(what);
    if (line.size() > longestLine) {
        line = line.substr(0, longestLine) + "...";
    }
    for (char& c : line) {
        if (static_cast<unsigned char>(c) < ' ' || c == '\x7f') {
            c = '?';
        }
    }
    return unicode::toValidUtf8(line);
}

} // namespace

void Findings::add(std::string_view where, std::string_view what) {
    auto place = perPlace_.try_emplace(std::string(where), 0).first;
    if (++place->second <= mostPerPlace) {
        lines_.push_back(onOneLine(where, what));
    }
}

std::vector<std::string> Findings::lines() const {
    std::vector<std::string> all = lines_;
    for (const auto& [where, count] : perPlace_) {
        if (count > mostPerPlace) {
            all.push_back(
                onOneLine(where, "and " + std::to_string(count - mostPerPlace) + " more"));
        }
    }
    return all;
}

} // namespace kintar::site
