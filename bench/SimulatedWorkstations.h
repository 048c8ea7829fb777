// Workstations, a process each, on one site.
#pragma once

#include "support/ScratchFolder.h"

#include <QProcess>
#include <QProcessEnvironment>
#include <QString>

#include <filesystem>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

namespace kintar::bench {

/// A running `growth_workstation`, which has settings and a temporary folder of its own.
class SimulatedWorkstation {
public:
    /// Starts it; the first answer tells that it is ready.
    SimulatedWorkstation(const std::string& site, int names, int number) {
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("offscreen"));
        environment.insert(QStringLiteral("KINTAR3_APP_DIR"), QString::fromStdString(site));
        for (const char* name : {"XDG_CONFIG_HOME", "TMPDIR", "XDG_RUNTIME_DIR"}) {
            folder_.makeFolder(name);
            std::filesystem::permissions(folder_ / name, std::filesystem::perms::owner_all);
            environment.insert(QString::fromLatin1(name), QString::fromStdString(folder_ / name));
        }
        process_.setProcessEnvironment(environment);
        process_.start(QStringLiteral(GROWTH_WORKSTATION),
                       {QString::number(names), QString::number(number)});
    }
    SimulatedWorkstation(const SimulatedWorkstation&) = delete;
    SimulatedWorkstation& operator=(const SimulatedWorkstation&) = delete;
    ~SimulatedWorkstation() {
        process_.closeWriteChannel();
        process_.waitForFinished(-1);
    }

    void tell(const std::string& line) {
        process_.write((line + "\n").c_str());
        process_.waitForBytesWritten(-1);
    }
    /// The numbers of the next answer. Throws where the process has ended instead.
    std::vector<double> answer() {
        while (!process_.canReadLine()) {
            if (!process_.waitForReadyRead(-1)) {
                throw std::runtime_error("a workstation has ended: " +
                                         process_.readAllStandardError().toStdString());
            }
        }
        const QList<QByteArray> words = process_.readLine().trimmed().split(' ');
        std::vector<double> numbers;
        for (qsizetype i = 1; i < words.size(); ++i) {
            numbers.push_back(words.at(i).toDouble());
        }
        return numbers;
    }
    std::vector<double> ask(const std::string& line) {
        tell(line);
        return answer();
    }

private:
    testing::ScratchFolder folder_;
    QProcess process_;
};

/// Those that use a site at a time; more of them can join.
class SimulatedWorkstations {
public:
    SimulatedWorkstations(std::string site, int names) : site_(std::move(site)), names_(names) {}

    /// Starts as many as are missing, each with its board open.
    void become(int count, const std::string& board) {
        const std::size_t before = all_.size();
        while (static_cast<int>(all_.size()) < count) {
            const int number = static_cast<int>(all_.size());
            all_.push_back(std::make_unique<SimulatedWorkstation>(site_, names_, number));
        }
        for (std::size_t i = before; i < all_.size(); ++i) {
            all_[i]->answer();
            all_[i]->ask(board);
        }
    }

    /// Ends all but the first.
    void keepOne() {
        while (all_.size() > 1) {
            all_.pop_back();
        }
    }

    SimulatedWorkstation& first() { return *all_.front(); }

    /// Sets those from `from` on to work, their moments spread evenly over the second and minute.
    void work(std::size_t from) {
        for (std::size_t i = from; i < all_.size(); ++i) {
            all_[i]->ask("work " +
                         std::to_string(static_cast<double>(i) / static_cast<double>(all_.size())));
        }
    }
    /// Ends that; how long each of their events took.
    std::vector<double> stop(std::size_t from) {
        std::vector<double> seconds;
        for (std::size_t i = from; i < all_.size(); ++i) {
            const std::vector<double> own = all_[i]->ask("stop");
            seconds.insert(seconds.end(), own.begin(), own.end());
        }
        return seconds;
    }

private:
    std::string site_;
    int names_;
    std::vector<std::unique_ptr<SimulatedWorkstation>> all_;
};

} // namespace kintar::bench
