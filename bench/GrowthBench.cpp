// Cost as work grows: what workstations do, on sites of growing size, on both engines, alone and
// with others at work on the same site.
#include "GrowthFigures.h"
#include "GrowthSite.h"
#include "SimulatedWorkstations.h"

#include <QCoreApplication>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

namespace {

using namespace kintar;
using namespace kintar::bench;

constexpr const char* rareSearch = "three letters, 100 names found";
constexpr const char* sharedSearch = "three letters, 0.6 % of the names found";
constexpr const char* fullName = "full name";
constexpr const char* board = "board of 1000 holders";
constexpr const char* wholeBoard = "board of all names";
constexpr const char* report = "who-is-in report";
constexpr const char* eventMedian = "event to photo, median";
constexpr const char* event95 = "event to photo, 95th percentile";
constexpr int boardHolders = 1000;

struct Plan {
    std::vector<int> sizes{1000, 10000};
    std::vector<int> workstations{1, 10};
    int seconds = 10;     ///< how long events are counted
    int lastSeconds = 20; ///< the same at the last size
};

Plan wholePlan() {
    return {{1000, 10000, 100000, 1000000}, {1, 10, 50}, 20, 60};
}

double percentile(std::vector<double> seconds, double share) {
    std::sort(seconds.begin(), seconds.end());
    const double place = std::ceil(share * static_cast<double>(seconds.size())) - 1;
    return seconds.at(static_cast<std::size_t>(std::max(place, 0.0)));
}

/// One site, measured with more and more workstations.
class Measurement {
public:
    Measurement(Figures& figures, Engine engine, int names, testing::PrivateCluster* server)
        : figures_(figures), engine_(nameOf(engine)), names_(names), site_(engine, names, server),
          stations_(site_.path(), names) {}

    void with(int workstations, int seconds) {
        workstations_ = workstations;
        stations_.become(workstations, smallBoard());
        countEvents(seconds);
        stations_.work(1);
        measureSearches();
        measure(board, workstations == 1 ? 9 : 5, "refresh");
        measure(report, names_ >= 1000000 ? 1 : 3, "report");
        stations_.stop(1);
        if (workstations == 1) {
            stations_.first().ask("board");
            measure(wholeBoard, names_ >= 1000000 ? 1 : 3, "refresh");
            stations_.first().ask(smallBoard());
        }
    }

private:
    [[nodiscard]] std::string smallBoard() const {
        return "board " + std::to_string(names_ / boardHolders) + " " +
               std::to_string(boardHolders);
    }

    void countEvents(int seconds) {
        stations_.first().ask("events 20");
        stations_.work(0);
        std::this_thread::sleep_for(std::chrono::seconds(seconds));
        const std::vector<double> events = stations_.stop(0);
        add(eventMedian, percentile(events, 0.5), events.size());
        add(event95, percentile(events, 0.95), events.size());
    }

    void measureSearches() {
        const double found =
            measure(rareSearch, 15, std::string("search ") + GrowthSite::rareBeginning);
        if (found != GrowthSite::rareNames) {
            throw std::runtime_error("the search found other names");
        }
        measure(sharedSearch, 9, "search mar");
        measure(fullName, 15, "search Okafor Daniel");
    }

    /// The median of some rounds after a warm-up; what the last answer says besides.
    double measure(const char* what, int rounds, const std::string& line) {
        stations_.first().ask(line);
        std::vector<double> seconds;
        std::vector<double> answer;
        for (int round = 0; round < rounds; ++round) {
            answer = stations_.first().ask(line);
            seconds.push_back(answer.at(0));
        }
        add(what, median(seconds), seconds.size());
        return answer.back();
    }

    void add(const char* what, double seconds, std::size_t times) {
        figures_.add({engine_, what, workstations_, names_, seconds, static_cast<int>(times)});
    }

    Figures& figures_;
    std::string engine_;
    int names_;
    int workstations_ = 0;
    GrowthSite site_;
    SimulatedWorkstations stations_;
};

void measureEngine(Figures& figures, const Plan& plan, Engine engine,
                   testing::PrivateCluster* server, const std::string& path) {
    for (const int names : plan.sizes) {
        Measurement measurement(figures, engine, names, server);
        for (const int workstations : plan.workstations) {
            // The embedded engine serves one workstation.
            if (workstations == 1 || engine == Engine::Postgres) {
                measurement.with(workstations,
                                 names == plan.sizes.back() ? plan.lastSeconds : plan.seconds);
            }
        }
        if (!path.empty()) {
            figures.write(path);
        }
    }
}

void printRatio(const std::string& what, const Figure* measured, const Figure* limit, double aim) {
    if (measured == nullptr || limit == nullptr) {
        return;
    }
    char text[32];
    std::snprintf(text, sizeof text, "<= %.2f", aim);
    const double ratio = measured->seconds / limit->seconds;
    printRow(what, measured->seconds, limit->seconds, ratio, text, ratio <= aim);
}

void printRows(const Figures& figures, const Plan& plan) {
    const int last = plan.sizes.back();
    const int before = plan.sizes.at(plan.sizes.size() - 2);
    const int most = plan.workstations.back();
    std::puts("");
    for (const Engine engine : {Engine::Sqlite, Engine::Postgres}) {
        const std::string name = nameOf(engine);
        for (const char* what : {rareSearch, fullName, eventMedian, event95}) {
            printRatio(name + ": " + what + ", ten times the names",
                       figures.find(name, what, 1, last), figures.find(name, what, 1, before), 1.3);
        }
        for (const char* what : {wholeBoard, report}) {
            printRatio(name + ": " + what + ", ten times the names",
                       figures.find(name, what, 1, last), figures.find(name, what, 1, before),
                       static_cast<double>(last) / before);
        }
    }
    printRatio("PostgreSQL: " + std::to_string(most) + " workstations / one, " + event95,
               figures.find("PostgreSQL", event95, most, last),
               figures.find("PostgreSQL", event95, 1, last), 2.0);
}

void measure(const Plan& plan, const std::string& path) {
    Figures figures;
    measureEngine(figures, plan, Engine::Sqlite, nullptr, path);
    testing::PrivateCluster server({"max_connections=600", "shared_buffers=2GB"});
    measureEngine(figures, plan, Engine::Postgres, &server, path);
    figures.printTables();
    printRows(figures, plan);
}

} // namespace

/// `--whole`: all sizes and numbers of workstations, which takes some ten minutes. `--figures
/// FILE`: the figures go there, too.
int main(int argc, char** argv) {
    const QCoreApplication application(argc, argv);
    Plan plan;
    std::string path;
    for (int i = 1; i < argc; ++i) {
        if (std::strcmp(argv[i], "--whole") == 0) {
            plan = wholePlan();
        } else if (std::strcmp(argv[i], "--figures") == 0 && i + 1 < argc) {
            path = argv[++i];
        }
    }
    return runBench("growth_bench", [&] { measure(plan, path); });
}
