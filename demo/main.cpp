// kintar-workstation: a demonstration of a workstation program, a client of the server like any
// other.

#include "demo/Feed.h"
#include "demo/NameFinder.h"
#include "demo/Scenario.h"
#include "demo/ServerLink.h"
#include "demo/WorkstationWindow.h"

#include <QApplication>
#include <QCommandLineParser>
#include <QDBusConnection>
#include <QFileInfo>
#include <QScreen>
#include <QStandardPaths>

#include <algorithm>
#include <cstdio>

#include <fcntl.h>
#include <unistd.h>

namespace {

using namespace kintar::demo;

/// `kintar-site` beside this program, or on the path.
QString siteTool() {
    const QString name = QStringLiteral("kintar-site");
    QString beside = QCoreApplication::applicationDirPath() + QLatin1Char('/') + name;
    if (QFileInfo(beside).isExecutable()) {
        return beside;
    }
    const QString found = QStandardPaths::findExecutable(name);
    return found.isEmpty() ? name : found;
}

[[noreturn]] void refuse(const QString& reason) {
    std::fprintf(stderr, "kintar-workstation: %s\n", reason.toUtf8().constData());
    std::exit(2);
}

int openScenario(const QString& file) {
    if (file == QLatin1String("-")) {
        return STDIN_FILENO;
    }
    const int descriptor = ::open(file.toUtf8().constData(), O_RDONLY | O_CLOEXEC);
    if (descriptor < 0) {
        refuse(QStringLiteral("%1: %2").arg(file, qt_error_string(errno)));
    }
    return descriptor;
}

struct Options {
    QString site;
    QString scenario;
    QDateTime moment;
};

Options readOptions(const QApplication& application) {
    QCommandLineParser parser;
    parser.setApplicationDescription(QStringLiteral(
        "A demonstration workstation: a running feed of card events, each with its photo."));
    parser.addHelpOption();
    const QCommandLineOption site(QStringLiteral("site"), QStringLiteral("Folder of the site."),
                                  QStringLiteral("DIR"));
    const QCommandLineOption scenario(
        QStringLiteral("scenario"),
        QStringLiteral("Do the steps in FILE (- for standard input) instead of running the feed: "
                       "event ID, choose ID, operator ID, pause, resume, wait-server, "
                       "wait-window TITLE, quit. Prints 'done STEP' after each."),
        QStringLiteral("FILE"));
    const QCommandLineOption clock(QStringLiteral("clock"),
                                   QStringLiteral("Every event happens at this moment."),
                                   QStringLiteral("2012-03-14T17:05:00"));
    parser.addOptions({site, scenario, clock});
    parser.process(application);
    if (!parser.isSet(site)) {
        refuse(QStringLiteral("--site DIR is missing"));
    }
    Options options{parser.value(site), parser.value(scenario), {}};
    if (parser.isSet(clock)) {
        options.moment = QDateTime::fromString(parser.value(clock), Qt::ISODate);
        if (!options.moment.isValid()) {
            refuse(QStringLiteral("--clock: no moment such as 2012-03-14T17:05:00"));
        }
    }
    return options;
}

} // namespace

int main(int argc, char** argv) {
    QApplication application(argc, argv);
    QApplication::setApplicationName(QStringLiteral("kintar-workstation"));
    QApplication::setApplicationDisplayName(QStringLiteral("Workstation"));
    const Options options = readOptions(application);

    ServerLink link(QDBusConnection::sessionBus());
    Feed feed(siteTool(), options.site);
    NameFinder finder(QDBusConnection::sessionBus());
    WorkstationWindow window(feed, link, finder);
    window.setFixedMoment(options.moment);
    auto* actions =
        new ActionsBar(QDBusConnection::sessionBus(), [&window] { return window.place(); });
    window.addActions(*actions);
    // The photo window opens in the upper left corner.
    const QRect screen = window.screen()->availableGeometry();
    constexpr int besidePhoto = 230;
    window.resize(std::min(window.width(), screen.width() - besidePhoto - 20), window.height());
    window.move(screen.left() + besidePhoto, screen.top() + 60);

    Scenario scenario(feed, link, window);
    QObject::connect(&scenario, &Scenario::ended, &application, &QCoreApplication::exit);
    if (!options.scenario.isEmpty()) {
        window.setPaused(true);
        // Steps begin when the operators are known.
        const int descriptor = openScenario(options.scenario);
        QObject::connect(&feed, &Feed::loaded, &scenario,
                         [&scenario, descriptor] { scenario.readFrom(descriptor); });
        QObject::connect(&feed, &Feed::failed, &scenario, [](const QString& reason) {
            std::fprintf(stderr, "kintar-workstation: %s\n", reason.toUtf8().constData());
            QCoreApplication::exit(1);
        });
    }
    window.show();
    link.start();
    feed.load();
    return QApplication::exec();
}
