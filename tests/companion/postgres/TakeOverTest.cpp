// A standby takes over while many workstations save.
#include "companion/DatabaseError.h"
#include "companion/Log.h"
#include "companion/Notices.h"
#include "companion/SiteCompanion.h"
#include "companion/SiteFolder.h"
#include "support/PrivateCluster.h"

#include <atomic>
#include <chrono>
#include <functional>
#include <gtest/gtest.h>
#include <memory>
#include <poll.h>
#include <set>
#include <sstream>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

namespace kintar::companion::postgres {
namespace {

constexpr int workstationCount = 20;
constexpr int fewChanges = 5;
constexpr const char* savedBy = "workstation ";

class NoLog final : public Log {
public:
    void write(LogLevel /*level*/, const std::string& /*line*/) override {}
};

class CountingNotices final : public Notices {
public:
    void writeFailed(const std::string& reason) override { failed += reason.empty() ? 0 : 1; }
    std::atomic<int> failed = 0;
};

/// A companion of its own that saves one schedule after the other, and keeps what it was told of
/// each. Schedules are told apart by their operator's text.
class Workstation {
public:
    Workstation(const SiteFolder& site, int number) : number_(number) {
        std::string path = site.path();
        bool flag = false;
        system_->Create(path, flag);
    }

    void work(const std::atomic<bool>& end) {
        for (int change = 1; !end; ++change) {
            saveOne(savedBy + std::to_string(number_) + ", change " + std::to_string(change));
        }
    }

    /// Texts of the changes that succeeded, failed, and may have been made.
    std::set<std::string> saved;
    std::set<std::string> refused;
    std::set<std::string> unknown;
    std::atomic<int> savedSoFar = 0;
    std::atomic<int> notSavedSoFar = 0;
    std::atomic<int> unknownSoFar = 0;
    std::set<std::string> unexpected;
    CountingNotices notices;

private:
    void saveOne(const std::string& text) {
        try {
            companion_.record().ExecuteSQL(
                "Insert Into OvrSchedule (PointID, PointType, StartCmd, StopCmd, StartDate, "
                "StopDate, Opr, OprID, Status) Values (" +
                    std::to_string(number_) +
                    ", 0, 1, 2, #03/14/2012 17:05:00#, #03/14/2012 18:05:00#, " +
                    companion_.record().SqlText(text) + ", 1, 1)",
                *system_->DataConnection());
            saved.insert(text);
            ++savedSoFar;
        } catch (const DatabaseError& error) {
            const bool uncertain = error.kind() == ErrorKind::OutcomeUnknown;
            (uncertain ? unknown : refused).insert(text);
            if (!uncertain && error.kind() != ErrorKind::Unreachable) {
                unexpected.insert(error.what());
            }
            unknownSoFar += uncertain ? 1 : 0;
            ++notSavedSoFar;
        }
        poll(nullptr, 0, 10); // an operator does not press again at once
    }

    int number_;
    NoLog log_;
    SiteCompanion companion_{log_, notices};
    std::shared_ptr<TarnSys> system_ = companion_.newSystem();
};

class TakeOver : public ::testing::Test {
protected:
    TakeOver() {
        // Twenty that connect anew at once may keep the servers of a slow machine busy for long.
        site.write("kintar3.ini", "[Site]\nDatabase=" + bothServers() +
                                      "\nData=Data\nConnectSeconds=30\nAnswerSeconds=30\n");
        for (int number = 1; number <= workstationCount; ++number) {
            workstations.push_back(std::make_unique<Workstation>(site, number));
        }
        for (const auto& workstation : workstations) {
            threads.emplace_back([this, &workstation] { workstation->work(end); });
        }
    }
    ~TakeOver() override { stopWork(); }

    void stopWork() {
        end = true;
        for (std::thread& thread : threads) {
            thread.join();
        }
        threads.clear();
    }
    /// The site's database on whichever of the two is the primary.
    [[nodiscard]] std::string bothServers() const {
        const std::string& one = site.database();
        return one + "," + standby->folder();
    }
    [[nodiscard]] std::string onStandby() const {
        const std::string& name = site.database();
        const std::size_t begin = name.find("@/") + 2;
        return standby->textOf(name.substr(begin, name.find('?') - begin));
    }
    void await(const std::function<bool()>& met) const {
        const auto limit = std::chrono::steady_clock::now() + std::chrono::minutes(4);
        while (!met()) {
            if (std::chrono::steady_clock::now() > limit) {
                throw std::runtime_error("waited four minutes in vain");
            }
            poll(nullptr, 0, 20);
        }
    }
    void awaitOfEach(std::atomic<int> Workstation::*count, int wanted) const {
        for (const auto& workstation : workstations) {
            await([&] { return (*workstation).*count >= wanted; });
        }
    }
    /// The primary has ended: lets the standby take over once everybody has been told.
    void takeOver() {
        awaitOfEach(&Workstation::notSavedSoFar, 1);
        standby->promote();
    }
    void expectThatWorkGoesOnAndEverybodyWasToldTheTruth() {
        for (const auto& workstation : workstations) {
            const int before = workstation->savedSoFar;
            await([&] { return workstation->savedSoFar >= before + fewChanges; });
        }
        stopWork();
        expectThatEverybodyWasToldTheTruth();
    }
    /// What the schedules of the workstations say now.
    [[nodiscard]] std::multiset<std::string> rowsOnStandby() const {
        std::istringstream texts(testing::askServer(
            onStandby(), "SELECT string_agg(Opr, chr(10)) FROM OvrSchedule WHERE Opr LIKE '" +
                             std::string(savedBy) + "%'"));
        std::multiset<std::string> rows;
        for (std::string text; std::getline(texts, text);) {
            rows.insert(text);
        }
        return rows;
    }
    void expectThatEverybodyWasToldTheTruth() {
        const std::multiset<std::string> rows = rowsOnStandby();
        std::size_t made = 0;
        for (const auto& workstation : workstations) {
            EXPECT_EQ(workstation->unexpected, std::set<std::string>());
            EXPECT_EQ(static_cast<std::size_t>(workstation->notices.failed),
                      workstation->refused.size() + workstation->unknown.size());
            for (const std::string& text : workstation->saved) {
                EXPECT_EQ(rows.count(text), 1U) << text;
            }
            for (const std::string& text : workstation->refused) {
                EXPECT_EQ(rows.count(text), 0U) << text;
            }
            made += workstation->saved.size();
            for (const std::string& text : workstation->unknown) {
                EXPECT_LE(rows.count(text), 1U) << text;
                made += rows.count(text);
            }
        }
        EXPECT_EQ(rows.size(), made);
    }

    testing::PrivateCluster primary;
    SiteFolder site{primary};
    std::unique_ptr<testing::PrivateCluster> standby = testing::PrivateCluster::standbyOf(primary);
    std::vector<std::unique_ptr<Workstation>> workstations;
    std::vector<std::thread> threads;
    std::atomic<bool> end = false;
};

TEST_F(TakeOver, OfAPrimaryThatWasStoppedHardLosesNothingAndDoesNothingTwice) {
    awaitOfEach(&Workstation::savedSoFar, fewChanges);
    primary.kill();
    takeOver();
    expectThatWorkGoesOnAndEverybodyWasToldTheTruth();
}

TEST_F(TakeOver, OfAPrimaryWithoutPowerLosesNothingAndDoesNothingTwice) {
    awaitOfEach(&Workstation::savedSoFar, fewChanges);
    primary.cutPower();
    takeOver();
    expectThatWorkGoesOnAndEverybodyWasToldTheTruth();
}

TEST_F(TakeOver, WhileChangesWaitForTheStandbyTellsThatEachMayHaveBeenMade) {
    standby->pause();
    testing::ServerConnection server(site.database());
    await([&] {
        return server.ask("SELECT count(*) FROM pg_stat_activity WHERE wait_event = 'SyncRep'") ==
               std::to_string(workstationCount);
    });
    primary.cutPower();
    awaitOfEach(&Workstation::unknownSoFar, 1);
    standby->resume();
    takeOver();
    expectThatWorkGoesOnAndEverybodyWasToldTheTruth();
}

} // namespace
} // namespace kintar::companion::postgres
