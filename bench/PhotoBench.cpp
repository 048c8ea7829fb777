// From the setting of an event to the painted photo, beside decoding and painting alone.
#include "Beside.h"

#include "display/DisplayWorld.h"
#include "platform/qt/PhotoBox.h"
#include "platform/qt/PhotoWorkerPool.h"
#include "support/FakeSettings.h"

#include <QApplication>
#include <QImageReader>
#include <QPainter>
#include <QRandomGenerator>
#include <QWidget>

#include <cstdio>

namespace {

using namespace kintar;

constexpr int eventCount = 500;
constexpr double aimAtMost = 1.3;

/// A picture of two megapixels that compresses about as a photo does.
void writePhoto(const QString& path) {
    QImage coarse(204, 153, QImage::Format_RGB32);
    QRandomGenerator random(7);
    for (int y = 0; y < coarse.height(); ++y) {
        for (int x = 0; x < coarse.width(); ++x) {
            coarse.setPixel(x, y, random.generate() | 0xFF000000U);
        }
    }
    coarse.scaled(1632, 1224, Qt::IgnoreAspectRatio, Qt::SmoothTransformation)
        .save(path, "jpeg", 90);
}

/// What there is to do in any case: decode the file at the size of the box, and paint it.
class BareView final : public QWidget {
public:
    void show(const QString& path) {
        QImageReader reader(path);
        reader.setScaledSize(reader.size().scaled(size(), Qt::KeepAspectRatio));
        photo_ = reader.read();
        repaint();
    }

protected:
    void paintEvent(QPaintEvent* /*event*/) override {
        QPainter painter(this);
        painter.fillRect(rect(), Qt::gray);
        painter.drawImage((width() - photo_.width()) / 2, (height() - photo_.height()) / 2, photo_);
    }

private:
    QImage photo_;
};

/// Notices that the photo has been painted.
class PaintWatch final : public QObject {
public:
    explicit PaintWatch(platform::PhotoBox& box) : box_(box) { box_.installEventFilter(this); }
    bool eventFilter(QObject* /*watched*/, QEvent* event) override {
        painted = painted || (event->type() == QEvent::Paint &&
                              box_.state() == platform::PhotoBox::State::Photo);
        return false;
    }

    bool painted = false;

private:
    platform::PhotoBox& box_;
};

/// The photo window with the real loader and its workers.
struct Workstation {
    testing::DisplayWorld twins;
    platform::PhotoWorkerPool photos{KINTAR_PHOTO_WORKER};
    testing::FakeSettings settings;
    DisplayWindows display{{twins.globals, twins.application, settings, twins.files, twins.clock,
                            twins.windows, photos, LocaleFormats{}}};
    QString photo = QString::fromStdString(twins.site / "Data/Images/smith.jpg");

    Workstation() { writePhoto(photo); }

    platform::PhotoBox& box() {
        return *display.kintar().get().findChild<platform::PhotoBox*>(QStringLiteral("Lead1"));
    }
};

void showEvent(objKintar& object, PaintWatch& watch) {
    watch.painted = false;
    object.ID(12);
    while (!watch.painted) {
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    }
}

void printDistribution(std::vector<double> seconds) {
    std::sort(seconds.begin(), seconds.end());
    const auto at = [&](double share) {
        return 1000 * seconds[static_cast<std::size_t>(share * double(seconds.size() - 1))];
    };
    std::printf("  %d events: least %.2f ms, median %.2f, 90 %% %.2f, 99 %% %.2f, most %.2f\n",
                eventCount, at(0), at(0.5), at(0.9), at(0.99), at(1));
}

} // namespace

int main(int argc, char** argv) {
    if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM")) {
        qputenv("QT_QPA_PLATFORM", "offscreen");
    }
    const QApplication application(argc, argv);
    QApplication::setQuitOnLastWindowClosed(false);
    Workstation workstation;
    objKintar object(workstation.display);
    testing::DisplayWorld::set(object, "John", "Smith", "4711");
    PaintWatch watch(workstation.box());
    if (!testing::runUntil([&] { return workstation.photos.isWarm(); })) {
        std::fputs("photo_bench: the photo workers do not start\n", stderr);
        return 1;
    }
    BareView bare;
    bare.resize(workstation.box().size());
    bare.QWidget::show();
    std::vector<double> events;
    const double ratio = bench::beside(
        "event set to photo painted, 2-megapixel JPEG", eventCount,
        [&] { events.push_back(bench::secondsOf([&] { showEvent(object, watch); })); },
        [&] { bare.show(workstation.photo); }, aimAtMost);
    printDistribution(std::move(events));
    return ratio <= aimAtMost ? 0 : 1;
}
