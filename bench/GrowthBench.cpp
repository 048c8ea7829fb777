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
#include <memory>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

namespace {

using namespace kintar;
using namespace kintar::bench;

constexpr const char* rareSearch = "three letters, 100 found";
constexpr const char* sharedSearch = "three letters, 0.6 % found";
constexpr const char* fullName = "full name";
constexpr const char* board = "board of 1000 holders";
constexpr const char* wholeBoard = "board of all names";
constexpr const char* report = "who-is-in report";
constexpr const char* eventMedian = "event to photo";
constexpr const char* event95 = "event to photo, 95 %";
constexpr int boardHolders = 1000;

struct Plan {
    std::vector<int> sizes{1000, 10000};
    std::vector<int> workstations{50}; ///< besides one
    std::chrono::seconds alone{20};    ///< how long one workstation's events are counted
    std::chrono::seconds together{10}; ///< the same of several
};

Plan wholePlan() {
    return {{1000, 10000, 100000, 1000000},
            {10, 50},
            std::chrono::seconds(45),
            std::chrono::seconds(15)};
}

double percentile(std::vector<double> seconds, double share) {
    std::sort(seconds.begin(), seconds.end());
    const double place = std::ceil(share * static_cast<double>(seconds.size())) - 1;
    return seconds.at(static_cast<std::size_t>(std::max(place, 0.0)));
}

/// A kind of work whose time a workstation tells.
struct Work {
    const char* what;
    std::string line;       ///< what the workstation is asked for
    int rounds;             ///< by one workstation
    int roundsTogether = 0; ///< beside others
    int found = 0;          ///< how many names a search has to find; 0: any number
};

const std::vector<Work>& commonWork() {
    static const std::vector<Work> all{{rareSearch,
                                        std::string("search ") + GrowthSite::rareBeginning, 15, 15,
                                        GrowthSite::rareNames},
                                       {sharedSearch, "search mar", 9, 5},
                                       {fullName, "search Okafor Daniel", 15, 15, 1},
                                       {board, "refresh", 9, 5},
                                       {report, "report", 3, 1}};
    return all;
}

/// A site, and the workstations that use it.
class UsedSite {
public:
    UsedSite(Engine engine, int names, testing::PrivateCluster* server)
        : names_(names), site_(engine, names, server), stations_(site_.path(), names) {}

    [[nodiscard]] int names() const { return names_; }
    SimulatedWorkstations& stations() { return stations_; }
    SimulatedWorkstation& first() { return stations_.first(); }

    void setWorkstations(int count) { stations_.become(count, smallBoard()); }

    [[nodiscard]] std::string smallBoard() const {
        return "board " + std::to_string(names_ / boardHolders) + " " +
               std::to_string(boardHolders);
    }

    /// The first workstation does it once.
    double time(const Work& work) {
        const std::vector<double> answer = first().ask(work.line);
        if (work.found > 0 && static_cast<int>(answer.at(1)) != work.found) {
            throw std::runtime_error("a search found other names");
        }
        return answer.at(0);
    }

private:
    int names_;
    GrowthSite site_;
    SimulatedWorkstations stations_;
};

/// The sites of all sizes on an engine.
class EngineMeasurement {
public:
    EngineMeasurement(Figures& figures, const Plan& plan, Engine engine,
                      testing::PrivateCluster* server)
        : figures_(figures), plan_(plan), engine_(nameOf(engine)) {
        for (const int names : plan.sizes) {
            sites_.push_back(std::make_unique<UsedSite>(engine, names, server));
        }
    }

    /// One workstation on each site: in turn, so that a slow moment of the machine is all sizes'.
    void alone() {
        for (const auto& site : sites_) {
            site->setWorkstations(1);
        }
        countEventsAlone();
        for (const Work& work : commonWork()) {
            for (const auto& site : sites_) {
                site->time(work); // to warm up
            }
            measureInTurn(work);
        }
        for (const auto& site : sites_) {
            site->first().ask("board");
        }
        measureInTurn({wholeBoard, "refresh", 3});
        for (const auto& site : sites_) {
            site->first().ask(site->smallBoard());
        }
    }

    /// More and more workstations on each site, one site after the other.
    void together() {
        for (const auto& site : sites_) {
            for (const int workstations : plan_.workstations) {
                site->setWorkstations(workstations);
                countEvents(*site, workstations);
                measureBesideOthers(*site, workstations);
            }
            site->stations().keepOne();
        }
    }

private:
    /// In the same seconds, at moments that lie apart.
    void countEventsAlone() {
        double part = 0;
        for (const auto& site : sites_) {
            site->first().ask("events 20");
            site->first().ask("work " + std::to_string(part));
            part += 1.0 / static_cast<double>(sites_.size());
        }
        std::this_thread::sleep_for(plan_.alone);
        for (const auto& site : sites_) {
            addEvents(1, site->names(), site->first().ask("stop"));
        }
    }

    void countEvents(UsedSite& site, int workstations) {
        site.stations().work(0);
        std::this_thread::sleep_for(plan_.together);
        addEvents(workstations, site.names(), site.stations().stop(0));
    }

    void measureBesideOthers(UsedSite& site, int workstations) {
        site.stations().work(1);
        for (const Work& work : commonWork()) {
            std::vector<double> seconds;
            for (int round = 0; round < work.roundsTogether; ++round) {
                seconds.push_back(site.time(work));
            }
            add(work.what, workstations, site.names(), median(seconds), seconds.size());
        }
        site.stations().stop(1);
    }

    void measureInTurn(const Work& work) {
        std::vector<std::vector<double>> seconds(sites_.size());
        for (int round = 0; round < work.rounds; ++round) {
            for (std::size_t i = 0; i < sites_.size(); ++i) {
                seconds[i].push_back(sites_[i]->time(work));
            }
        }
        for (std::size_t i = 0; i < sites_.size(); ++i) {
            add(work.what, 1, sites_[i]->names(), median(seconds[i]), seconds[i].size());
        }
    }

    void addEvents(int workstations, int names, const std::vector<double>& seconds) {
        add(eventMedian, workstations, names, percentile(seconds, 0.5), seconds.size());
        add(event95, workstations, names, percentile(seconds, 0.95), seconds.size());
    }

    void add(const char* what, int workstations, int names, double seconds, std::size_t times) {
        figures_.add({engine_, what, workstations, names, seconds, static_cast<int>(times)});
    }

    Figures& figures_;
    const Plan& plan_;
    std::string engine_;
    std::vector<std::unique_ptr<UsedSite>> sites_;
};

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
            printRatio(name + ", ten times the names: " + what, figures.find(name, what, 1, last),
                       figures.find(name, what, 1, before), 1.3);
        }
        for (const char* what : {wholeBoard, report}) {
            printRatio(name + ", ten times the names: " + what, figures.find(name, what, 1, last),
                       figures.find(name, what, 1, before), static_cast<double>(last) / before);
        }
    }
    printRatio("PostgreSQL, " + std::to_string(most) + " workstations / one: " + event95,
               figures.find("PostgreSQL", event95, most, last),
               figures.find("PostgreSQL", event95, 1, last), 2.0);
}

void measure(const Plan& plan, const std::string& path) {
    Figures figures;
    EngineMeasurement(figures, plan, Engine::Sqlite, nullptr).alone();
    testing::PrivateCluster server({"max_connections=600", "shared_buffers=2GB"});
    EngineMeasurement onServer(figures, plan, Engine::Postgres, &server);
    onServer.alone();
    onServer.together();
    figures.printTables();
    printRows(figures, plan);
    if (!path.empty()) {
        figures.write(path);
    }
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
