// The first call to a stopped server, from the call to its answer, beside the start of the least
// program with a window up to its first paint.
#include "Beside.h"
#include "ServedSite.h"

namespace {

using namespace kintar;

constexpr int rounds = 15;
constexpr double aim = 1.5;

double startOfBareWindow() {
    int ends[2];
    if (pipe(ends) != 0) {
        throw std::runtime_error("no pipe");
    }
    std::string line(7, '\0');
    std::unique_ptr<host::ChildProcess> window;
    const double seconds = bench::secondsOf([&] {
        window = std::make_unique<host::ChildProcess>(
            std::vector<std::string>{BARE_WINDOW},
            std::vector<std::pair<std::string, std::string>>{}, ends[1]);
        close(ends[1]);
        if (read(ends[0], line.data(), line.size()) <= 0 || line != "painted") {
            throw std::runtime_error("the bare window was not painted");
        }
    });
    close(ends[0]);
    window->wait();
    return seconds;
}

double firstCall(const bench::ServedSite& site,
                 const std::function<host::Answer(host::BusClient&)>& call) {
    host::BusClient client(site.address());
    const double seconds = bench::secondsOf([&] {
        const host::Answer answer = call(client);
        if (!answer.ok()) {
            throw std::runtime_error(answer.error + ": " + answer.text);
        }
    });
    bench::ServedSite::stopServer(client);
    return seconds;
}

void measure(const bench::ServedSite& site, const std::string& what,
             const std::function<host::Answer(host::BusClient&)>& call) {
    firstCall(site, call);
    startOfBareWindow();
    std::vector<double> calls;
    std::vector<double> windows;
    std::vector<double> ratios;
    for (int round = 0; round < rounds; ++round) {
        calls.push_back(firstCall(site, call));
        windows.push_back(startOfBareWindow());
        ratios.push_back(calls.back() / windows.back());
    }
    const double ratio = bench::median(ratios);
    bench::printRow(what, bench::median(calls), bench::median(windows), ratio, "<= 1.50",
                    ratio <= aim);
}

} // namespace

int main() {
    const bench::ServedSite site;
    measure(site, "first call to a stopped server, reading Version",
            [](host::BusClient& client) { return client.get(host::rootPath, "Version"); });
    measure(site, "first call to a stopped server, creating objKintar",
            [](host::BusClient& client) { return client.createAnswer("objKintar"); });
    return 0;
}
