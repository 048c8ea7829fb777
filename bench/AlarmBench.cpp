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

#include <cstdlib>

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

/// As plain as a window with such a text can be.
class BareWindow final : public QWidget {
public:
    BareWindow() : label_(new QLabel) {
        QFont font = label_->font();
        font.setPointSizeF(font.pointSizeF() * 1.8);
        font.setBold(true);
        label_->setFont(font);
        auto* layout = new QVBoxLayout(this);
        layout->addWidget(label_);
        resize(520, 260);
    }
    QLabel* label_;
};

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
        "alarm set to painted / a bare window shown with the text", 200,
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
    return 0;
}
