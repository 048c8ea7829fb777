// kintar-docs: writes the documents that come from the server's own tables.
#include "host/composition/Composition.h"
#include "tools/docs/BusReference.h"
#include "tools/docs/WindowsReference.h"

#include <CLI/CLI.hpp>
#include <QApplication>

#include <exception>
#include <iostream>
#include <string>
#include <vector>

namespace {

using namespace kintar;

// The class table needs a loader to be there; writing documents loads nothing.
class NoPhotos final : public platform::PhotoLoader {
public:
    std::uint32_t load(const platform::PhotoRequest&, Done) override { return 0; }
    void cancel(std::uint32_t) override {}
};

std::string busDocument(host::Composition& parts) {
    return docs::busReference(parts.classes(), host::versionText(parts.application().version()));
}

std::string windowsDocument(host::Composition& parts) {
    const std::vector<platform::FormWindow*> forms = parts.forms();
    return docs::windowsReference({forms.begin(), forms.end()});
}

} // namespace

int main(int argc, char** argv) {
    CLI::App line("Writes documents from the server's own tables and forms to standard output.",
                  "kintar-docs");
    line.add_subcommand("bus", "docs/bus.md: the server on the bus");
    const CLI::App* windows =
        line.add_subcommand("windows", "docs/windows.md: the windows and their controls");
    line.require_subcommand(1);
    line.footer("Example: kintar-docs bus > docs/bus.md");
    try {
        line.parse(argc, argv);
    } catch (const CLI::ParseError& error) {
        return line.exit(error) == 0 ? 0 : 2;
    }
    try {
        // Forms are made, but none is shown: a document needs no display.
        qputenv("QT_QPA_PLATFORM", "offscreen");
        const QApplication application(argc, argv);
        NoPhotos photos;
        host::Composition parts(photos);
        std::cout << (windows->parsed() ? windowsDocument(parts) : busDocument(parts));
    } catch (const std::exception& error) {
        std::cerr << "kintar-docs: " << error.what() << "\n";
        return 1;
    }
    return 0;
}
