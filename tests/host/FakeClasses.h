// Public classes that do nothing but what tests of the host need.
#pragma once

#include "server/ClassTable.h"

#include <functional>
#include <list>
#include <string>

namespace kintar::host {

/// What all fake objects share: a log of what happened, and what waits to be let go.
struct FakeWorld {
    std::string log;
    int lastSerial = 0;
    /// Ends the innermost box.
    std::list<std::function<void()>> openBoxes;
    std::list<Completion> completions;

    void note(const std::string& text) { log += text + ";"; }
};

/// `objPlain` has a member of every kind and type, `objWitness` tells what happened, `objBox` opens
/// a modal box while it is created, `objBroken` cannot be created, `objLater` answers later.
/// `world` outlives the table and every object.
ClassTable fakeClasses(FakeWorld& world);

} // namespace kintar::host
