#include "support/TestDatabase.h"

#include "companion/SiteSchema.h"
#include "companion/postgres/PostgresSchema.h"
#include "support/PrivateCluster.h"

#include <cstdlib>
#include <filesystem>
#include <map>
#include <sqlite3.h>
#include <stdexcept>
#include <utility>

namespace kintar::testing {

class TestDatabase::Foreign {
public:
    Foreign() = default;
    Foreign(const Foreign&) = delete;
    Foreign& operator=(const Foreign&) = delete;
    virtual ~Foreign() = default;
    virtual void run(const std::string& sql) = 0;
};

namespace {

class ForeignToFile final : public TestDatabase::Foreign {
public:
    explicit ForeignToFile(const std::string& path) {
        sqlite3* opened = nullptr;
        const int result = sqlite3_open(path.c_str(), &opened);
        handle_.reset(opened);
        if (result != SQLITE_OK) {
            throw std::runtime_error("cannot make a site's database");
        }
        sqlite3_busy_timeout(opened, 2000);
        run("PRAGMA synchronous=OFF"); // a test survives no power failure
    }

    void run(const std::string& sql) override {
        char* message = nullptr;
        if (sqlite3_exec(handle_.get(), sql.c_str(), nullptr, nullptr, &message) != SQLITE_OK) {
            const std::string text = message != nullptr ? message : "unknown";
            sqlite3_free(message);
            throw std::runtime_error(text);
        }
    }

private:
    std::unique_ptr<sqlite3, int (*)(sqlite3*)> handle_{nullptr, sqlite3_close};
};

class ForeignToServer final : public TestDatabase::Foreign {
public:
    explicit ForeignToServer(const std::string& text) : connection_(text) {}
    void run(const std::string& sql) override { connection_.run(sql); }

private:
    ServerConnection connection_;
};

std::string fileStatements(const std::string& rows) {
    std::string sql = "BEGIN;";
    for (const std::string& statement : companion::siteSchemaStatements()) {
        sql += statement + ";";
    }
    return sql + rows + "COMMIT;";
}

std::string serverStatements(const std::string& rows) {
    std::string sql;
    for (const std::string& statement : companion::postgres::functionStatements()) {
        sql += statement + ";";
    }
    for (const companion::TableDefinition& table : companion::siteTables()) {
        sql += companion::postgres::createTableStatement(table) + ";";
        for (const std::string& statement : companion::postgres::createIndexStatements(table)) {
            sql += statement + ";";
        }
    }
    sql += rows;
    for (const companion::TableDefinition& table : companion::siteTables()) {
        const std::string keys = companion::postgres::continueKeysStatement(table);
        sql += keys.empty() ? "" : keys + ";";
    }
    return sql;
}

/// The database on a server that those with the same rows are copies of: copying is faster.
std::string templateOn(PrivateCluster& server, const std::string& rows) {
    static std::map<std::pair<PrivateCluster*, std::string>, std::string> made;
    std::string& name = made[{&server, rows}];
    if (name.empty()) {
        const std::string next = "template_site" + std::to_string(made.size());
        runOnServer(server.textOf("postgres"), "CREATE DATABASE " + next + " TEMPLATE template0");
        runOnServer(server.textOf(next), serverStatements(rows));
        name = next;
    }
    return name;
}

} // namespace

std::string nameOf(TestEngine engine) {
    return engine == TestEngine::Sqlite ? "Sqlite" : "Postgres";
}

TestEngine chosenEngine() {
    const char* set = std::getenv("KINTAR3_TEST_ENGINE");
    const std::string name = set != nullptr ? set : "sqlite";
    if (name != "sqlite" && name != "postgresql") {
        throw std::runtime_error("KINTAR3_TEST_ENGINE is sqlite or postgresql");
    }
    return name == "sqlite" ? TestEngine::Sqlite : TestEngine::Postgres;
}

TestDatabase::TestDatabase(TestEngine engine, const std::string& path, const std::string& rows) {
    if (engine == TestEngine::Sqlite) {
        name_ = path;
        runAlone(fileStatements(rows));
        return;
    }
    server_ = &PrivateCluster::shared();
    name_ = server_->makeDatabase(templateOn(*server_, rows));
}

TestDatabase::TestDatabase(PrivateCluster& server, const std::string& rows)
    : server_(&server), name_(server.makeDatabase(templateOn(server, rows))) {}

TestDatabase::~TestDatabase() {
    if (server_ == nullptr) {
        return;
    }
    try {
        drop();
    } catch (const std::exception&) {
        // The server of the test is gone, and the database with it.
    }
}

void TestDatabase::run(const std::string& sql) {
    if (!foreign_) {
        foreign_ = connect();
    }
    foreign_->run(sql);
}

void TestDatabase::runAlone(const std::string& sql) const {
    connect()->run(sql);
}

std::unique_ptr<TestDatabase::Foreign> TestDatabase::connect() const {
    if (server_ == nullptr) {
        return std::make_unique<ForeignToFile>(name_);
    }
    return std::make_unique<ForeignToServer>(name_);
}

void TestDatabase::settle() {
    if (server_ != nullptr) {
        run("ANALYZE");
    }
}

void TestDatabase::drop() {
    foreign_.reset();
    if (server_ == nullptr) {
        std::filesystem::remove(name_);
    } else {
        server_->dropDatabase(name_);
    }
}

} // namespace kintar::testing
