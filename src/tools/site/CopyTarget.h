// The database that a copy goes to, and how far it has come there.
#pragma once

#include "companion/SiteSchema.h"
#include "tools/site/SiteDatabase.h"

#include <functional>
#include <string>

namespace kintar::site {

/// Remembers which tables are complete in a table of its own, which goes when all are.
class CopyTarget {
public:
    /// Makes the tables where there are none yet. Throws SiteError where the database holds
    /// anything but an interrupted copy.
    explicit CopyTarget(const std::string& database);

    [[nodiscard]] SiteDatabase& database() { return database_; }
    [[nodiscard]] bool isComplete(const companion::TableDefinition& table);
    /// Empties a table and lets `fill` fill it: all of it or nothing becomes real.
    void fill(const companion::TableDefinition& table, const std::function<void()>& fill);
    void createIndexes(const std::function<void()>& checkpoint);
    /// No key up to this one will be given by the database.
    void continueKeysBehind(const companion::TableDefinition& table, long long last);
    /// From here on it is a site's database like any other.
    void finish();

private:
    [[nodiscard]] std::string nameOf(const companion::TableDefinition& table) const;
    bool isEmpty();
    bool isInterruptedCopy();
    void makeTables();
    void forget(const companion::TableDefinition& table);
    void createIndex(const companion::TableDefinition& table,
                     const companion::IndexDefinition& index, const std::string& statement);
    std::string longestRow(const companion::TableDefinition& table,
                           const companion::IndexDefinition& index);

    SiteDatabase database_;
    bool onServer_;
};

/// The last key that a database gave, or would hold by itself; 0 where it gives none.
long long lastKeyGiven(SiteDatabase& database, const companion::TableDefinition& table);

} // namespace kintar::site
