// A whole workstation on a private bus, with a recording server and a toy feed.
#pragma once

#include "demo/WorkstationWindow.h"
#include "FakeServer.h"
#include "ToyFeed.h"

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
    demo::WorkstationWindow window{feed, link};
};

} // namespace kintar::testing
