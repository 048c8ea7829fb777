#include "host/composition/Composition.h"

#include "display/objImageType.h"
#include "display/objKintar.h"
#include "platform/SystemLocale.h"
#include "server/objSysPath.h"

#include <utility>

namespace kintar::host {

Composition::Composition(platform::PhotoLoader& photos)
    : formats_(platform::systemLocaleFormats()), companion_(log_, notices_),
      globals_(companion_, application_, temporaryFolders_), zones_(clock_),
      display_({globals_, application_, settings_, files_, clock_, windows_, photos, formats_}),
      alarm_(globals_, windows_, settings_),
      reports_(
          {globals_, application_, files_, clock_, printers_, loop_, reportDatabases_, formats_}),
      selection_({globals_, clock_, settings_, formats_}),
      nameSearch_({globals_, application_, settings_, windows_, photos, browser_, formats_, {}}),
      overrides_({globals_, application_, clock_, zones_, windows_, formats_}) {
    search::NameSearchNeighbours neighbours;
    neighbours.showCriteria = [this](std::int32_t locGrp, search::CalledFrom& opener) -> QWidget& {
        return selection_.showCriteria(locGrp, opener);
    };
    neighbours.showBoard = [this](std::int32_t locGrp, const std::string& sql, bool showUdfs) {
        selection_.showBoard(locGrp, sql, showUdfs);
    };
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
    table.add(overrides_.describeOverride());
    table.add(overrides_.describeOvrSchedule());
    table.add(reports_.publicClass());
    table.add(objSysPath::describe(globals_));
    table.add(objImageType::describe());
    return table;
}

std::vector<platform::FormWindow*> Composition::forms() {
    return {&display_.kintar().get(),        &nameSearch_.place().get(),  &alarm_.popUp().get(),
            &overrides_.ovrSchedule().get(), &selection_.selName().get(), &selection_.inOut().get(),
            &reports_.prnRpt().get()};
}

std::string versionText(const platform::Application::Version& version) {
    return std::to_string(version.major) + "." + std::to_string(version.minor) + "." +
           std::to_string(version.revision);
}

} // namespace kintar::host
