// A small site in a scratch folder, for tests that look at one or break it.
#pragma once

#include "support/ScratchFolder.h"
#include "tools/site/SiteDatabase.h"
#include "tools/site/SiteMaker.h"

#include <sqlite3.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <stdexcept>
#include <string>
#include <vector>

namespace kintar::testing {

inline DateTime testNow() {
    return DateTime::fromFields(2026, 3, 14, 17).value();
}

/// Files of a few bytes in place of drawn photos.
inline void writeToyPhotos(const std::filesystem::path& folder,
                           const std::vector<site::Person>& people) {
    for (const site::Person& person : people) {
        if (person.photo.state != site::PhotoState::Present) {
            continue;
        }
        std::filesystem::create_directories((folder / person.photo.path).parent_path());
        std::ofstream(folder / person.photo.path) << person.id;
        if (!person.photo.otherType.empty()) {
            std::ofstream(folder / person.photo.otherType) << person.id;
        }
    }
}

inline std::string contentOf(const std::filesystem::path& file) {
    std::ifstream stream(file, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
}

class TestSite {
public:
    explicit TestSite(int names = 60, std::uint64_t seed = 1, const std::string& database = {}) {
        options.database = database;
        options.names = names;
        options.seed = seed;
        options.now = testNow();
        counts = site::makeSite(folder, options, writeToyPhotos);
    }

    /// Runs statements on the database as any other program could.
    void execute(const std::string& sql) const {
        sqlite3* handle = nullptr;
        sqlite3_open((folder / site::databaseFile).c_str(), &handle);
        // A scratch site need not outlive the machine.
        sqlite3_exec(handle, "PRAGMA synchronous=OFF", nullptr, nullptr, nullptr);
        const int result = sqlite3_exec(handle, sql.c_str(), nullptr, nullptr, nullptr);
        const std::string message = sqlite3_errmsg(handle);
        sqlite3_close(handle);
        if (result != SQLITE_OK) {
            throw std::runtime_error(message);
        }
    }

    /// The first column of the first row.
    [[nodiscard]] std::string value(const std::string& sql) const {
        site::SiteDatabase database(folder / site::databaseFile, site::SiteDatabase::Access::Read);
        site::SiteStatement query(database, sql);
        query.start();
        return query.next() ? query.text(0) : "no row";
    }

private:
    ScratchFolder scratch_;

public:
    std::filesystem::path folder = std::filesystem::path(scratch_.path()) / "site";
    site::SiteOptions options;
    site::RowCounts counts;
};

} // namespace kintar::testing
