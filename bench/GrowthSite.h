// A site of a given size on either engine, made by the program that makes sites.
#pragma once

#include "companion/sqlite/SqliteFunctions.h"
#include "companion/sqlite/SqliteHandle.h"
#include "host/PrivateBus.h"
#include "support/PrivateCluster.h"
#include "support/ScratchFolder.h"

#include <cstdio>
#include <filesystem>
#include <stdexcept>
#include <string>

namespace kintar::bench {

enum class Engine { Sqlite, Postgres };

inline std::string nameOf(Engine engine) {
    return engine == Engine::Sqlite ? "SQLite" : "PostgreSQL";
}

/// Besides what `kintar-site create` invents, every name has a photo, and there are some names that
/// begin as no other does: a search for them finds as many in a small site as in a large one.
class GrowthSite {
public:
    static constexpr int drawnPhotos = 100;
    static constexpr int photosInUse = 20;
    static constexpr int rareNames = 100;
    static constexpr const char* rareBeginning = "qxz";

    /// `server` outlives the site, and is used where the engine is a server's.
    GrowthSite(Engine engine, int names, testing::PrivateCluster* server)
        : server_(engine == Engine::Postgres ? server : nullptr) {
        std::string command = KINTAR_SITE " create '" + path() + "' --names " +
                              std::to_string(names) + " --photos " + std::to_string(drawnPhotos);
        if (server_ != nullptr) {
            database_ = server_->makeDatabase();
            command += " --database '" + database_ + "'";
        }
        host::ChildProcess create({"sh", "-c", command + " >/dev/null"}, {});
        if (create.wait() != 0) {
            throw std::runtime_error("kintar-site create failed");
        }
        run(additions());
    }
    GrowthSite(const GrowthSite&) = delete;
    GrowthSite& operator=(const GrowthSite&) = delete;
    ~GrowthSite() {
        if (server_ != nullptr) {
            server_->dropDatabase(database_);
        }
    }

    [[nodiscard]] std::string path() const { return folder_ / "site"; }

private:
    /// Statements that both engines take.
    [[nodiscard]] std::string additions() const {
        std::string sql = "INSERT INTO Names VALUES ";
        for (int i = 0; i < rareNames; ++i) {
            sql += (i == 0 ? "(" : ", (") + std::to_string(90000000 + i) + ", '" + rareBeginning +
                   std::to_string(i) + "', 'Ann', 1, 1, 0, 0)";
        }
        return sql + ";INSERT INTO Images SELECT ID, 1, column2 FROM Names JOIN (VALUES " +
               photos() + ") AS photos ON column1 = ID % " + std::to_string(photosInUse) +
               " WHERE ID > " + std::to_string(drawnPhotos);
    }

    /// The first of the photos that are there, numbered.
    [[nodiscard]] std::string photos() const {
        std::string values;
        int number = 0;
        for (int person = 1; number < photosInUse; ++person) {
            char name[16];
            std::snprintf(name, sizeof name, "p%06d.jpg", person);
            if (person > drawnPhotos) {
                throw std::runtime_error("too few photos");
            }
            if (std::filesystem::exists(path() + "/Data/Images/" + name)) {
                values +=
                    (number == 0 ? "(" : ", (") + std::to_string(number) + ", '" + name + "')";
                ++number;
            }
        }
        return values;
    }

    void run(const std::string& sql) const {
        if (server_ != nullptr) {
            testing::runOnServer(database_, sql);
            testing::runOnServer(database_, "VACUUM ANALYZE");
            return;
        }
        const companion::sqlite::DatabaseHandle opened = companion::sqlite::openDatabase(
            path() + "/site.db", companion::sqlite::Access::ReadWrite);
        companion::sqlite::registerFunctions(opened.get());
        companion::sqlite::runPlain(opened.get(), sql);
    }

    testing::PrivateCluster* server_;
    testing::ScratchFolder folder_;
    std::string database_;
};

} // namespace kintar::bench
