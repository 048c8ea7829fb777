#include "tools/site/SiteMaker.h"

#include "tools/site/Plan.h"
#include "tools/site/ReportFiles.h"
#include "tools/site/SiteError.h"
#include "tools/site/UnfinishedFolder.h"

#include <algorithm>
#include <fstream>
#include <memory>
#include <string>
#include <utility>

namespace kintar::site {

namespace {

namespace fs = std::filesystem;

/// Where the site goes, without links and closing separators.
fs::path placeOf(const fs::path& folder) {
    if (folder.empty()) {
        throw SiteError("the name of the site's folder is empty");
    }
    fs::path place = fs::weakly_canonical(fs::absolute(folder));
    if (!place.has_filename()) {
        place = place.parent_path();
    }
    if (!fs::is_directory(place.parent_path())) {
        throw SiteError(place.parent_path().string() +
                        " is no folder, so no site can be made in it");
    }
    if (fs::exists(fs::symlink_status(place))) {
        if (!fs::is_directory(place)) {
            throw SiteError(place.string() + " exists and is no folder");
        }
        if (!fs::is_empty(place)) {
            throw SiteError(place.string() +
                            " is not empty; a site is only made in a new or empty folder");
        }
    }
    return place;
}

/// What a folder that is simply made here would be allowed to.
fs::perms permissionsFor(const fs::path& place, const fs::path& madeInside) {
    return fs::is_directory(place) ? fs::status(place).permissions()
                                   : fs::status(madeInside).permissions();
}

void writeText(const fs::path& path, const std::string& text) {
    std::ofstream file(path, std::ios::binary);
    file << text;
    file.close();
    if (!file) {
        throw SiteError("cannot write " + path.string());
    }
}

/// A location list begins with a number that is not looked up and ends with a comma: a location is
/// found between two commas.
std::string printerMap() {
    std::string text;
    for (const Group& group : groups()) {
        text += "0,";
        for (const Location& location : locations()) {
            if (location.locGrp == group.locGrp) {
                text += std::to_string(location.loc) + ",";
            }
        }
        text += group.locGrp == 3 ? "\r\n" : ";" + std::string(group.name) + " Printer\r\n";
    }
    return text;
}

std::string missingPhotos(const std::vector<Person>& people) {
    std::string text;
    for (const Person& person : people) {
        if (person.photo.state == PhotoState::Missing) {
            text += person.photo.fileName + "\n";
        }
    }
    return text;
}

std::string settingsText(const SiteOptions& options) {
    return std::string("[Site]\nDatabase=") +
           (options.database.empty() ? databaseFile : options.database) + "\nData=" + dataFolder +
           "\nTexts=Texts\n";
}

void writeFiles(const fs::path& root, const SiteOptions& options, const PhotoMaker& photos) {
    const fs::path data = root / dataFolder;
    fs::create_directories(data / imagesFolder);
    fs::create_directory(root / reportsFolder);
    writeReportFiles(root / reportsFolder);
    fs::create_directory(root / errorsFolder);
    const Persons persons(options.seed, options.photos);
    std::vector<Person> people;
    for (int id = 1; id <= std::min(options.names, options.photos); ++id) {
        people.push_back(persons.person(id));
    }
    photos(data / imagesFolder, people);
    options.checkpoint();
    writeText(data / printerMapFile, printerMap());
    writeText(data / missingPhotosFile, missingPhotos(people));
}

} // namespace

RowCounts makeSite(const fs::path& folder, const SiteOptions& options, const PhotoMaker& photos) {
    const fs::path place = placeOf(folder);
    removeAbandoned(place);
    UnfinishedFolder unfinished(place);
    const fs::path& root = unfinished.path();
    const std::string database =
        options.database.empty() ? (root / databaseFile).string() : options.database;
    std::unique_ptr<SiteLoader> loader;
    if (!options.database.empty()) {
        // A server that cannot take the site should say so before the photos are drawn.
        loader = newLoader(database);
    }
    writeFiles(root, options, photos);
    loader = loader ? std::move(loader) : newLoader(database);
    fillSite(*loader, options);
    options.checkpoint();
    loader->commit();
    loader.reset();
    SiteDatabase filled(database, SiteDatabase::Access::Read);
    RowCounts counts = countRows(filled);
    // Last, so that a folder left by a lost machine is no site.
    writeText(root / settingsFile, settingsText(options));
    unfinished.moveTo(place, permissionsFor(place, root / dataFolder));
    return counts;
}

} // namespace kintar::site
