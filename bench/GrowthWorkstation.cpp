// One of many workstations: the windows of the server on a site, told what to do by lines on its
// standard input, each of which it answers with a line of numbers.
#include "Beside.h"

#include "host/composition/Composition.h"
#include "platform/qt/PhotoBox.h"
#include "platform/qt/PhotoWorkerPool.h"
#include "search/frmInOut.h"
#include "search/frmNameSearch.h"

#include <QApplication>
#include <QLineEdit>
#include <QPushButton>
#include <QSocketNotifier>
#include <QTimer>
#include <QTreeView>

#include <chrono>
#include <cstdio>
#include <filesystem>
#include <iostream>
#include <memory>
#include <optional>
#include <random>
#include <sstream>
#include <stdexcept>
#include <string>
#include <unistd.h>
#include <vector>

namespace {

using namespace kintar;
using Seconds = std::chrono::duration<double>;

constexpr int locGrp = 1;
constexpr int eventMilliseconds = 1000;
constexpr int refreshMilliseconds = 60000;

class NoSignals final : public ObjectSignals {
public:
    void changed(std::string_view /*member*/) override {}
};

void runUntil(const std::function<bool()>& reached) {
    constexpr auto patience = std::chrono::minutes(5);
    const auto start = std::chrono::steady_clock::now();
    QTimer wake;
    wake.start(1000);
    while (!reached()) {
        if (std::chrono::steady_clock::now() - start > patience) {
            throw std::runtime_error("nothing happens any more");
        }
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    }
}

/// Calls `painted` after each paint of a widget.
class PaintWatch final : public QObject {
public:
    PaintWatch(QWidget& widget, std::function<void()> painted) : painted_(std::move(painted)) {
        widget.installEventFilter(this);
    }
    bool eventFilter(QObject* /*watched*/, QEvent* event) override {
        if (event->type() == QEvent::Paint) {
            painted_();
        }
        return false;
    }

private:
    std::function<void()> painted_;
};

/// An object of a public class, used as a client does.
class Client {
public:
    Client(const ClassTable& table, const char* name)
        : class_(*table.find(name)), object_(class_.create(signals_)) {}

    void set(const char* member, const Value& value) { class_.find(member)->set(*object_, value); }
    void setAndWait(const char* member, const Value& value) {
        wait([&](const Completion& done) { class_.find(member)->setLater(*object_, value, done); });
    }
    void callAndWait(const char* member, const Value& value) {
        wait([&](const Completion& done) {
            class_.find(member)->callLater(*object_, {value}, done);
        });
    }

private:
    static void wait(const std::function<void(const Completion&)>& start) {
        bool ended = false;
        start([&](const std::optional<RunTimeError>& error) {
            if (error) {
                throw *error;
            }
            ended = true;
        });
        runUntil([&] { return ended; });
    }

    NoSignals signals_;
    const PublicClass& class_;
    std::unique_ptr<PublicObject> object_;
};

/// Card events, and how long each took from the setting of `ID` to the painted photo.
class Events {
public:
    Events(const ClassTable& table, platform::FormWindow& form)
        : kintar_(table, "objKintar"),
          box_(*form.findChild<platform::PhotoBox*>(QStringLiteral("Lead1"))),
          watch_(box_, [this] { painted(); }) {
        kintar_.set("LocGrp", locGrp);
        kintar_.set("LName", std::string("Lindqvist"));
        kintar_.set("FName", std::string("Astrid"));
        kintar_.set("EventDesc", std::string("Access granted"));
    }

    void show(int id) {
        finish(); // an event that comes before the last one's photo takes its place
        before_ = box_.photo().cacheKey();
        start_ = std::chrono::steady_clock::now();
        waiting_ = true;
        kintar_.set("ID", id);
    }
    [[nodiscard]] bool isWaiting() const { return waiting_; }
    std::vector<double> take() { return std::exchange(seconds_, {}); }

private:
    void painted() {
        const bool isNew = box_.photo().cacheKey() != before_;
        if (box_.state() == platform::PhotoBox::State::Photo && isNew) {
            finish();
        }
    }
    void finish() {
        if (std::exchange(waiting_, false)) {
            seconds_.push_back(Seconds(std::chrono::steady_clock::now() - start_).count());
        }
    }

    Client kintar_;
    platform::PhotoBox& box_;
    PaintWatch watch_;
    bool waiting_ = false;
    qint64 before_ = 0;
    std::chrono::steady_clock::time_point start_;
    std::vector<double> seconds_;
};

class Workstation {
public:
    Workstation(int names, unsigned seed)
        : persons_(firstPerson, names), random_(seed), photos_(KINTAR_PHOTO_WORKER),
          parts_(photos_), table_(parts_.classes()), events_(table_, *parts_.forms().at(0)),
          report_(table_, "objInRpt") {
        QObject::connect(&eventTimer_, &QTimer::timeout,
                         [this] { events_.show(persons_(random_)); });
        eventTimer_.setTimerType(Qt::PreciseTimer);
        runUntil([this] { return photos_.isWarm(); });
    }

    /// What a line asks for; the numbers of the answer.
    std::vector<double> answer(std::istringstream& line) {
        std::string what;
        line >> what;
        if (what == "events") {
            return eventsInTurn(line);
        }
        if (what == "search") {
            return search(line);
        }
        if (what == "board") {
            openBoard(line);
            return {};
        }
        if (what == "refresh") {
            return {bench::secondsOf([this] { refreshBoard(); })};
        }
        if (what == "report") {
            return {bench::secondsOf([this] { buildReport(); })};
        }
        if (what == "work") {
            work(line);
            return {};
        }
        if (what == "stop") {
            eventTimer_.stop();
            return events_.take();
        }
        throw std::runtime_error("no such work: " + what);
    }

private:
    static constexpr int firstPerson = 101; // those before have photos of all kinds, or none

    /// COUNT: so many events, one after the other.
    std::vector<double> eventsInTurn(std::istringstream& line) {
        int count = 0;
        line >> count;
        for (int i = 0; i < count; ++i) {
            events_.show(persons_(random_));
            runUntil([this] { return !events_.isWaiting(); });
        }
        return events_.take();
    }

    /// LAST [FIRST]: seconds from the press of Search to the painted list, and how many are in it.
    std::vector<double> search(std::istringstream& line) {
        std::string last;
        std::string first;
        line >> last >> first;
        search::frmNameSearch& form = dialog();
        form.findChild<QLineEdit*>(QStringLiteral("Text_0"))->setText(QString::fromStdString(last));
        form.findChild<QLineEdit*>(QStringLiteral("Text_1"))
            ->setText(QString::fromStdString(first));
        QTreeView& list = *form.findChild<QTreeView*>(QStringLiteral("lvList"));
        int paints = 0;
        const PaintWatch watch(*list.viewport(), [&] { ++paints; });
        const double seconds = bench::secondsOf([&] {
            form.findChild<QPushButton*>(QStringLiteral("cmdSearch"))->click();
            runUntil([&] { return !form.isFilling(); });
            const int before = paints;
            runUntil([&] { return paints > before; });
        });
        return {seconds, static_cast<double>(list.model()->rowCount())};
    }

    search::frmNameSearch& dialog() {
        if (!search_) {
            search_.emplace(table_, "objNameSearch");
            search_->set("NameSelMode", std::int16_t{1});
            search_->setAndWait("LocGrp", locGrp);
        }
        return dynamic_cast<search::frmNameSearch&>(*parts_.forms().at(1));
    }

    search::frmInOut& board() { return dynamic_cast<search::frmInOut&>(*parts_.forms().at(5)); }

    /// [STEP COUNT]: the board of COUNT names whose numbers are STEP apart, or of all names.
    void openBoard(std::istringstream& line) {
        int step = 0;
        int count = 0;
        line >> step >> count;
        std::string sql =
            "SELECT [Names].ID, ([Names].LName & ', ' & [Names].FName) as Name FROM [Names]";
        for (int i = 0; i < count; ++i) {
            sql += (i == 0 ? " WHERE ID IN (" : ", ") + std::to_string(1 + i * step);
        }
        board().setSQL(sql + (count > 0 ? ")" : ""));
        board().LocGrp(locGrp);
        board().LoadList(true);
        board().Show();
        runUntil([this] { return !board().isRefreshing(); });
    }

    void refreshBoard() {
        board().Timer1_Timer();
        runUntil([this] { return !board().isRefreshing(); });
    }

    void buildReport() {
        report_.callAndWait("Create", locGrp); // the first location of a group has its number
        for (const auto& entry : std::filesystem::recursive_directory_iterator(
                 std::filesystem::temp_directory_path())) {
            if (entry.path().filename() == "InRpt.Mdb") {
                return;
            }
        }
        throw std::runtime_error("there is no report");
    }

    /// PART: an event each second from now on, and the board refreshed each minute; PART, from 0 to
    /// 1, is which moment of the second and of the minute is this workstation's.
    void work(std::istringstream& line) {
        double part = 0;
        line >> part;
        QTimer::singleShot(int(part * eventMilliseconds), Qt::PreciseTimer,
                           [this] { eventTimer_.start(eventMilliseconds); });
        // From then on the board's own timer does so.
        QTimer::singleShot(int(part * refreshMilliseconds), [this] { board().Timer1_Timer(); });
    }

    std::uniform_int_distribution<int> persons_;
    std::mt19937 random_;
    platform::PhotoWorkerPool photos_;
    host::Composition parts_;
    ClassTable table_;
    Events events_;
    Client report_;
    std::optional<Client> search_;
    QTimer eventTimer_;
};

void answerLines(Workstation& workstation) {
    std::string line;
    if (!std::getline(std::cin, line)) {
        QCoreApplication::quit();
        return;
    }
    std::istringstream words(line);
    std::printf("done");
    for (const double number : workstation.answer(words)) {
        std::printf(" %.9g", number);
    }
    std::puts("");
    std::fflush(stdout);
}

/// NAMES SEED: how many names the site has, and what the persons of the events come from.
void serve(char** argv) {
    Workstation workstation(std::stoi(argv[1]), static_cast<unsigned>(std::stoi(argv[2])));
    std::puts("done");
    std::fflush(stdout);
    const QSocketNotifier lines(STDIN_FILENO, QSocketNotifier::Read);
    QObject::connect(&lines, &QSocketNotifier::activated, [&] {
        try {
            answerLines(workstation);
        } catch (const std::exception& error) {
            std::fprintf(stderr, "growth_workstation: %s\n", error.what());
            QCoreApplication::exit(1);
        }
    });
    QCoreApplication::exec();
}

} // namespace

int main(int argc, char** argv) {
    setenv("QT_NO_GLIB", "1", 1);
    const QApplication application(argc, argv);
    QApplication::setApplicationName(QStringLiteral("Kintar3"));
    QApplication::setQuitOnLastWindowClosed(false);
    return kintar::bench::runBench("growth_workstation", [&] {
        if (argc != 3) {
            throw std::runtime_error("NAMES and SEED are wanted");
        }
        serve(argv);
    });
}
