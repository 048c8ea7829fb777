// kintar-docs: writes the documents that come from the server's own tables.
#include "host/composition/Composition.h"
#include "tools/docs/BusReference.h"

#include <CLI/CLI.hpp>
#include <QCoreApplication>

#include <exception>
#include <iostream>

namespace {

using namespace kintar;

// The class table needs a loader to be there; writing documents loads nothing.
class NoPhotos final : public platform::PhotoLoader {
public:
    std::uint32_t load(const platform::PhotoRequest&, Done) override { return 0; }
    void cancel(std::uint32_t) override {}
};

} // namespace

int main(int argc, char** argv) {
    CLI::App line("Writes documents from the server's own tables to standard output.",
                  "kintar-docs");
    line.add_subcommand("bus", "docs/bus.md: the server on the bus");
    line.require_subcommand(1);
    line.footer("Example: kintar-docs bus > docs/bus.md");
    try {
        line.parse(argc, argv);
    } catch (const CLI::ParseError& error) {
        return line.exit(error) == 0 ? 0 : 2;
    }
    try {
        const QCoreApplication application(argc, argv);
        NoPhotos photos;
        host::Composition parts(photos);
        std::cout << docs::busReference(parts.classes(),
                                        host::versionText(parts.application().version()));
    } catch (const std::exception& error) {
        std::cerr << "kintar-docs: " << error.what() << "\n";
        return 1;
    }
    return 0;
}
