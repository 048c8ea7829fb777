#include "tools/report/Options.h"

#include <CLI/CLI.hpp>

namespace kintar::report {
namespace {

constexpr int wrongCall = 2;

void addOutput(CLI::App& command, Options& options) {
    command.add_option("SITE", options.site, "the site's folder")->required();
    auto* pdf = command.add_option("--pdf", options.pdfFile, "write this PDF file");
    auto* printer = command.add_option("--printer", options.printer, "print on this printer");
    pdf->excludes(printer);
    command
        .add_option("--paper", options.paper, "A4 or Letter; the locale's where it is not given")
        ->check(CLI::IsMember({"A4", "Letter"}, CLI::ignore_case));
    command.add_option("--copies", options.copies, "how many copies to print")
        ->check(CLI::Range(1, 99))
        ->excludes(pdf);
}

} // namespace

std::optional<Options> readOptions(int argc, char** argv, int& status) {
    Options options;
    CLI::App line("Makes the reports of a site without the server: for a timer, or a script.\n"
                  "Without --pdf and --printer a report goes to the printer that the site's\n"
                  "printer map names, or to the system's default printer.",
                  "kintar-report");
    line.require_subcommand(1);
    line.set_version_flag("--version", "kintar-report " KINTAR_VERSION);
    CLI::App* whoIsIn = line.add_subcommand("who-is-in", "who is in at a location's group");
    whoIsIn->add_option("--loc", options.loc, "the location's number")->required();
    addOutput(*whoIsIn, options);
    CLI::App* cards = line.add_subcommand("status", "the status of all cards, by company");
    addOutput(*cards, options);
    line.footer("Examples:\n"
                "  kintar-report who-is-in /srv/site --loc 31 --pdf in.pdf\n"
                "  kintar-report status /srv/site --printer Office --copies 2\n"
                "Exit status: 0 printed or written, 1 it could not be, 2 wrong arguments.");
    try {
        line.parse(argc, argv);
    } catch (const CLI::ParseError& error) {
        status = line.exit(error) == 0 ? 0 : wrongCall;
        return std::nullopt;
    }
    options.whoIsIn = whoIsIn->parsed();
    return options;
}

} // namespace kintar::report
