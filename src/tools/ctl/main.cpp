// kintarctl: the server's common calls for people and scripts.
#include "host/BusNames.h"
#include "tools/ctl/AlarmCommand.h"
#include "tools/ctl/OverridesCommand.h"
#include "tools/ctl/PhotoCommand.h"
#include "tools/ctl/PickNameCommand.h"
#include "tools/ctl/PrintCommand.h"
#include "tools/ctl/RawLine.h"
#include "tools/ctl/RawSession.h"
#include "tools/ctl/ServerClient.h"

#include <CLI/CLI.hpp>

#include <csignal>
#include <iostream>
#include <memory>
#include <optional>
#include <string>

namespace {

using namespace kintar::ctl;

volatile std::sig_atomic_t interrupted = 0;

void interrupt(int) {
    interrupted = 1;
}

// No SA_RESTART: waiting on the bus is to end.
void watchForInterrupts() {
    struct sigaction action {};
    action.sa_handler = interrupt;
    sigaction(SIGINT, &action, nullptr);
    sigaction(SIGTERM, &action, nullptr);
}

constexpr const char* closing =
    "Ending an object of the server closes all windows of the server, also those of other\n"
    "programs: that is how the server works. So this command holds its objects until then.\n";

constexpr const char* examples =
    "Examples:\n"
    "  kintarctl classes\n"
    "  kintarctl photo --id 17 --locgrp 1 --fname Ada --lname Byron --event Granted --for 30\n"
    "  kintarctl overrides --point 101 --name 'Dock door' --loc Lisbon --opr Ann --oprid 1\n"
    "  kintarctl pick-name --locgrp 1 --locname 'Head Office' --opr 1\n"
    "  printf 'create objKintar as k\\nset k LocGrp 1\\nset k ID 17\\nwait 5000\\n' | kintarctl "
    "raw\n"
    "\n"
    "Exit status: 0 done; 1 a call was answered with an error, or the server has gone; 2 wrong\n"
    "arguments, or a line of raw that is none; 3 there is no session bus. Results go to standard\n"
    "output, errors to standard error with their name on the bus.\n";

constexpr const char* holdFor = "hold the window for SECONDS, then end";

struct Options {
    std::int32_t id = 0;
    std::optional<std::int32_t> locGrp;
    std::optional<std::int32_t> opr;
    std::optional<double> seconds;
    std::optional<std::string> locName, fName, lName, device, event, dateTime, code;
    OverridesRequest overrides;
    PickNameRequest pickName;
    AlarmRequest alarm;
    std::optional<std::int32_t> loc;
    bool stopAtError = false;
    std::string path = kintar::host::rootPath;
};

void addSeconds(CLI::App& command, Options& options, const char* meaning) {
    command.add_option("--for", options.seconds, meaning)
        ->check(CLI::NonNegativeNumber)
        ->type_name("SECONDS");
}

void addPhoto(CLI::App& line, Options& options) {
    CLI::App* photo = line.add_subcommand("photo", "show the photo for a card event");
    photo->add_option("--id", options.id, "the person's number")->required();
    photo->add_option("--locgrp", options.locGrp, "location group");
    photo->add_option("--locname", options.locName, "location name");
    photo->add_option("--fname", options.fName, "first name");
    photo->add_option("--lname", options.lName, "last name");
    photo->add_option("--device", options.device, "reader");
    photo->add_option("--event", options.event, "what happened");
    photo->add_option("--datetime", options.dateTime,
                      "when, as 2012-03-14T17:05:00 or as the server's locale writes it");
    photo->add_option("--code", options.code, "card code");
    photo->add_option("--opr", options.opr, "operator number");
    addSeconds(*photo, options, holdFor);
    photo->footer(std::string("Holds its object until Ctrl-C, or for the seconds given.\n") +
                  closing +
                  "\nExample:\n  kintarctl photo --id 17 --locgrp 1 --lname Byron --for 30\n");
}

void addOverrides(CLI::App& line, Options& options) {
    OverridesRequest& request = options.overrides;
    request.commands = {"secure", "open", "timezone"};
    CLI::App* overrides =
        line.add_subcommand("overrides", "edit the scheduled overrides of a point");
    overrides->add_option("--point", request.point, "the point, or the group")->required();
    overrides->add_option("--type", request.type,
                          "0 door or output, 1 input, 2 group of doors or outputs, 3 group of "
                          "inputs (default: 0)");
    overrides->add_option("--name", request.pointName, "the point's name");
    overrides->add_option("--loc", request.locName, "the location's name");
    overrides->add_option("--opr", request.oprName, "the operator's name");
    overrides->add_option("--oprid", request.oprId, "the operator's number");
    overrides
        ->add_option("--commands", request.commands,
                     "what the point accepts (default: secure,open,timezone)")
        ->delimiter(',')
        ->check(CLI::IsMember(overrideCommandWords()));
    addSeconds(*overrides, options, holdFor);
    overrides->footer(
        std::string(
            "Returns when the editor has closed, at Ctrl-C, or after the seconds given.\n") +
        closing +
        "\nExample:\n  kintarctl overrides --point 102 --type 1 --name 'Dock sensor' --loc Lisbon "
        "--opr Ann \\\n      --oprid 1 --commands secure,open,timezone,arm,bypass\n");
}

void addPickName(CLI::App& line, Options& options) {
    PickNameRequest& request = options.pickName;
    CLI::App* pick = line.add_subcommand("pick-name", "let the operator pick a person");
    pick->add_option("--locgrp", request.locGrp, "location group")->required();
    pick->add_option("--locname", request.locName, "name at the start of the title");
    pick->add_option("--opr", request.oprId, "operator number");
    pick->add_option("--mode", request.mode,
                     "0 browse, 1 pick, 2 pick who owns a guard-tour card (default: 1)");
    addSeconds(*pick, options, "give up after SECONDS");
    pick->footer(std::string("Prints the number and the name, a tab between. Exit status 1 where\n"
                             "nobody was picked: Cancel, Ctrl-C, or the seconds have passed.\n") +
                 closing +
                 "\nExample:\n  kintarctl pick-name --locgrp 1 --locname 'Head Office' --opr 1\n");
}

void addAlarm(CLI::App& line, Options& options) {
    AlarmRequest& request = options.alarm;
    CLI::App* alarm = line.add_subcommand("alarm", "announce an alarm above all windows");
    alarm->add_option("text", request.text, "the alarm")->required();
    alarm->add_option("--colour", request.colour, "the text's colour (default: #C00000)");
    alarm->add_option("--locname", request.locName, "the location's name");
    alarm->add_option("--window", request.workstation,
                      "the window to go to, as the display numbers it");
    addSeconds(*alarm, options, holdFor);
    alarm->footer(std::string("Holds its object until Ctrl-C, or for the seconds given.\n") +
                  closing +
                  "\nExample:\n  kintarctl alarm 'Door forced' --locname Dock --for 30\n");
}

void addReports(CLI::App& line, Options& options) {
    CLI::App* whoIsIn = line.add_subcommand("who-is-in", "print who is in at a location's group");
    whoIsIn->add_option("LOC", options.loc, "the location's number")->required();
    CLI::App* cards = line.add_subcommand("status-report", "print the status of all cards");
    for (CLI::App* report : {whoIsIn, cards}) {
        report->footer(std::string("Returns when printing has ended; exit status 1, and why, where "
                                   "nothing was printed.\n") +
                       closing);
    }
}

void addRaw(CLI::App& line, Options& options) {
    CLI::App* raw = line.add_subcommand("raw", "carry out calls from standard input, one a line");
    raw->add_flag("--stop", options.stopAtError, "end at the first line that fails");
    raw->footer(
        std::string(rawLanguage()) +
        "\nA line that fails is reported on standard error and the next one goes on. At the\n"
        "end of the input all objects are released, the youngest first.\n" +
        closing +
        "\nExample:\n  create objKintar as k\n  set k LName \"O'Brien\"\n  set k ID 17\n"
        "  wait 5000\n");
}

void addQuestions(CLI::App& line, Options& options) {
    line.add_subcommand("classes", "print the names of the public classes");
    line.add_subcommand("version", "print the server's version");
    line.add_subcommand("introspect", "print what an object says about itself")
        ->add_option("path", options.path, "an object's path (default: the root)");
}

PhotoEvent photoEvent(const Options& options) {
    PhotoEvent event{std::to_string(options.id), {}};
    const auto add = [&event](const char* member, const auto& value) {
        if (value) {
            if constexpr (std::is_same_v<std::decay_t<decltype(*value)>, std::string>) {
                event.values.emplace_back(member, *value);
            } else {
                event.values.emplace_back(member, std::to_string(*value));
            }
        }
    };
    add("LocGrp", options.locGrp);
    add("LocName", options.locName);
    add("FName", options.fName);
    add("LName", options.lName);
    add("Device", options.device);
    add("EventDesc", options.event);
    add("DateTime", options.dateTime);
    add("Code", options.code);
    add("OprID", options.opr);
    return event;
}

int runRaw(ServerClient& client, const Options& options) {
    RawSession session(client, std::cout, std::cerr);
    const int result = session.run(std::cin, options.stopAtError);
    client.releaseAll();
    return result;
}

int run(const CLI::App& line, const Options& options) {
    ServerClient client;
    if (line.got_subcommand("photo")) {
        watchForInterrupts();
        return showPhoto(client, photoEvent(options), options.seconds,
                         [] { return interrupted != 0; });
    }
    if (line.got_subcommand("overrides")) {
        watchForInterrupts();
        return editOverrides(client, options.overrides, options.seconds,
                             [] { return interrupted != 0; });
    }
    if (line.got_subcommand("pick-name")) {
        watchForInterrupts();
        return pickName(
            client, options.pickName, options.seconds, [] { return interrupted != 0; }, std::cout);
    }
    if (line.got_subcommand("alarm")) {
        watchForInterrupts();
        return announceAlarm(client, options.alarm, options.seconds,
                             [] { return interrupted != 0; });
    }
    if (line.got_subcommand("who-is-in") || line.got_subcommand("status-report")) {
        watchForInterrupts();
        return printReport(client, options.loc, [] { return interrupted != 0; });
    }
    if (line.got_subcommand("raw")) {
        return runRaw(client, options);
    }
    if (line.got_subcommand("classes")) {
        for (const std::string& name : client.classes()) {
            std::cout << name << "\n";
        }
    } else if (line.got_subcommand("version")) {
        std::cout << client.version() << "\n";
    } else {
        std::cout << client.introspect(options.path);
    }
    return status::ok;
}

} // namespace

int main(int argc, char** argv) {
    CLI::App line("Calls of the Kintar3 server for people and scripts.", "kintarctl");
    Options options;
    addPhoto(line, options);
    addOverrides(line, options);
    addPickName(line, options);
    addAlarm(line, options);
    addReports(line, options);
    addRaw(line, options);
    addQuestions(line, options);
    line.require_subcommand(1);
    line.footer(examples);
    try {
        line.parse(argc, argv);
    } catch (const CLI::ParseError& error) {
        return line.exit(error) == 0 ? status::ok : status::wrongUsage;
    }
    try {
        return run(line, options);
    } catch (const CallError& error) {
        std::cerr << "kintarctl: " << error.name() << ": " << error.what() << "\n";
        const bool noServer = error.name() == "org.freedesktop.DBus.Error.NoServer";
        return noServer ? status::noServer : status::callFailed;
    } catch (const std::exception& error) {
        std::cerr << "kintarctl: " << error.what() << "\n";
        return status::wrongUsage;
    }
}
