#include "platform/qt/FormWindow.h"

#include "base/Twips.h"
#include "platform/qt/Activation.h"

#include <QApplication>
#include <QCloseEvent>
#include <QCoreApplication>
#include <QGuiApplication>
#include <QScreen>

#include <vector>

namespace kintar::platform {

namespace {

/// Room for a frame that the window manager has not drawn yet: its title bar and its borders.
constexpr QSize frameRoom(8, 40);

std::vector<ScreenArea> screenAreas(QSize room) {
    std::vector<ScreenArea> areas;
    for (const QScreen* screen : QGuiApplication::screens()) {
        const QRect area =
            screen->availableGeometry().adjusted(0, 0, -room.width(), -room.height());
        areas.push_back({twipsFromPixels(area.x()), twipsFromPixels(area.y()),
                         twipsFromPixels(area.width()), twipsFromPixels(area.height())});
    }
    return areas;
}

/// In front, since a narrow title bar cuts what is behind.
const QString notUpToDateMark = QStringLiteral("(not up to date) ");

bool areNotUpToDate = false;

} // namespace

FormWindow::FormWindow(const char* name) {
    setObjectName(QLatin1String(name));
    setAttribute(Qt::WA_QuitOnClose, false);
}

FormWindow::~FormWindow() = default;

void FormWindow::destroyUnloaded() {
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

void FormWindow::ensureLoaded() {
    if (!std::exchange(loaded_, true)) {
        const RoutineScope routine(*this);
        Load();
    }
}

void FormWindow::Show() {
    ensureLoaded();
    if (!unloaded_) { // a load may let messages run, and one of them close the form
        showForInput(*this);
    }
}

void FormWindow::unload() {
    if (std::exchange(unloaded_, true) || !loaded_) {
        return;
    }
    const RoutineScope routine(*this);
    Unload();
    hide();
}

void FormWindow::showNotUpToDate(bool notUpToDate) {
    areNotUpToDate = notUpToDate;
    for (QWidget* window : QApplication::topLevelWidgets()) {
        if (auto* form = dynamic_cast<FormWindow*>(window)) {
            form->markTitle();
        }
    }
}

void FormWindow::markTitle() {
    const QString title = windowTitle();
    const bool marked = title.startsWith(notUpToDateMark);
    if (areNotUpToDate && !marked && !title.isEmpty()) {
        setWindowTitle(notUpToDateMark + title);
    } else if (!areNotUpToDate && marked) {
        setWindowTitle(title.mid(notUpToDateMark.size()));
    }
}

void FormWindow::changeEvent(QEvent* event) {
    QWidget::changeEvent(event);
    if (event->type() == QEvent::WindowTitleChange) {
        markTitle();
    }
}

Placement FormWindow::placement() const {
    return {twipsFromPixels(x()), twipsFromPixels(y()), twipsFromPixels(width()),
            twipsFromPixels(height())};
}

void FormWindow::place(const Placement& placement) {
    Placement kept = keptOnScreen(placement, screenAreas(QSize(0, 0)));
    if (kept != placement) {
        // Only a window that is moved anyway is moved for its frame, too: others stay where they
        // were.
        kept = keptOnScreen(placement, screenAreas(frameRoom));
    }
    resize(pixelsFromTwips(kept.width), pixelsFromTwips(kept.height));
    move(pixelsFromTwips(kept.left), pixelsFromTwips(kept.top));
}

void FormWindow::closeEvent(QCloseEvent* event) {
    event->accept();
    if (unloadPlace_ && !unloaded_) {
        // A copy: unloading may drop what holds it.
        const std::function<void()> unloadPlace = unloadPlace_;
        unloadPlace();
    }
}

void FormWindow::dispose() {
    disposed_ = true;
    if (routines_ == 0) {
        deleteLater();
    }
}

void FormWindow::leaveRoutine() {
    if (--routines_ == 0 && disposed_) {
        deleteLater();
    }
}

} // namespace kintar::platform
