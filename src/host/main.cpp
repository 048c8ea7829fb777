// kintar3: the server of windows, started by the session bus when somebody calls it.
#include "host/BusHost.h"
#include "host/TerminationSignals.h"
#include "host/composition/Composition.h"
#include "platform/qt/PhotoWorkerPool.h"

#include <CLI/CLI.hpp>
#include <QApplication>

#include <cstdio>
#include <cstdlib>
#include <exception>
#include <optional>

namespace {

using namespace kintar;

// What the command line ends with, where it does not ask for a server.
std::optional<int> readCommandLine(int argc, char** argv) {
    CLI::App line("Kintar3, the server of windows of an access-control workstation.\n"
                  "The session bus starts it when net.tarnholm.Kintar3 is called; it ends by\n"
                  "itself 10 seconds after its last object has gone.",
                  "kintar3");
    line.set_version_flag("--version",
                          "kintar3 " + host::versionText(platform::WindowApplication().version()));
    line.footer("Environment:\n"
                "  KINTAR3_APP_DIR   the application's folder (default: that of the program)\n"
                "Exit status: 0 ended in order, 1 the bus, its name or the display could not be\n"
                "had, 2 wrong arguments.");
    try {
        line.parse(argc, argv);
    } catch (const CLI::ParseError& error) {
        return line.exit(error) == 0 ? 0 : 2;
    }
    return std::nullopt;
}

// The toolkit aborts where it finds no display; a person who starts a server by hand, or a bus that
// does not know the display, gets a sentence instead.
bool hasDisplay() {
    for (const char* name : {"DISPLAY", "WAYLAND_DISPLAY", "QT_QPA_PLATFORM"}) {
        const char* value = std::getenv(name);
        if (value && *value) {
            return true;
        }
    }
    return false;
}

int serve(host::Composition& parts) {
    const ClassTable table = parts.classes();
    int status = 0;
    host::HostOptions options;
    options.version = host::versionText(parts.application().version());
    options.log = [&parts](const std::string& text) {
        parts.log().write(companion::LogLevel::Error, text);
    };
    options.finished = [&status](int result) {
        status = result;
        QCoreApplication::exit(result);
    };
    host::BusHost host(table, options);
    const host::TerminationSignals termination([&host] {
        host.stop();
        QCoreApplication::exit(0);
    });
    parts.application().setPendingMessagesGate([&host] { host.closeGate(); },
                                               [&host] { host.openGate(); });
    host.start();
    QCoreApplication::exec();
    host.endAll();
    parts.application().setPendingMessagesGate(nullptr, nullptr);
    return status;
}

} // namespace

int main(int argc, char** argv) {
    if (const std::optional<int> status = readCommandLine(argc, argv)) {
        return *status;
    }
    if (!hasDisplay()) {
        std::fprintf(stderr, "kintar3: there is no display (DISPLAY and WAYLAND_DISPLAY are not "
                             "set in the environment of the session bus)\n");
        return 1;
    }
    // The toolkit's other event loop halves the rate of the bus.
    setenv("QT_NO_GLIB", "1", 1);
    QApplication application(argc, argv);
    QApplication::setApplicationName(QStringLiteral("Kintar3"));
    // Windows come and go; objects keep the server.
    QApplication::setQuitOnLastWindowClosed(false);
    try {
        platform::PhotoWorkerPool photos(platform::photoWorkerProgram());
        host::Composition parts(photos);
        return serve(parts);
    } catch (const std::exception& error) {
        std::fprintf(stderr, "kintar3: %s\n", error.what());
        return 1;
    }
}
