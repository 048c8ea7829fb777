// Twins of what the reports stand on.
#pragma once

#include "base/RunTimeError.h"
#include "platform/Platform.h"
#include "platform/Printers.h"
#include "server/ReportDatabase.h"

#include <deque>
#include <map>
#include <system_error>

namespace kintar::testing {

class SetClock final : public platform::Clock {
public:
    [[nodiscard]] DateTime now() const override {
        const DateTime present = time;
        time = time.plusMinutes(minutesAtEachLook);
        return present;
    }
    [[nodiscard]] DateTime utcNow() const override { return time; }

    mutable DateTime time = *DateTime::fromFields(2012, 3, 14, 17, 5, 0);
    long long minutesAtEachLook = 0;
};

class MemoryFiles final : public platform::Files {
public:
    std::optional<std::string> read(const std::string& path, std::size_t /*limit*/) override {
        if (unreadable) {
            throw std::system_error(std::make_error_code(std::errc::io_error), path);
        }
        const auto found = files.find(path);
        return found == files.end() ? std::nullopt : std::optional(found->second);
    }
    void deleteIfExists(const std::string& path) override { files.erase(path); }
    void append(const std::string& path, std::string_view text) override { files[path] += text; }
    std::vector<std::string> names(const std::string& folder) override {
        std::vector<std::string> found;
        for (const auto& [path, text] : files) {
            if (path.starts_with(folder + "/")) {
                found.push_back(path.substr(folder.size() + 1));
            }
        }
        return found;
    }
    bool createWhole(const std::string& path, std::string_view content) override {
        if (full) {
            throw std::system_error(std::make_error_code(std::errc::no_space_on_device), path);
        }
        return files.emplace(path, content).second;
    }

    std::map<std::string, std::string> files;
    bool unreadable = false;
    bool full = false;
};

/// Report databases that are names in the memory files.
class MemoryReportDatabases final : public ReportDatabases {
public:
    explicit MemoryReportDatabases(MemoryFiles& files) : files_(files) {}

    void remove(const std::string& path) override { files_.deleteIfExists(path); }
    std::unique_ptr<ReportDatabase> create(const std::string& path,
                                           const std::vector<ReportTable>& tables) override {
        if (noPlace) {
            throw RunTimeError(70, "Permission denied");
        }
        made = tables;
        return std::make_unique<Database>(*this, path);
    }
    std::shared_ptr<Connection> openReadOnly(const std::string& /*path*/) override {
        return std::make_shared<ClosedConnection>();
    }

    std::vector<ReportTable> made;
    bool noPlace = false;
    bool cannotMove = false;

private:
    class Database final : public ReportDatabase {
    public:
        Database(MemoryReportDatabases& owner, std::string path)
            : owner_(owner), path_(std::move(path)) {}
        Connection& connection() override { return connection_; }
        void publish() override {
            if (owner_.cannotMove) {
                throw RunTimeError(61, "Disk full");
            }
            owner_.files_.createWhole(path_, "a new list");
        }

    private:
        MemoryReportDatabases& owner_;
        std::string path_;
        ClosedConnection connection_;
    };

    MemoryFiles& files_;
};

/// An event loop that turns when it is told to.
class HandLoop final : public platform::EventLoop {
public:
    void later(std::function<void()> work) override { waiting_.push_back(std::move(work)); }
    bool turn() {
        if (waiting_.empty()) {
            return false;
        }
        const std::function<void()> work = std::move(waiting_.front());
        waiting_.pop_front();
        work();
        return true;
    }
    void turnUntilIdle() {
        while (turn()) {
        }
    }

private:
    std::deque<std::function<void()>> waiting_;
};

} // namespace kintar::testing
