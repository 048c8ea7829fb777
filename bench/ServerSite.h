// A site on a database server of a benchmark's own, and that server asked with nothing between.
#pragma once

#include "companion/SiteSchema.h"
#include "companion/postgres/PostgresSchema.h"
#include "support/PrivateCluster.h"
#include "support/ScratchFolder.h"

#include <libpq-fe.h>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

namespace kintar::bench {

class ServerSite {
public:
    /// `rows`: statements of the server's own language that fill the tables.
    explicit ServerSite(const std::string& rows)
        : database_(testing::PrivateCluster::shared().makeDatabase()) {
        std::string sql;
        for (const std::string& statement : companion::postgres::functionStatements()) {
            sql += statement + ";";
        }
        std::string indexes;
        for (const companion::TableDefinition& table : companion::siteTables()) {
            sql += companion::postgres::createTableStatement(table) + ";";
            for (const std::string& index : companion::postgres::createIndexStatements(table)) {
                indexes += index + ";";
            }
        }
        testing::runOnServer(database_, sql + rows + ";" + indexes);
        testing::runOnServer(database_, "VACUUM ANALYZE");
        folder_.makeFolder("Data");
        folder_.makeFolder("Data/Images");
        folder_.write("kintar3.ini", "[Site]\nDatabase=" + database_ + "\nData=Data\n");
    }
    ServerSite(const ServerSite&) = delete;
    ServerSite& operator=(const ServerSite&) = delete;
    ~ServerSite() { testing::PrivateCluster::shared().dropDatabase(database_); }

    [[nodiscard]] const std::string& database() const { return database_; }
    [[nodiscard]] std::string path() const { return folder_.path(); }

private:
    std::string database_;
    testing::ScratchFolder folder_;
};

/// A statement of the server's own language with one number as its parameter, prepared once.
class BareServerStatement {
public:
    BareServerStatement(const std::string& database, const std::string& sql)
        : connection_(PQconnectdb((database + "&options=-cjit%3Doff").c_str()), PQfinish) {
        const Result prepared(PQprepare(connection_.get(), "s", sql.c_str(), 0, nullptr), PQclear);
        if (PQresultStatus(prepared.get()) != PGRES_COMMAND_OK) {
            throw std::runtime_error(PQerrorMessage(connection_.get()));
        }
    }

    void plain(const char* sql) { const Result done(PQexec(connection_.get(), sql), PQclear); }

    /// Runs it once, without a parameter, and looks at every value; how many rows there are.
    int run() {
        const Result rows(PQexecPrepared(connection_.get(), "s", 0, nullptr, nullptr, nullptr, 0),
                          PQclear);
        return lookAt(rows.get());
    }

    /// Runs it for the numbers from 1 to `last` in pipeline mode; how many rows there are.
    int runForEach(int last) {
        constexpr int together = 256;
        PQenterPipelineMode(connection_.get());
        for (int number = 1; number <= last; ++number) {
            const std::string text = std::to_string(number);
            const char* const value = text.c_str();
            PQsendQueryPrepared(connection_.get(), "s", 1, &value, nullptr, nullptr, 0);
            if (number % together == 0 || number == last) {
                PQpipelineSync(connection_.get());
            }
        }
        int rows = 0;
        for (int number = 1; number <= last; ++number) {
            rows += lookAt(next().get());
            next(); // the end of this statement's results
            if (number % together == 0 || number == last) {
                next(); // the end of those sent together
            }
        }
        PQexitPipelineMode(connection_.get());
        return rows;
    }

private:
    using Result = std::unique_ptr<PGresult, void (*)(PGresult*)>;

    Result next() { return {PQgetResult(connection_.get()), PQclear}; }

    int lookAt(const PGresult* rows) {
        if (PQresultStatus(rows) != PGRES_TUPLES_OK) {
            throw std::runtime_error(PQerrorMessage(connection_.get()));
        }
        const int count = PQntuples(rows);
        const int columns = PQnfields(rows);
        for (int row = 0; row < count; ++row) {
            for (int column = 0; column < columns; ++column) {
                bytes_ += PQgetvalue(rows, row, column)[0];
            }
        }
        return count;
    }

    std::unique_ptr<PGconn, void (*)(PGconn*)> connection_;
    long bytes_ = 0;
};

} // namespace kintar::bench
