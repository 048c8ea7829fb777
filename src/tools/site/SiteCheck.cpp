#include "tools/site/SiteCheck.h"

#include "companion/postgres/ConnectionText.h"
#include "tools/site/FileCheck.h"
#include "tools/site/Findings.h"
#include "tools/site/SchemaCheck.h"
#include "tools/site/ServerCheck.h"
#include "tools/site/SiteDatabase.h"
#include "tools/site/SiteError.h"
#include "tools/site/SiteMaker.h"
#include "tools/site/ValueCheck.h"

#include <functional>
#include <memory>
#include <system_error>

namespace kintar::site {

namespace {

namespace fs = std::filesystem;

constexpr const char* databasePlace = "database";

/// A step that a broken database or folder may end: what it ended with is a finding.
void runStep(const char* where, Findings& findings, const std::function<void()>& step) {
    try {
        step();
    } catch (const SiteError& error) {
        findings.add(where, error.what());
    } catch (const fs::filesystem_error& error) {
        findings.add(where, error.what());
    }
}

/// Null, with a finding, where there is no database to look at.
std::unique_ptr<SiteDatabase> openDatabase(const std::string& name, Findings& findings) {
    std::error_code error;
    const fs::file_status status = fs::symlink_status(name, error);
    if (!companion::postgres::isConnectionText(name) && !fs::is_regular_file(status)) {
        findings.add(databasePlace,
                     name + (fs::exists(status) ? " is no regular file" : " is missing"));
        return nullptr;
    }
    std::unique_ptr<SiteDatabase> database;
    runStep(databasePlace, findings,
            [&] { database = std::make_unique<SiteDatabase>(name, SiteDatabase::Access::Read); });
    return database;
}

/// Whether the database is whole; a damaged one is not asked anything else.
bool checkIntegrity(SiteDatabase& database, Findings& findings) {
    if (database.server() != nullptr) {
        return true; // the server's own affair
    }
    bool whole = false;
    runStep(databasePlace, findings, [&] {
        SiteStatement query(database, "PRAGMA integrity_check(20)");
        query.start();
        while (query.next()) {
            whole = query.text(0) == "ok";
            if (!whole) {
                findings.add(databasePlace, query.text(0));
            }
        }
    });
    return whole;
}

/// The settings may name another table of texts than the usual one.
void checkTexts(const SiteSettings& settings, SiteDatabase& database, Findings& findings) {
    const std::string& table = settings.textsTable;
    if (table != "Texts" &&
        (!hasColumn(database, table, "Num") || !hasColumn(database, table, "Text"))) {
        findings.add(table, "is named in kintar3.ini and is no table with Num and Text");
    }
}

void checkDatabase(const SiteSettings& settings, SiteDatabase& database, const KnowsZone& knowsZone,
                   Findings& findings) {
    bool complete = false;
    const bool onServer = database.server() != nullptr;
    runStep(databasePlace, findings, [&] {
        complete =
            onServer ? checkServerSchema(database, findings) : checkSchema(database, findings);
    });
    runStep(databasePlace, findings, [&] { checkTexts(settings, database, findings); });
    runStep(databasePlace, findings, [&] {
        onServer ? checkServerValues(database, findings) : checkValues(database, findings);
    });
    if (complete) {
        runStep(databasePlace, findings, [&] { checkRelations(database, findings); });
        if (knowsZone) {
            runStep("Loc", findings, [&] { checkZoneNames(database, knowsZone, findings); });
        }
        runStep("Images", findings, [&] { checkPhotos(settings, database, findings); });
    }
    runStep("InRptByLoc.txt", findings,
            [&] { checkPrinterMap(settings, complete ? &database : nullptr, findings); });
}

} // namespace

std::vector<std::string> checkSite(const fs::path& site, const KnowsZone& knowsZone) {
    Findings findings;
    std::error_code error;
    if (!fs::is_directory(site, error)) {
        findings.add(site.string(), "is no folder");
        return findings.lines();
    }
    const std::optional<SiteSettings> settings = readSettings(site, findings);
    if (!settings) {
        return findings.lines();
    }
    runStep("folders", findings, [&] { checkFolders(site, *settings, findings); });
    runStep(reportsFolder, findings, [&] { checkReportFiles(site, findings); });
    const std::unique_ptr<SiteDatabase> database = openDatabase(settings->database, findings);
    if (database && checkIntegrity(*database, findings)) {
        checkDatabase(*settings, *database, knowsZone, findings);
    }
    return findings.lines();
}

} // namespace kintar::site
