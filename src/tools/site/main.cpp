// kintar-site: makes sites with invented data and says what is wrong with a site.

#include "platform/SystemClock.h"
#include "platform/SystemZones.h"
#include "tools/site/CardFeed.h"
#include "tools/site/Interruption.h"
#include "tools/site/PhotoWriter.h"
#include "tools/site/SiteCheck.h"
#include "tools/site/SiteCopy.h"
#include "tools/site/SiteError.h"
#include "tools/site/SiteMaker.h"
#include "tools/site/SiteSettings.h"
#include "tools/site/SiteSummary.h"

#include <CLI/CLI.hpp>
#include <QCoreApplication>

#include <ctime>
#include <exception>
#include <filesystem>
#include <iostream>
#include <optional>
#include <string>

namespace {

using kintar::DateTime;
namespace site = kintar::site;

struct CreateArguments {
    std::string folder;
    site::SiteOptions options;
    std::string now;
    bool json = false;
};

/// The present local time, cut down to the hour: two sites made soon after one another are equal.
DateTime presentHour() {
    const std::time_t seconds = std::time(nullptr);
    std::tm local{};
    localtime_r(&seconds, &local);
    return DateTime::fromFields(local.tm_year + 1900, local.tm_mon + 1, local.tm_mday,
                                local.tm_hour)
        .value_or(DateTime());
}

CLI::App* addCreate(CLI::App& program, CreateArguments& arguments) {
    CLI::App* create = program.add_subcommand("create", "Make a site with invented data");
    create->add_option("DIR", arguments.folder, "Folder of the site: new, or empty")->required();
    create->add_option("--names", arguments.options.names, "How many persons")
        ->check(CLI::Range(0, site::mostNames))
        ->capture_default_str();
    create->add_option("--database", arguments.options.database,
                       "Keep the data on a database server: postgresql://host/name of an empty "
                       "database (passwords belong into ~/.pgpass)");
    create->add_option("--seed", arguments.options.seed, "Another seed, other data")
        ->capture_default_str();
    create->add_option("--photos", arguments.options.photos, "Only the first so many have photos")
        ->check(CLI::Range(0, site::mostNames))
        ->capture_default_str();
    create->add_option("--now", arguments.now,
                       "Moment before which cards were used, as 2012-03-14T17:00:00 "
                       "(default: the present hour)");
    create->add_flag("--json", arguments.json, "Say what was made as one JSON object");
    create->footer("The same seed, counts and --now give the same site, byte by byte.\n"
                   "Example: kintar-site create /tmp/site --names 2000 --seed 7");
    return create;
}

int runCreate(CreateArguments& arguments) {
    std::optional<DateTime> now = presentHour();
    if (!arguments.now.empty()) {
        now = DateTime::fromIso(arguments.now);
        if (!now) {
            throw site::SiteError("--now: '" + arguments.now +
                                  "' is no moment such as 2012-03-14T17:00:00");
        }
    }
    arguments.options.now = *now;
    site::noteInterruptions();
    arguments.options.checkpoint = site::throwIfInterrupted;
    const auto photos = [&options = arguments.options](const std::filesystem::path& folder,
                                                       const std::vector<site::Person>& people) {
        site::writePhotos(folder, people, options.seed, options.checkpoint);
    };
    site::SiteSummary summary{arguments.folder, arguments.options, {}};
    summary.counts = site::makeSite(arguments.folder, arguments.options, photos);
    std::cout << (arguments.json ? summaryJson(summary) : summaryText(summary)) << std::flush;
    return 0;
}

struct FeedArguments {
    std::string folder;
    int person = 0;
    int count = 200;
    std::uint64_t seed = 1;
};

CLI::App* addFeed(CLI::App& program, FeedArguments& arguments) {
    CLI::App* feed = program.add_subcommand(
        "feed", "Print a site's operators and points, and invented card events");
    feed->add_option("DIR", arguments.folder, "Folder of the site")->required();
    feed->add_option("--person", arguments.person, "Only one event, of the person with this ID");
    feed->add_option("--count", arguments.count, "How many events")
        ->check(CLI::Range(1, 100000))
        ->capture_default_str();
    feed->add_option("--seed", arguments.seed, "Another seed, other events")->capture_default_str();
    feed->footer("One JSON object a line.");
    return feed;
}

int runFeed(const FeedArguments& arguments, bool onePerson) {
    site::Findings findings;
    const std::optional<site::SiteSettings> settings =
        site::readSettings(arguments.folder, findings);
    if (!settings) {
        throw site::SiteError(arguments.folder + " is no site: " + findings.lines().front());
    }
    site::SiteDatabase database(settings->database, site::SiteDatabase::Access::Read);
    site::CardFeed feed(database, arguments.seed);
    if (onePerson) {
        const std::optional<site::CardEvent> event = feed.eventOf(arguments.person);
        if (!event) {
            throw site::SiteError(arguments.folder + " has no person " +
                                  std::to_string(arguments.person));
        }
        std::cout << feedLine(*event) << std::flush;
        return 0;
    }
    for (const site::FeedOperator& who : feed.operators()) {
        std::cout << feedLine(who);
    }
    for (const site::FeedPoint& point : feed.points()) {
        std::cout << feedLine(point);
    }
    for (const site::CardEvent& event : feed.events(arguments.count)) {
        std::cout << feedLine(event);
    }
    std::cout.flush();
    return 0;
}

int runCheck(const std::string& folder) {
    const std::vector<std::string> findings = site::checkSite(folder, [](const std::string& zone) {
        const kintar::platform::SystemClock clock;
        return kintar::platform::SystemZones(clock).open(zone).has_value();
    });
    for (const std::string& finding : findings) {
        std::cout << finding << '\n';
    }
    if (findings.empty()) {
        std::cout << folder << ": nothing is wrong\n";
    }
    std::cout.flush();
    return findings.empty() ? 0 : 1;
}

struct CopyArguments {
    std::string from;
    std::string to;
};

CLI::App* addCopy(CLI::App& program, CopyArguments& arguments) {
    CLI::App* copy = program.add_subcommand(
        "copy", "Copy a site's data to another database and compare both row by row");
    copy->add_option("FROM", arguments.from, "Folder of a site, a database file, or postgresql://…")
        ->required();
    copy->add_option("TO", arguments.to, "A new database file, or postgresql://… of an empty one")
        ->required();
    copy->footer("Interrupted, it can be run again and goes on where it ended. FROM is only read; "
                 "name TO in\nkintar3.ini afterwards. Passwords belong into ~/.pgpass.");
    return copy;
}

/// The database of a site where a folder is named.
std::string databaseOf(const std::string& named) {
    if (!std::filesystem::is_directory(named)) {
        return named;
    }
    site::Findings findings;
    const auto settings = site::readSettings(named, findings);
    if (!settings) {
        throw site::SiteError(named + " is no site: " + findings.lines().front());
    }
    return settings->database;
}

int runCopy(const CopyArguments& arguments) {
    site::noteInterruptions();
    const site::CopyOptions options{
        site::throwIfInterrupted, [](const std::string& line) { std::cout << line << std::endl; }};
    try {
        const site::CopyOutcome outcome =
            site::copySite(databaseOf(arguments.from), arguments.to, options);
        long long rows = 0;
        for (const auto& [table, count] : outcome.rows) {
            rows += count;
        }
        for (const std::string& table : outcome.leftOut) {
            std::cout << "left out: " << table << ", which is no table of a site\n";
        }
        std::cout << rows << " rows in " << outcome.rows.size() << " tables are equal on both sides"
                  << std::endl;
    } catch (const site::Interrupted& interrupted) {
        std::cerr << "kintar-site: interrupted; the same command goes on where it ended\n";
        site::endBy(interrupted.signal());
    }
    return 0;
}

int run(int argc, char** argv) {
    CLI::App program("Makes sites with invented data, and says what is wrong with a site.");
    program.require_subcommand(1);
    CreateArguments create;
    const CLI::App* createCommand = addCreate(program, create);
    std::string checkedFolder;
    CLI::App* checkCommand = program.add_subcommand("check", "Say what is wrong with a site");
    checkCommand->add_option("DIR", checkedFolder, "Folder of the site")->required();
    checkCommand->footer("One finding a line. Exit status 0: nothing is wrong; 1: there are "
                         "findings; 2: wrong usage.");
    FeedArguments feed;
    const CLI::App* feedCommand = addFeed(program, feed);
    CopyArguments copy;
    const CLI::App* copyCommand = addCopy(program, copy);
    try {
        program.parse(argc, argv);
    } catch (const CLI::ParseError& error) {
        const int status = program.exit(error);
        return status == 0 ? 0 : 2;
    }
    if (copyCommand->parsed()) {
        return runCopy(copy);
    }
    if (feedCommand->parsed()) {
        return runFeed(feed, feedCommand->count("--person") > 0);
    }
    return createCommand->parsed() ? runCreate(create) : runCheck(checkedFolder);
}

} // namespace

int main(int argc, char** argv) {
    try {
        // Image plugins are looked for beside it and in the paths that it knows.
        const QCoreApplication application(argc, argv);
        return run(argc, argv);
    } catch (const site::Interrupted& interrupted) {
        std::cerr << "kintar-site: interrupted; nothing was left\n";
        site::endBy(interrupted.signal());
    } catch (const std::exception& error) {
        std::cerr << "kintar-site: " << error.what() << '\n';
        return 2;
    }
}
