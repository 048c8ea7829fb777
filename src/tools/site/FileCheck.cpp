#include "tools/site/FileCheck.h"

#include "base/RunTimeError.h"
#include "reports/engine/ReportFile.h"
#include "tools/site/PhotoFolder.h"
#include "tools/site/SiteMaker.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstring>
#include <optional>
#include <set>
#include <sstream>
#include <string>
#include <system_error>

#include <stdlib.h>
#include <unistd.h>

namespace kintar::site {

namespace {

namespace fs = std::filesystem;

constexpr std::size_t largestTextFile = 1'048'576;
constexpr std::array neededReports{"Except.rpt", "InRptc.rpt"};

bool isPlainFolder(const fs::path& folder, const std::string& where, Findings& findings) {
    std::error_code error;
    const fs::file_status status = fs::symlink_status(folder, error);
    if (status.type() == fs::file_type::not_found) {
        findings.add(where, "the folder is missing");
        return false;
    }
    if (fs::is_symlink(status)) {
        findings.add(where, "is a link to " + fs::read_symlink(folder, error).string());
        return false;
    }
    if (!fs::is_directory(status)) {
        findings.add(where, "is no folder");
        return false;
    }
    return true;
}

/// Permissions do not tell about read-only shares and full disks: makes a file and removes it.
void checkWritable(const fs::path& folder, const std::string& where, Findings& findings) {
    std::string name = (folder / ".kintar-check-XXXXXX").string();
    const int file = ::mkostemp(name.data(), 0);
    if (file < 0) {
        findings.add(where, std::string("no file can be made in it: ") + std::strerror(errno));
        return;
    }
    ::close(file);
    ::unlink(name.c_str());
}

bool isNumber(std::string_view text) {
    return !text.empty() && text.size() <= 9 &&
           std::ranges::all_of(text, [](char c) { return c >= '0' && c <= '9'; });
}

std::string_view trimmed(std::string_view text) {
    while (!text.empty() && text.front() == ' ') {
        text.remove_prefix(1);
    }
    while (!text.empty() && text.back() == ' ') {
        text.remove_suffix(1);
    }
    return text;
}

/// The numbers of a location list: one alone, or several that each end with a comma. Nothing where
/// it is something else.
std::optional<std::vector<int>> locationNumbers(std::string_view list) {
    if (list.find(',') == std::string_view::npos) {
        const std::string_view only = trimmed(list);
        return isNumber(only) ? std::optional(std::vector{std::stoi(std::string(only))})
                              : std::nullopt;
    }
    std::vector<int> numbers;
    while (!list.empty()) {
        const std::size_t comma = list.find(',');
        if (comma == std::string_view::npos || !isNumber(list.substr(0, comma))) {
            return std::nullopt;
        }
        numbers.push_back(std::stoi(std::string(list.substr(0, comma))));
        list.remove_prefix(comma + 1);
    }
    return numbers;
}

void checkReportFile(const fs::path& folder, const std::string& name, Findings& findings) {
    const std::string where = std::string(reportsFolder) + "/" + name;
    const std::optional<std::string> content =
        readCheckedFile(folder / name, where, largestTextFile, findings);
    if (!content) {
        return;
    }
    try {
        reports::readReportFile(*content, name);
    } catch (const RunTimeError& error) {
        findings.add(where, error.what());
    }
}

std::set<int> knownLocations(SiteDatabase* database) {
    std::set<int> known;
    if (database != nullptr) {
        SiteStatement query(*database, "SELECT Loc FROM Loc");
        query.start();
        while (query.next()) {
            known.insert(static_cast<int>(query.integer(0)));
        }
    }
    return known;
}

void checkPrinterLine(const std::string& line, int number, const std::set<int>& known,
                      Findings& findings) {
    const std::string start = "line " + std::to_string(number) + " ";
    const std::optional<std::vector<int>> numbers =
        locationNumbers(std::string_view(line).substr(0, line.find(';')));
    if (!numbers) {
        findings.add(printerMapFile, start + "is not a location list such as '0,1,2,' and, behind "
                                             "a semicolon, a printer");
        return;
    }
    for (std::size_t i = 0; i < numbers->size(); ++i) {
        // The number before the first comma is not looked up.
        const bool lookedUp = i > 0 || numbers->size() == 1;
        if (lookedUp && !known.empty() && !known.contains((*numbers)[i])) {
            findings.add(printerMapFile, start + "names location " + std::to_string((*numbers)[i]) +
                                             ", which is missing");
        }
    }
}

std::set<std::string> knownMissing(const fs::path& data, Findings& findings) {
    std::set<std::string> names;
    std::error_code error;
    if (!fs::exists(fs::symlink_status(data / missingPhotosFile, error))) {
        return names;
    }
    const std::optional<std::string> content =
        readCheckedFile(data / missingPhotosFile, missingPhotosFile, largestTextFile, findings);
    std::istringstream lines(content.value_or(""));
    for (std::string line; std::getline(lines, line);) {
        while (!line.empty() && (line.back() == '\r' || line.back() == ' ')) {
            line.pop_back();
        }
        names.insert(comparablePath(line));
    }
    return names;
}

std::string_view words(PhotoPlace place) {
    switch (place) {
    case PhotoPlace::Missing:
        return "the file is missing";
    case PhotoPlace::Outside:
        return "leads out of the photo folder";
    case PhotoPlace::NoPlainFile:
        return "is a link, a folder or a device and no plain file";
    case PhotoPlace::Found:
        break;
    }
    return "";
}

} // namespace

void checkFolders(const fs::path& site, const SiteSettings& settings, Findings& findings) {
    if (isPlainFolder(site / errorsFolder, errorsFolder, findings)) {
        checkWritable(site / errorsFolder, errorsFolder, findings);
    }
    isPlainFolder(site / reportsFolder, reportsFolder, findings);
    if (isPlainFolder(settings.data, dataFolder, findings)) {
        checkWritable(settings.data, dataFolder, findings);
        isPlainFolder(settings.data / imagesFolder, imagesFolder, findings);
    }
}

void checkReportFiles(const fs::path& site, Findings& findings) {
    const fs::path folder = site / reportsFolder;
    if (!fs::is_directory(fs::symlink_status(folder))) {
        return; // said of the folder itself
    }
    std::set<std::string> names(neededReports.begin(), neededReports.end());
    for (const fs::directory_entry& entry : fs::directory_iterator(folder)) {
        if (entry.path().extension() == ".rpt") {
            names.insert(entry.path().filename().string());
        }
    }
    for (const std::string& name : names) {
        checkReportFile(folder, name, findings);
    }
}

void checkPrinterMap(const SiteSettings& settings, SiteDatabase* database, Findings& findings) {
    std::error_code error;
    if (!fs::exists(fs::symlink_status(settings.data / printerMapFile, error))) {
        return;
    }
    const std::optional<std::string> content =
        readCheckedFile(settings.data / printerMapFile, printerMapFile, largestTextFile, findings);
    const std::set<int> known = knownLocations(database);
    std::istringstream lines(content.value_or(""));
    int number = 0;
    for (std::string line; std::getline(lines, line);) {
        ++number;
        if (!line.empty() && line.back() == '\r') {
            line.pop_back();
        }
        checkPrinterLine(line, number, known, findings);
    }
}

void checkPhotos(const SiteSettings& settings, SiteDatabase& database, Findings& findings) {
    const std::set<std::string> missing = knownMissing(settings.data, findings);
    PhotoFolder folder(settings.data / imagesFolder);
    SiteStatement query(database, "SELECT NameID, FileName FROM Images ORDER BY NameID, ImgType");
    query.start();
    while (query.next()) {
        const std::string name = query.text(1);
        const PhotoPlace place = folder.find(name);
        const bool expected =
            place == PhotoPlace::Missing && missing.contains(comparablePath(name));
        if (place != PhotoPlace::Found && !expected) {
            findings.add("Images.FileName", "person " + query.text(0) + ": '" + name + "' " +
                                                std::string(words(place)));
        }
    }
}

} // namespace kintar::site
