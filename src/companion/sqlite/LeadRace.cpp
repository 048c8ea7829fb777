#include "companion/sqlite/LeadRace.h"

#include <algorithm>
#include <deque>
#include <functional>
#include <limits>

namespace kintar::companion::sqlite {

namespace {

// What the engine spends on a row, measured, with reading an entry and its row as the unit.
constexpr double readingCost = 1;
constexpr double listingCost = 5; ///< into the list, and from there to the row selected from
constexpr double testingCost = 9; ///< asking another table about it

/// A lead on its way. What it has begun ends with it.
class Racer {
public:
    Racer(sqlite3* database, LeadRunner& runner) : database_(database), runner_(&runner) {}
    Racer(const Racer&) = delete;
    Racer& operator=(const Racer&) = delete;
    ~Racer() {
        for (const PreparedStatement* statement :
             {&runner_->servedRows, &runner_->sample, &runner_->largestRow}) {
            sqlite3_reset(statement->handle.get());
        }
    }

    /// Counts on, to `rows` at most.
    void run(std::size_t rows) {
        while (!finished_ && rows_ < rows) {
            finished_ = !step(runner_->servedRows);
            rows_ += finished_ ? 0 : 1;
        }
    }
    /// Learns from the rows counted so far which part of the rows meets all conditions, and how
    /// many rows there can be.
    void lookAround() {
        const std::size_t seen = std::min(rows_, LeadRunner::sampledRows);
        if (seen > 0) {
            hitShare_ = numberOf(runner_->sample) / static_cast<double>(seen);
        }
        mostRows_ = std::max(numberOf(runner_->largestRow), static_cast<double>(rows_));
    }
    void setHitCost(double cost) { hitCost_ = cost; }

    [[nodiscard]] bool isFinished() const { return finished_; }
    [[nodiscard]] double leastCost() const { return costOf(static_cast<double>(rows_)); }
    [[nodiscard]] double mostCost() const { return finished_ ? leastCost() : costOf(mostRows_); }
    /// Rows that meet all conditions, at most.
    [[nodiscard]] double hits() const {
        return (finished_ ? static_cast<double>(rows_) : mostRows_) * hitShare_;
    }
    [[nodiscard]] double shareOfTable() const { return hits() / std::max(1.0, mostRows_); }
    [[nodiscard]] const dialect::InSelectTest* test() const { return runner_->test; }
    [[nodiscard]] const dialect::Expression* range() const { return runner_->range; }

private:
    [[nodiscard]] double costOf(double rows) const {
        return rows * (readingCost + hitShare_ * hitCost_);
    }
    bool step(const PreparedStatement& statement) {
        const int code = sqlite3_step(statement.handle.get());
        if (code != SQLITE_ROW && code != SQLITE_DONE) {
            throw errorOf(database_, code);
        }
        return code == SQLITE_ROW;
    }
    double numberOf(const PreparedStatement& statement) {
        return step(statement) ? sqlite3_column_double(statement.handle.get(), 0) : 0;
    }

    sqlite3* database_;
    LeadRunner* runner_;
    double hitCost_ = testingCost;
    double hitShare_ = 1;
    double mostRows_ = std::numeric_limits<double>::infinity();
    std::size_t rows_ = 0;
    bool finished_ = false;
};

class Race {
public:
    Race(sqlite3* database, std::vector<LeadRunner>& runners) {
        for (LeadRunner& runner : runners) {
            racers_.emplace_back(database, runner);
        }
    }

    dialect::SearchPlan run() {
        lap(LeadRunner::sampledRows);
        if (std::ranges::none_of(racers_, &Racer::isFinished)) {
            for (Racer& racer : racers_) {
                racer.lookAround();
            }
            std::size_t rows = LeadRunner::sampledRows;
            do {
                rows *= 2;
                setHitCosts();
            } while (lap(rows));
        }
        return plan();
    }

private:
    /// What a hit of a list costs: with several tests the others are asked too, about those that
    /// meet the conditions on the table selected from.
    void setHitCosts() {
        double passing = 1;
        const dialect::InSelectTest* test = nullptr;
        bool areSeveral = false;
        for (const Racer& racer : racers_) {
            if (racer.test() == nullptr) {
                passing = std::min(passing, racer.shareOfTable());
            } else {
                areSeveral = areSeveral || (test != nullptr && test != racer.test());
                test = racer.test();
            }
        }
        for (Racer& racer : racers_) {
            if (racer.test() != nullptr) {
                racer.setHitCost(listingCost + (areSeveral ? testingCost * passing : 0));
            }
        }
    }
    const Racer& cheapest() const {
        return *std::ranges::min_element(racers_, std::ranges::less(), &Racer::mostCost);
    }
    /// Lets each that could still be the cheapest count to `rows`. False where the cheapest is
    /// known.
    bool lap(std::size_t rows) {
        bool anyCould = false;
        for (Racer& racer : racers_) {
            const Racer& best = cheapest();
            if (!racer.isFinished() && racer.leastCost() < best.mostCost()) {
                anyCould = anyCould || &racer != &best;
                racer.run(rows);
            }
        }
        return anyCould;
    }
    dialect::SearchPlan plan() const {
        std::vector<const Racer*> others;
        const Racer& lead = cheapest();
        for (const Racer& racer : racers_) {
            if (racer.test() != nullptr && racer.test() != lead.test()) {
                others.push_back(&racer);
            }
        }
        std::ranges::stable_sort(others, std::ranges::less(), &Racer::hits);
        dialect::SearchPlan plan{lead.test(), lead.range(), {}};
        for (const Racer* other : others) {
            // One with two ranges ran twice.
            if (std::ranges::count(plan.order, other->test()) == 0) {
                plan.order.push_back(other->test());
            }
        }
        return plan;
    }

    std::deque<Racer> racers_;
};

} // namespace

dialect::SearchPlan bestPlan(sqlite3* database, std::vector<LeadRunner>& runners) {
    return Race(database, runners).run();
}

} // namespace kintar::companion::sqlite
