// Setting a property of the server beside pinging it: same server, same client, in turn.
#include "Beside.h"
#include "ServedSite.h"

namespace {

using namespace kintar;

constexpr int callsInARound = 3000;
constexpr int rounds = 15;
constexpr double aim = 0.9;

void callOften(host::BusClient& client, const std::function<host::BusMessage()>& message) {
    for (int i = 0; i < callsInARound; ++i) {
        sd_bus_message* answer = nullptr;
        if (sd_bus_call(client.bus(), message().get(), UINT64_MAX, nullptr, &answer) < 0) {
            throw std::runtime_error("a call failed");
        }
        sd_bus_message_unref(answer);
    }
}

} // namespace

int main() {
    const bench::ServedSite site;
    host::BusClient client(site.address());
    const std::string photo = client.create("objKintar");
    const std::string interface = host::interfaceAt(photo);
    const auto set = [&] {
        callOften(client, [&] {
            return client.message(photo, host::propertiesInterface, "Set", "ssv", interface.c_str(),
                                  "LocGrp", "i", 3);
        });
    };
    const auto ping = [&] {
        callOften(client, [&] { return client.message(photo, host::peerInterface, "Ping"); });
    };
    set();
    ping();
    std::vector<double> sets;
    std::vector<double> pings;
    std::vector<double> ratios;
    for (int round = 0; round < rounds; ++round) {
        sets.push_back(bench::secondsOf(set));
        pings.push_back(bench::secondsOf(ping));
        ratios.push_back(pings.back() / sets.back());
    }
    const double ratio = bench::median(ratios);
    bench::printRow("property Set, its rate against Ping (a call)",
                    bench::median(sets) / callsInARound, bench::median(pings) / callsInARound,
                    ratio, ">= 0.90", ratio >= aim);
    return 0;
}
