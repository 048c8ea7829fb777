#include "companion/SiteFolder.h"

#include "companion/SiteSchema.h"
#include "companion/postgres/PostgresSchema.h"
#include "support/PrivateCluster.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <memory>
#include <sqlite3.h>
#include <sstream>
#include <stdexcept>

namespace kintar::companion {

namespace {

void run(sqlite3* database, const std::string& sql) {
    char* message = nullptr;
    if (sqlite3_exec(database, sql.c_str(), nullptr, nullptr, &message) != SQLITE_OK) {
        const std::string text = message != nullptr ? message : "unknown";
        sqlite3_free(message);
        throw std::runtime_error(text);
    }
}

/// The database on a server that others are copies of.
constexpr const char* templateName = "site";

void makeTemplate(testing::PrivateCluster& cluster) {
    testing::runOnServer(cluster.textOf("postgres"),
                         std::string("CREATE DATABASE ") + templateName + " TEMPLATE template0");
    std::string sql;
    for (const std::string& statement : postgres::functionStatements()) {
        sql += statement + ";";
    }
    for (const TableDefinition& table : siteTables()) {
        sql += postgres::createTableStatement(table) + ";";
        for (const std::string& statement : postgres::createIndexStatements(table)) {
            sql += statement + ";";
        }
    }
    sql += testFile("data.sql");
    for (const TableDefinition& table : siteTables()) {
        const std::string keys = postgres::continueKeysStatement(table);
        sql += keys.empty() ? "" : keys + ";";
    }
    testing::runOnServer(cluster.textOf(templateName), sql);
}

testing::PrivateCluster& sharedCluster() {
    static const bool made = [] {
        makeTemplate(testing::PrivateCluster::shared());
        return true;
    }();
    static_cast<void>(made);
    return testing::PrivateCluster::shared();
}

} // namespace

void makeSiteTemplate(testing::PrivateCluster& cluster) {
    makeTemplate(cluster);
}

std::string nameOf(TestEngine engine) {
    return engine == TestEngine::Sqlite ? "Sqlite" : "Postgres";
}

std::string testFile(const std::string& name) {
    std::ifstream file(std::string(KINTAR_COMPANION_TESTS) + "/" + name, std::ios::binary);
    if (!file) {
        throw std::runtime_error("no test file " + name);
    }
    std::ostringstream text;
    text << file.rdbuf();
    return text.str();
}

SiteFolder::SiteFolder(testing::PrivateCluster& cluster)
    : cluster_(&cluster), engine_(TestEngine::Postgres) {
    makeFolder();
    database_ = cluster.makeDatabase(templateName);
    write("kintar3.ini", "[Site]\nDatabase=" + database_ + "\nData=Data\nTexts=Texts\n");
}

void SiteFolder::makeFolder() {
    std::string pattern = (std::filesystem::temp_directory_path() / "kintar-site-XXXXXX").string();
    if (mkdtemp(pattern.data()) == nullptr) {
        throw std::runtime_error("no temporary folder");
    }
    path_ = pattern;
    std::filesystem::create_directory(path_ + "/Data");
}

SiteFolder::SiteFolder(TestEngine engine) : engine_(engine) {
    makeFolder();
    if (engine_ == TestEngine::Postgres) {
        cluster_ = &sharedCluster();
        database_ = cluster_->makeDatabase(templateName);
        write("kintar3.ini", "[Site]\nDatabase=" + database_ + "\nData=Data\nTexts=Texts\n");
        return;
    }
    database_ = path_ + "/site.db";
    write("kintar3.ini", "[Site]\nDatabase=site.db\nData=Data\nTexts=Texts\n");
    std::string statements = "BEGIN;";
    for (const std::string& statement : siteSchemaStatements()) {
        statements += statement + ";";
    }
    foreign(statements + testFile("data.sql") + "COMMIT;");
}

SiteFolder::~SiteFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
    if (engine_ == TestEngine::Postgres) {
        try {
            dropDatabase();
        } catch (const std::exception&) {
            // The server of the test is gone, and the database with it.
        }
    }
}

void SiteFolder::dropDatabase() const {
    if (engine_ == TestEngine::Postgres) {
        cluster_->dropDatabase(database_);
    } else {
        std::filesystem::remove(database_);
    }
}

void SiteFolder::foreign(const std::string& sql) const {
    if (engine_ == TestEngine::Postgres) {
        testing::runOnServer(database_, sql);
        return;
    }
    sqlite3* opened = nullptr;
    sqlite3_open(database().c_str(), &opened);
    const std::unique_ptr<sqlite3, int (*)(sqlite3*)> handle(opened, sqlite3_close);
    sqlite3_exec(opened, "PRAGMA synchronous=OFF", nullptr, nullptr, nullptr);
    run(opened, sql);
}

void SiteFolder::write(const std::string& name, const std::string& content) const {
    std::ofstream(path_ + "/" + name, std::ios::binary) << content;
}

} // namespace kintar::companion
