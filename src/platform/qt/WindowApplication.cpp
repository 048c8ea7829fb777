#include "platform/qt/WindowApplication.h"

#include "platform/qt/Activation.h"
#include "platform/qt/PlainText.h"

#include <QCoreApplication>
#include <QDir>
#include <QEventLoop>
#include <QMessageBox>

#include <utility>

namespace kintar::platform {

std::string WindowApplication::folder() const {
    const QString set = qEnvironmentVariable("KINTAR3_APP_DIR");
    const QString folder = set.isEmpty() ? QCoreApplication::applicationDirPath() : set;
    return QDir(folder).absolutePath().toStdString();
}

Application::Version WindowApplication::version() const {
    return {KINTAR_VERSION_MAJOR, KINTAR_VERSION_MINOR, KINTAR_VERSION_REVISION};
}

void WindowApplication::messageBox(const std::string& text) {
    QMessageBox box(QMessageBox::NoIcon, QStringLiteral("Kintar3"), oneLine(text), QMessageBox::Ok);
    box.setObjectName(QStringLiteral("MsgBox"));
    box.setTextFormat(Qt::PlainText);
    box.setAttribute(Qt::WA_QuitOnClose, false);
    // Shown, not executed: that would block the other windows, and they are to go on.
    box.setWindowModality(Qt::NonModal);
    QEventLoop untilClosed;
    QObject::connect(&box, &QDialog::finished, &untilClosed, &QEventLoop::quit);
    showForInput(box);
    untilClosed.exec();
}

void WindowApplication::setPendingMessagesGate(std::function<void()> before,
                                               std::function<void()> after) {
    before_ = std::move(before);
    after_ = std::move(after);
}

void WindowApplication::runPendingWindowMessages() {
    struct Gate {
        WindowApplication& application;
        explicit Gate(WindowApplication& outer) : application(outer) {
            if (application.depth_++ == 0 && application.before_) {
                application.before_();
            }
        }
        Gate(const Gate&) = delete;
        Gate& operator=(const Gate&) = delete;
        ~Gate() {
            if (--application.depth_ == 0 && application.after_) {
                application.after_();
            }
        }
    };
    const Gate gate(*this);
    QCoreApplication::processEvents(QEventLoop::AllEvents);
}

} // namespace kintar::platform
