// A whole workstation on a private bus, with a recording server and a toy feed.
#pragma once

#include "FakeServer.h"
#include "ToyFeed.h"
#include "demo/WorkstationWindow.h"

namespace kintar::testing {

struct Workstation {
    Workstation() {
        server.appear();
        link.start();
    }
    bool waitForProperty(const QString& entry) {
        return waitFor([&] { return server.log.contains(entry); });
    }

    PrivateBus bus;
    FakeServer server{bus.connect()};
    ToyFeed toy;
    demo::Feed feed{toy.program(), QStringLiteral("site")};
    demo::ServerLink link{bus.connect()};
    demo::NameFinder finder{bus.connect()};
    demo::WorkstationWindow window{feed, link, finder};
};

} // namespace kintar::testing
