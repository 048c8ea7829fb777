#include "companion/SiteSystem.h"

#include "companion/DatabaseError.h"
#include "companion/OpenDatabase.h"
#include "companion/SiteReadSession.h"

#include <charconv>
#include <filesystem>

namespace kintar::companion {

namespace {

struct Right {
    std::int32_t locGrp = 0;
    std::int32_t menu = 0;
};

/// `L3M2` without anything around it.
std::optional<Right> rightOf(std::string_view name) {
    Right right;
    const char* end = name.data() + name.size();
    if (!name.starts_with('L')) {
        return std::nullopt;
    }
    const auto [middle, firstError] = std::from_chars(name.data() + 1, end, right.locGrp);
    if (firstError != std::errc() || middle == end || *middle != 'M') {
        return std::nullopt;
    }
    const auto [rest, secondError] = std::from_chars(middle + 1, end, right.menu);
    return secondError == std::errc() && rest == end ? std::optional(right) : std::nullopt;
}

} // namespace

void SiteSystem::SetVersion(const std::string& version) {
    if (version.empty()) {
        throw RunTimeError::invalidCall();
    }
    version_ = version;
}

std::string SiteSystem::DataPath() {
    return dataPath_;
}

std::shared_ptr<Connection> SiteSystem::DataConnection() {
    return data_ ? data_ : throw DatabaseError::closed();
}

std::shared_ptr<Connection> SiteSystem::SetupConnection() {
    return setup_ ? setup_ : throw DatabaseError::closed();
}

std::unique_ptr<ReadSession> SiteSystem::newReadSession() {
    if (!data_) {
        throw DatabaseError::closed();
    }
    // Whoever reads long has a thread of his own and can be stopped: nobody waits for him.
    auto connection =
        openDatabase(database_, DatabaseAccess::ReadOnly,
                     {.connect = limits_.connect, .statement = std::chrono::seconds(0)});
    if (watch_) {
        connection->failWhile(watch_->away());
    }
    return std::make_unique<SiteReadSession>(std::move(connection));
}

bool SiteSystem::Create(std::string& sysPath, bool& /*flag*/) {
    const SiteSettings settings = SiteSettings::read(sysPath);
    std::error_code error;
    if (!std::filesystem::is_directory(settings.data, error)) {
        throw DatabaseError(ErrorKind::Missing, "There is no data folder " + settings.data + ".");
    }
    // Both or neither: a system with half its connections would fail later and elsewhere.
    std::shared_ptr<DatabaseConnection> data =
        openDatabase(settings.database, DatabaseAccess::ReadWrite, settings.limits);
    std::shared_ptr<DatabaseConnection> setup =
        openDatabase(settings.database, DatabaseAccess::ReadOnly, settings.limits);
    watch(settings);
    if (watch_) {
        data->failWhile(watch_->away());
        setup->failWhile(watch_->away());
    }
    dataPath_ = settings.data;
    database_ = settings.database;
    limits_ = settings.limits;
    data_ = std::move(data);
    setup_ = std::move(setup);
    records_.setTextsTable(settings.textsTable);
    return true;
}

void SiteSystem::watch(const SiteSettings& settings) {
    watch_.reset();
    notices_.databaseAway(false);
    if (postgres::isConnectionText(settings.database)) {
        const auto changed = [this](bool away) {
            log_.write(LogLevel::Warning,
                       away ? "the database does not answer" : "the database answers again");
            notices_.databaseAway(away);
        };
        watch_ = std::make_unique<postgres::ServerWatch>(
            settings.database, changed,
            postgres::ServerWatch::Pace{.answer = settings.limits.answer});
    }
}

Recordset SiteSystem::read(const std::string& sql) {
    return records_.OpenRecordset(sql, *SetupConnection());
}

std::string SiteSystem::GetText(std::int16_t id) {
    try {
        return records_.text(*SetupConnection(), id);
    } catch (const RunTimeError& error) {
        ReportError(error.number(), std::string(error.what()) + "\r\nTarnSys/GetText", 2);
        return {};
    }
}

void SiteSystem::ReportError(int number, const std::string& text, std::int16_t kind) {
    const std::size_t lineBreak = text.rfind("\r\n");
    const bool hasRoutine = lineBreak != std::string::npos;
    const std::string routine = hasRoutine ? text.substr(lineBreak + 2) : "unknown routine";
    log_.write(LogLevel::Error, "error " + std::to_string(number) + " in " + routine + ": " +
                                    text.substr(0, lineBreak) + " (kind " + std::to_string(kind) +
                                    ")");
}

std::string SiteSystem::CompanyFilter(std::string_view column, std::int32_t locGrp, bool /*flag*/) {
    const Recordset companies =
        read("SELECT Company FROM OprCompany WHERE OprID = " + std::to_string(operator_) +
             " AND LocGrp = " + std::to_string(locGrp) + " ORDER BY Company");
    if (companies.RecordCount() == 0) {
        return {};
    }
    std::string list = "0";
    for (std::size_t row = 0; row < companies.RecordCount(); ++row) {
        const std::int32_t company = companies.at(row, 0).leadingLong();
        list += company != 0 ? ", " + std::to_string(company) : std::string();
    }
    return " AND " + std::string(column) + " IN (" + list + ")";
}

std::optional<std::int32_t> SiteSystem::profileOfOperator() {
    const Recordset rows =
        read("SELECT PwProfile FROM OPR WHERE ID = " + std::to_string(operator_));
    if (rows.atEnd() || rows.field(std::size_t{0}).isNull()) {
        return std::nullopt;
    }
    return rows.field(std::size_t{0}).asLong();
}

bool SiteSystem::profileGrants(std::int32_t profile, std::int32_t locGrp, std::int32_t menu) {
    const Recordset all =
        read("SELECT AllMenus FROM PwProfile WHERE ID = " + std::to_string(profile));
    if (all.atEnd()) {
        return false;
    }
    if (all.field(std::size_t{0}).asBoolean()) {
        return true;
    }
    const Recordset views =
        read("SELECT [View] FROM MenuProfile WHERE PwProfileID = " + std::to_string(profile) +
             " AND MenuID = " + std::to_string(menu) +
             " AND [View] <> 0 AND (Loc = 0 OR Loc IN "
             "(SELECT Loc FROM Loc WHERE LocGrp = " +
             std::to_string(locGrp) + "))");
    return views.RecordCount() > 0;
}

bool SiteSystem::HasRight(std::string_view name) {
    const auto right = rightOf(name);
    const auto profile = right ? profileOfOperator() : std::nullopt;
    return profile && profileGrants(*profile, right->locGrp, right->menu);
}

} // namespace kintar::companion
