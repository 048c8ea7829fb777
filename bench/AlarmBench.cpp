// An alarm, from being set to being painted, beside a bare window that is shown with the same text.
#include "Beside.h"
#include "display/AlarmWindows.h"
#include "support/FakeServer.h"
#include "support/FakeSettings.h"
#include "support/RecordingWindowRequests.h"

#include <QApplication>
#include <QLabel>
#include <QVBoxLayout>
#include <QWidget>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <string>

namespace {

using namespace kintar;

const QString text = QStringLiteral("Door forced open: Loading Dock, east side");

/// Serves events until the widget has been painted once more.
class Painted final : public QObject {
public:
    explicit Painted(QWidget& widget) : widget_(widget) { widget.installEventFilter(this); }
    void await() {
        painted_ = false;
        widget_.update();
        while (!painted_) {
            QCoreApplication::processEvents(QEventLoop::AllEvents);
        }
    }
    bool eventFilter(QObject* /*watched*/, QEvent* event) override {
        painted_ = painted_ || event->type() == QEvent::Paint;
        return false;
    }

private:
    QWidget& widget_;
    bool painted_ = false;
};

/// As plain as a window can be that shows such a text in the same way.
class BareWindow final : public QWidget {
public:
    BareWindow() : label_(new QLabel) {
        QFont font = label_->font();
        font.setPointSizeF(font.pointSizeF() * 1.8);
        font.setBold(true);
        label_->setFont(font);
        label_->setTextFormat(Qt::PlainText);
        label_->setWordWrap(true);
        label_->setAlignment(Qt::AlignCenter);
        label_->setMargin(12);
        label_->setAutoFillBackground(true);
        QPalette palette = label_->palette();
        palette.setColor(QPalette::WindowText, Qt::black);
        palette.setColor(QPalette::Window, Qt::white);
        label_->setPalette(palette);
        auto* layout = new QVBoxLayout(this);
        layout->addWidget(label_);
        resize(520, 260);
    }
    QLabel* label_;
};

/// Each alarm is a turn of the event loop, as it is for one that comes over the bus: what the
/// slowest takes is what another client would wait for.
void measureMany(objAlarmPopUp& alarm, const QLabel& label) {
    constexpr int count = 1000;
    double slowest = 0;
    const double all = bench::secondsOf([&] {
        for (int number = 1; number <= count; ++number) {
            slowest = std::max(slowest, bench::secondsOf([&] {
                                   alarm.EventString("Alarm " + std::to_string(number));
                                   QCoreApplication::processEvents();
                               }));
        }
    });
    const bool latest = label.text() == QStringLiteral("Alarm 1000") && label.isVisible();
    bench::printRow("1,000 alarms, each painted / a second", all, 1.0, all, "<= 1.00",
                    all <= 1.0 && latest);
    std::printf("    the slowest took %.6f s; the latest %s shown\n", slowest,
                latest ? "is" : "is NOT");
}

} // namespace

int main(int argc, char** argv) {
    if (std::getenv("DISPLAY") == nullptr) {
        setenv("QT_QPA_PLATFORM", "offscreen", 1);
    }
    const QApplication application(argc, argv);
    testing::FakeServer server;
    testing::RecordingWindowRequests requests;
    testing::FakeSettings settings;
    AlarmWindows alarms(server.globals, requests, settings);
    objAlarmPopUp alarm(server.globals,
                        [&]() -> display::AlarmForm& { return alarms.popUp().get(); });
    alarm.EventString("first");
    Painted alarmPainted(*alarms.popUp().get().findChild<QLabel*>(QStringLiteral("Label_1")));
    BareWindow bare;
    Painted barePainted(*bare.label_);

    int number = 0;
    bench::beside(
        "alarm set to painted / a bare window shown with the text", 400,
        [&] {
            alarms.popUp().get().hide();
            alarm.EventString(text.toStdString() + std::to_string(++number));
            alarmPainted.await();
        },
        [&] {
            bare.hide();
            bare.label_->setText(text + QString::number(++number));
            bare.show();
            barePainted.await();
        },
        1.2);
    measureMany(alarm, *alarms.popUp().get().findChild<QLabel*>(QStringLiteral("Label_1")));
    return 0;
}
