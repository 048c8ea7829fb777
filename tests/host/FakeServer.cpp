// A server of fake classes: FakeServer GRACE-MILLISECONDS [OBJECTS-PER-CLIENT [LOG]]
// At its end it writes what happened to LOG, else to its standard output.
#include "host/BusHost.h"
#include "host/FakeClasses.h"
#include "host/TerminationSignals.h"

#include <QCoreApplication>

#include <cstdio>
#include <cstdlib>
#include <exception>
#include <fstream>

int main(int argc, char** argv) {
    using namespace kintar;
    setenv("QT_NO_GLIB", "1", 1);
    QCoreApplication application(argc, argv);
    host::FakeWorld world;
    const ClassTable table = host::fakeClasses(world);
    int status = 0;
    host::HostOptions options;
    options.version = "1.2.3";
    options.grace = std::chrono::milliseconds(argc > 1 ? std::atoi(argv[1]) : 10000);
    options.instancesPerClient = argc > 2 ? static_cast<std::size_t>(std::atoi(argv[2])) : 4096;
    options.log = [](const std::string& text) { std::fprintf(stderr, "%s\n", text.c_str()); };
    options.finished = [&status](int result) {
        status = result;
        QCoreApplication::exit(result);
    };
    try {
        host::BusHost host(table, options);
        const host::TerminationSignals termination([&host] {
            host.stop();
            QCoreApplication::exit(0);
        });
        host.start();
        std::printf("ready\n");
        std::fflush(stdout);
        QCoreApplication::exec();
        host.endAll();
    } catch (const std::exception& error) {
        std::fprintf(stderr, "%s\n", error.what());
        return 1;
    }
    if (argc > 3) {
        std::ofstream(argv[3]) << world.log << "\n";
    } else {
        std::printf("%s\n", world.log.c_str());
    }
    return status;
}
