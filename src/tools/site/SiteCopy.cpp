#include "tools/site/SiteCopy.h"

#include "tools/site/CopyTarget.h"
#include "tools/site/SchemaCheck.h"
#include "tools/site/SiteError.h"
#include "tools/site/TableReader.h"
#include "tools/site/TableWriter.h"

#include <algorithm>
#include <cctype>

namespace kintar::site {

using companion::TableDefinition;

namespace {

constexpr long long rowsBetweenCheckpoints = 1000;

/// One state of the data for as long as it lives; on a server, cursors need it too.
class ReadTransaction {
public:
    explicit ReadTransaction(SiteDatabase& database) : database_(database) {
        database_.execute(database.server() != nullptr
                              ? "BEGIN ISOLATION LEVEL REPEATABLE READ READ ONLY"
                              : "BEGIN");
    }
    ReadTransaction(const ReadTransaction&) = delete;
    ReadTransaction& operator=(const ReadTransaction&) = delete;
    ~ReadTransaction() {
        try {
            database_.execute("ROLLBACK");
        } catch (const SiteError&) {
            // The connection is gone, and the transaction with it.
        }
    }

private:
    SiteDatabase& database_;
};

void requireSite(SiteDatabase& source) {
    for (const TableDefinition& table : companion::siteTables()) {
        for (const companion::ColumnDefinition& column : table.columns) {
            if (!hasColumn(source, table.name, column.name)) {
                throw SiteError("the source has no " + table.name + '.' + column.name +
                                "; 'kintar-site check' names all that is missing");
            }
        }
    }
}

std::vector<std::string> otherTables(SiteDatabase& source) {
    SiteStatement query(source, source.server() != nullptr
                                    ? "SELECT relname FROM pg_class WHERE relkind IN ('r', 'p') "
                                      "AND relnamespace = 'public'::regnamespace ORDER BY 1"
                                    : "SELECT name FROM sqlite_schema WHERE type = 'table' AND "
                                      "name NOT LIKE 'sqlite%' ORDER BY 1");
    query.start();
    const auto same = [](char a, char b) {
        return std::tolower(static_cast<unsigned char>(a)) ==
               std::tolower(static_cast<unsigned char>(b));
    };
    std::vector<std::string> others;
    while (query.next()) {
        const std::string name = query.text(0);
        const bool known =
            std::ranges::any_of(companion::siteTables(), [&](const TableDefinition& table) {
                return std::ranges::equal(table.name, name, same);
            });
        if (!known) {
            others.push_back(name);
        }
    }
    return others;
}

class Copy {
public:
    Copy(SiteDatabase& source, CopyTarget& target, const CopyOptions& options)
        : source_(source), target_(target), options_(options) {}

    CopyOutcome run();

private:
    void copyTable(const TableDefinition& table);
    /// What the two sides first differ in; empty where they are equal.
    std::string difference(const TableDefinition& table, long long& rows);
    void checkpoint(long long row) const {
        if (row % rowsBetweenCheckpoints == 0) {
            options_.checkpoint();
        }
    }

    SiteDatabase& source_;
    CopyTarget& target_;
    const CopyOptions& options_;
};

void Copy::copyTable(const TableDefinition& table) {
    options_.progress("copying " + table.name);
    target_.fill(table, [&] {
        TableReader reader(source_, table);
        TableWriter writer(target_.database(), table);
        long long count = 0;
        while (const RowTexts* row = reader.next()) {
            writer.add(*row);
            checkpoint(++count);
        }
        writer.finish();
    });
}

std::string Copy::difference(const TableDefinition& table, long long& rows) {
    const ReadTransaction transaction(target_.database());
    TableReader left(source_, table);
    TableReader right(target_.database(), table);
    std::string found;
    for (rows = 0;; ++rows) {
        const RowTexts* original = left.next();
        const RowTexts* copied = right.next();
        if (original == nullptr && copied == nullptr) {
            return found;
        }
        checkpoint(rows);
        const bool equal = original != nullptr && copied != nullptr && *original == *copied;
        if (!equal && found.empty()) {
            // Read on to the end: a server has only one such reading at a time.
            found = table.name + ", " + (original != nullptr ? left : right).place();
        }
    }
}

CopyOutcome Copy::run() {
    CopyOutcome outcome;
    std::vector<std::string> early;
    for (const TableDefinition& table : companion::siteTables()) {
        if (target_.isComplete(table)) {
            early.push_back(table.name);
            options_.progress(table.name + " is there already");
        } else {
            copyTable(table);
        }
    }
    target_.createIndexes(options_.checkpoint);
    for (const TableDefinition& table : companion::siteTables()) {
        options_.progress("comparing " + table.name);
        long long rows = 0;
        std::string different = difference(table, rows);
        if (!different.empty() && std::ranges::count(early, table.name) != 0) {
            options_.progress(table.name + " has changed since it was copied");
            copyTable(table);
            different = difference(table, rows);
        }
        if (!different.empty()) {
            throw SiteError("the copy differs: " + different);
        }
        outcome.rows[table.name] = rows;
        target_.continueKeysBehind(table, lastKeyGiven(source_, table));
    }
    target_.finish();
    return outcome;
}

} // namespace

CopyOutcome copySite(const std::string& from, const std::string& to, const CopyOptions& options) {
    SiteDatabase source(from, SiteDatabase::Access::Read);
    requireSite(source);
    CopyTarget target(to);
    const ReadTransaction transaction(source);
    CopyOutcome outcome = Copy(source, target, options).run();
    outcome.leftOut = otherTables(source);
    return outcome;
}

} // namespace kintar::site
