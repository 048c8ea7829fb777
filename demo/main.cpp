// kintar-workstation: a demonstration of a workstation program, a client of the server like any
// other.

#include "demo/Feed.h"
#include "demo/NameFinder.h"
#include "demo/Options.h"
#include "demo/Scenario.h"
#include "demo/ServerLink.h"
#include "demo/WorkstationWindow.h"

#include <QApplication>
#include <QDBusConnection>
#include <QFileInfo>
#include <QScreen>
#include <QStandardPaths>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <optional>
#include <string>

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

[[noreturn]] void refuse(const std::string& reason) {
    std::fprintf(stderr, "kintar-workstation: %s\n", reason.c_str());
    std::exit(2);
}

int openScenario(const std::string& file) {
    if (file == "-") {
        return STDIN_FILENO;
    }
    const int descriptor = ::open(file.c_str(), O_RDONLY | O_CLOEXEC);
    if (descriptor < 0) {
        refuse(file + ": " + qt_error_string(errno).toStdString());
    }
    return descriptor;
}

// The toolkit aborts where it finds no display; a person who calls this gets a sentence instead.
bool hasDisplay() {
    for (const char* name : {"DISPLAY", "WAYLAND_DISPLAY", "QT_QPA_PLATFORM"}) {
        if (!qEnvironmentVariableIsEmpty(name)) {
            return true;
        }
    }
    return false;
}

} // namespace

int main(int argc, char** argv) {
    int status = 0;
    const std::optional<Options> options = readOptions(argc, argv, status);
    if (!options) {
        return status;
    }
    if (!hasDisplay()) {
        refuse("there is no display (neither DISPLAY nor WAYLAND_DISPLAY is set)");
    }
    QApplication application(argc, argv);
    QApplication::setApplicationName(QStringLiteral("kintar-workstation"));
    QApplication::setApplicationDisplayName(QStringLiteral("Workstation"));

    ServerLink link(QDBusConnection::sessionBus());
    Feed feed(siteTool(), QString::fromStdString(options->site));
    NameFinder finder(QDBusConnection::sessionBus());
    WorkstationWindow window(feed, link, finder);
    window.setFixedMoment(options->moment);
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
    if (!options->scenario.empty()) {
        window.setPaused(true);
        // Steps begin when the operators are known.
        const int descriptor = openScenario(options->scenario);
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
