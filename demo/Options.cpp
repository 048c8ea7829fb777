#include "demo/Options.h"

#include <CLI/CLI.hpp>
#include <QString>

namespace kintar::demo {

namespace {

constexpr int wrongCall = 2;

QDateTime momentOf(const std::string& text) {
    return QDateTime::fromString(QString::fromStdString(text), Qt::ISODate);
}

std::string momentProblem(const std::string& text) {
    return momentOf(text).isValid() ? "" : "no moment such as 2012-03-14T17:05:00";
}

} // namespace

std::optional<Options> readOptions(int argc, const char* const* argv, int& status) {
    Options options;
    std::string moment;
    CLI::App line("A demonstration workstation: a running feed of card events, each with its\n"
                  "photo. It calls the server over the session bus, like any client.",
                  "kintar-workstation");
    line.add_option("--site", options.site, "the site's folder")->required()->type_name("DIR");
    line.add_option("--scenario", options.scenario,
                    "do the steps in FILE (- for standard input) instead of running the feed:\n"
                    "event ID, choose ID, operator ID, pause, resume, wait-server,\n"
                    "wait-window TITLE, quit; prints 'done STEP' after each")
        ->type_name("FILE");
    line.add_option("--clock", moment, "every event happens at this moment")
        ->type_name("2012-03-14T17:05:00")
        ->check(momentProblem);
    line.footer("Example: kintar-workstation --site /srv/site\n"
                "Exit status: 0 ended by its user or the scenario, 1 a step or the site failed,\n"
                "2 wrong arguments or no display.");
    try {
        line.parse(argc, argv);
    } catch (const CLI::ParseError& error) {
        status = line.exit(error) == 0 ? 0 : wrongCall;
        return std::nullopt;
    }
    options.moment = moment.empty() ? QDateTime() : momentOf(moment);
    return options;
}

} // namespace kintar::demo
