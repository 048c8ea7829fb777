#include "platform/qt/CupsPrinters.h"

#include "platform/CupsAnswers.h"

#include <QProcessEnvironment>
#include <QTimer>
#include <QVariant>

namespace kintar::platform {

CupsPrinters::CupsPrinters(std::chrono::milliseconds patience) : patience_(patience) {}

CupsPrinters::~CupsPrinters() {
    cancel();
}

void CupsPrinters::list(Listed listed) {
    run("lpstat", {QStringLiteral("-d"), QStringLiteral("-v")},
        [this, listed = std::move(listed)](const Outcome& outcome) {
            if (!outcome.late) {
                // Without any printer, or with no print system at all, the program fails.
                lastGood_ = readPrinterList(outcome.output);
            }
            listed(lastGood_);
        });
}

void CupsPrinters::submit(const std::string& deviceName, const std::string& pdfFile,
                          const std::string& title, int copies, Submitted submitted) {
    QStringList arguments;
    if (!deviceName.empty()) {
        arguments << QStringLiteral("-d") << QString::fromStdString(deviceName);
    }
    arguments << QStringLiteral("-n") << QString::number(copies) << QStringLiteral("-t")
              << QString::fromStdString(title) << QStringLiteral("-o")
              << QStringLiteral("fit-to-page") << QStringLiteral("--")
              << QString::fromStdString(pdfFile);
    run("lp", arguments, [submitted = std::move(submitted)](const Outcome& outcome) {
        if (outcome.good) {
            submitted("");
            return;
        }
        const std::string said = firstComplaint(outcome.error);
        submitted(outcome.late   ? "The print system does not answer."
                  : said.empty() ? "The print system did not take the report."
                                 : "The print system says: " + said);
    });
}

void CupsPrinters::cancel() {
    for (auto* process : findChildren<QProcess*>()) {
        process->disconnect(this);
        process->disconnect();
        process->kill();
        // A killed program is gone at once; what it leaves is collected here.
        process->waitForFinished(1000);
        delete process;
    }
}

void CupsPrinters::run(const char* program, const QStringList& arguments,
                       const Finished& finished) {
    auto* process = new QProcess(this);
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("LC_ALL"), QStringLiteral("C"));
    process->setProcessEnvironment(environment);
    auto* patience = new QTimer(process);
    patience->setSingleShot(true);
    connect(patience, &QTimer::timeout, process, [process] {
        process->setProperty("late", true);
        process->kill();
    });
    const auto end = [process, finished] {
        process->deleteLater();
        process->disconnect();
        process->setParent(nullptr);
        Outcome outcome;
        outcome.late = process->property("late").toBool();
        outcome.good = process->error() == QProcess::UnknownError &&
                       process->exitStatus() == QProcess::NormalExit && process->exitCode() == 0;
        outcome.output = process->readAllStandardOutput().toStdString();
        outcome.error = process->readAllStandardError().toStdString();
        if (process->error() == QProcess::FailedToStart) {
            outcome.error = "there is no print system: " + process->errorString().toStdString();
        }
        finished(outcome);
    };
    connect(process, &QProcess::finished, process, end);
    const auto endWhereNotStarted = [end](QProcess::ProcessError error) {
        if (error == QProcess::FailedToStart) {
            end();
        }
    };
    // Queued: such an error may come while the caller still asks.
    connect(process, &QProcess::errorOccurred, process, endWhereNotStarted, Qt::QueuedConnection);
    process->start(QLatin1String(program), arguments);
    patience->start(patience_);
}

} // namespace kintar::platform
