#include "reports/objInRpt.h"

namespace kintar {

void objInRpt::Create(std::int32_t loc, Completion completion) {
    turns_.take(
        [self = self_, loc, completion = std::move(completion)](const ReportTurns::Turn& turn) {
            if (objInRpt* inRpt = *self) {
                inRpt->begin(loc);
                inRpt->stepLater(turn, completion);
            }
        });
}

void objInRpt::stepLater(const ReportTurns::Turn& turn, const Completion& completion) {
    loop_.later([self = self_, turn, completion] {
        objInRpt* const inRpt = *self;
        if (inRpt == nullptr) {
            return;
        }
        if (inRpt->step()) {
            inRpt->stepLater(turn, completion);
        } else {
            completion(std::nullopt);
        }
    });
}

void objInRpt::begin(std::int32_t loc) {
    build_.reset();
    try {
        const std::weak_ptr<TarnSys> system = globals_.gSys;
        build_.emplace(
            reports::InRptWorld{
                globals_.tarnRec(), globals_.gCnn(), databases_, files_, clock_, globals_.gTempPath,
                [this] {
                    if (!globals_.gSys) {
                        throw RunTimeError::objectNotSet();
                    }
                    return globals_.gSys->DataPath();
                },
                [this](const std::exception& error, std::string_view routine) {
                    globals_.reportError(error, routine);
                },
                [this, system] { return globals_.gSys && globals_.gSys == system.lock(); },
                [this] { return globals_.gSys ? globals_.gSys->newReadSession() : nullptr; }},
            loc, state_);
    } catch (const std::exception& error) {
        globals_.reportError(error, "objInRpt/Create");
    }
}

bool objInRpt::step() {
    return build_ && build_->step();
}

PublicClass objInRpt::describe(modGlobals& globals, ReportDatabases& databases,
                               platform::Files& files, const platform::Clock& clock,
                               platform::EventLoop& loop, ReportTurns& turns) {
    return ClassBuilder<objInRpt>("objInRpt", "Builds the data of the who-is-in report.")
        .methodLater("Create", &objInRpt::Create, "Loc",
                     "Builds the report database for the group of a location. Errors are reported "
                     "to the companion, never raised; the report database is absent after one.")
        .get("Printer", &objInRpt::Printer,
             "The printer that the printer map names for the location; empty where none.")
        .creates([&](ObjectSignals&) {
            return std::make_unique<objInRpt>(globals, databases, files, clock, loop, turns);
        })
        .build();
}

} // namespace kintar
