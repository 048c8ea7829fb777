// The calls of each client in the order in which they came, one at a time.
#pragma once

#include <cstddef>
#include <list>
#include <optional>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

namespace kintar::host {

/// A line of calls for each client: the next one starts when the one before is answered, whatever
/// the calls of other clients do meanwhile.
template <class Call>
class ClientLines {
public:
    explicit ClientLines(std::size_t limit = 4096) : limit_(limit) {}

    /// Puts a call at the end of its client's line; false where the line is full.
    bool add(const std::string& client, Call call) {
        Line& line = lines_[client];
        if (line.waiting.size() >= limit_) {
            return false;
        }
        line.waiting.push_back(std::move(call));
        return true;
    }

    /// The next call of a client, which is under way from now until `end`. Nothing where there is
    /// none, or where one is under way.
    std::optional<Call> begin(const std::string& client) {
        const auto found = lines_.find(client);
        if (found == lines_.end() || found->second.underWay || found->second.waiting.empty()) {
            return std::nullopt;
        }
        Line& line = found->second;
        std::optional<Call> next = std::move(line.waiting.front());
        line.waiting.pop_front();
        line.underWay = true;
        return next;
    }

    /// The call under way is answered.
    void end(const std::string& client) {
        const auto found = lines_.find(client);
        if (found == lines_.end()) {
            return;
        }
        found->second.underWay = false;
        if (found->second.waiting.empty()) {
            lines_.erase(found);
        }
    }

    [[nodiscard]] bool isUnderWay(const std::string& client) const {
        const auto found = lines_.find(client);
        return found != lines_.end() && found->second.underWay;
    }

    /// Forgets the calls of a client that have not begun.
    void dropWaiting(const std::string& client) {
        const auto found = lines_.find(client);
        if (found != lines_.end()) {
            found->second.waiting.clear();
            if (!found->second.underWay) {
                lines_.erase(found);
            }
        }
    }

    /// No call waits and none is under way.
    [[nodiscard]] bool empty() const { return lines_.empty(); }

    /// Clients whose next call may begin.
    [[nodiscard]] std::vector<std::string> ready() const {
        std::vector<std::string> clients;
        for (const auto& [client, line] : lines_) {
            if (!line.underWay && !line.waiting.empty()) {
                clients.push_back(client);
            }
        }
        return clients;
    }

private:
    struct Line {
        // A list: most lines live for one call, and an empty list holds no memory.
        std::list<Call> waiting;
        bool underWay = false;
    };

    std::size_t limit_;
    std::unordered_map<std::string, Line> lines_;
};

} // namespace kintar::host
