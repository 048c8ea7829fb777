#include "host/composition/Composition.h"

#include "display/objImageType.h"
#include "display/objKintar.h"
#include "platform/SystemLocale.h"
#include "server/objSysPath.h"

#include <utility>

namespace kintar::host {

Composition::Composition(platform::PhotoLoader& photos)
    : companion_(log_, notices_), globals_(companion_, application_, temporaryFolders_),
      display_({globals_, application_, settings_, files_, clock_, windows_, photos,
                platform::systemLocaleFormats()}),
      alarm_(globals_, windows_, settings_),
      reports_({globals_, application_, files_, clock_, printers_, loop_, reportDatabases_,
                platform::systemLocaleFormats()}),
      nameSearch_({globals_,
                   application_,
                   settings_,
                   windows_,
                   photos,
                   browser_,
                   platform::systemLocaleFormats(),
                   {}}) {
    search::NameSearchNeighbours neighbours;
    neighbours.print = [this](std::int16_t request, std::int32_t loc, PrintProgress progress,
                              PrintEnded ended) {
        reports_.print({static_cast<PrintRequest>(request), loc}, std::move(progress),
                       std::move(ended));
    };
    nameSearch_.setNeighbours(std::move(neighbours));
}

ClassTable Composition::classes() {
    ClassTable table;
    table.add(objKintar::describe(display_));
    table.add(nameSearch_.describe());
    table.add(alarm_.publicClass());
    table.add(reports_.publicClass());
    table.add(objSysPath::describe(globals_));
    table.add(objImageType::describe());
    return table;
}

std::string versionText(const platform::Application::Version& version) {
    return std::to_string(version.major) + "." + std::to_string(version.minor) + "." +
           std::to_string(version.revision);
}

} // namespace kintar::host
