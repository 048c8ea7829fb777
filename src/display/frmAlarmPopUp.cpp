#include "display/frmAlarmPopUp.h"

#include "display/AlarmColour.h"
#include "display/SystemColours.h"
#include "platform/qt/Controls.h"
#include "platform/qt/PlainText.h"
#include "server/IgnoringErrors.h"

#include <QAccessible>
#include <QCheckBox>
#include <QCloseEvent>
#include <QGuiApplication>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QPushButton>
#include <QScreen>
#include <QScrollArea>
#include <QTimer>
#include <QVBoxLayout>

namespace kintar {
namespace {

constexpr int guardMilliseconds = 1000;
constexpr int windowWidth = 520;
constexpr int windowHeight = 260;
constexpr double alarmTextScale = 1.8;
constexpr std::size_t longestAlarm = 20000;

display::Rgb rgbOf(const QColor& colour) {
    return {static_cast<std::uint8_t>(colour.red()), static_cast<std::uint8_t>(colour.green()),
            static_cast<std::uint8_t>(colour.blue())};
}

QColor colourFrom(display::Rgb rgb) {
    return {rgb.red, rgb.green, rgb.blue};
}

/// A text that is scrolled: only its height for the width it is given counts. The hints that a
/// wrapping label has otherwise cost it several layouts of every text.
class ScrolledText final : public QLabel {
public:
    [[nodiscard]] QSize sizeHint() const override { return minimumSize(); }
    [[nodiscard]] QSize minimumSizeHint() const override { return minimumSize(); }
};

/// An alarm may have lines, and they are kept; nothing else in it is more than text.
QString alarmText(const std::string& text) {
    const QString whole = QString::fromUtf8(text.substr(0, longestAlarm));
    QStringList lines;
    for (const QString& line : whole.split(QLatin1Char('\n'))) {
        lines.push_back(platform::oneLine(line.toStdString()).trimmed());
    }
    return lines.join(QLatin1Char('\n'));
}

} // namespace

frmAlarmPopUp::frmAlarmPopUp(modGlobals& globals, platform::WindowRequests& requests,
                             platform::SettingsStore& settings)
    : FormWindow("frmAlarmPopUp"), globals_(globals), requests_(requests), settings_(settings) {
    setAttribute(Qt::WA_ShowWithoutActivating);
    build();
    nameControls();
    connectControls();
}

void frmAlarmPopUp::build() {
    label_ = new ScrolledText;
    platform::makePlain(*label_);
    label_->setWordWrap(true);
    label_->setAlignment(Qt::AlignCenter);
    label_->setMargin(12);
    QFont font = label_->font();
    font.setPointSizeF(font.pointSizeF() * alarmTextScale);
    font.setBold(true);
    label_->setFont(font);
    label_->setAutoFillBackground(true);
    area_ = new QScrollArea;
    area_->setWidget(label_);
    area_->setWidgetResizable(true);
    area_->setFrameShape(QFrame::NoFrame);
    area_->setFocusPolicy(Qt::NoFocus);
    area_->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    chkDisAblePopUp_ =
        new QCheckBox(QStringLiteral("Disable The Alarm Pop Up Window (This Window)"));
    cmdSwitch_ = new QPushButton(QStringLiteral("Go To WorkStation ")); // the blank is meant
    cmdIgnore_ = new QPushButton(QStringLiteral("Ignore"));
    for (QPushButton* button : {cmdSwitch_, cmdIgnore_}) {
        button->setAutoDefault(false);
    }
    auto* buttons = new QHBoxLayout;
    buttons->addWidget(chkDisAblePopUp_, 1);
    buttons->addWidget(cmdSwitch_);
    buttons->addWidget(cmdIgnore_);
    auto* all = new QVBoxLayout(this);
    all->addWidget(area_, 1);
    all->addLayout(buttons);
    // The window itself takes the focus when it is activated: no control has it by chance.
    setFocusPolicy(Qt::StrongFocus);
}

void frmAlarmPopUp::nameControls() {
    platform::nameControl(*label_, "Label_1", "label", QStringLiteral("Alarm"));
    platform::nameControl(*chkDisAblePopUp_, "chkDisAblePopUp", "check box",
                          chkDisAblePopUp_->text());
    platform::nameControl(*cmdSwitch_, "cmdSwitch", "command button", cmdSwitch_->text());
    platform::nameControl(*cmdIgnore_, "cmdIgnore", "command button", cmdIgnore_->text());
}

void frmAlarmPopUp::connectControls() {
    keyGuard_ = new QTimer(this);
    keyGuard_->setObjectName(QStringLiteral("keyGuard"));
    keyGuard_->setSingleShot(true);
    keyGuard_->setInterval(guardMilliseconds);
    connect(cmdSwitch_, &QPushButton::clicked, this, &frmAlarmPopUp::switchToWorkstation);
    connect(cmdIgnore_, &QPushButton::clicked, this, [this] { hide(); });
    connect(chkDisAblePopUp_, &QCheckBox::toggled, this, &frmAlarmPopUp::disableChanged);
    for (QWidget* control : std::initializer_list<QWidget*>{this, chkDisAblePopUp_, cmdSwitch_,
                                                            cmdIgnore_, area_, label_}) {
        control->installEventFilter(this);
    }
}

void frmAlarmPopUp::Load() {
    ignoringErrors([this] { globals_.tarnRec().PrepareForm(globals_.gCnn2(), *this); });
    resize(windowWidth, windowHeight);
    if (const QScreen* screen = QGuiApplication::primaryScreen()) {
        move(screen->availableGeometry().center() - QPoint(windowWidth / 2, windowHeight / 2));
    }
}

void frmAlarmPopUp::setAlarm(const std::string& text) {
    ensureLoaded();
    guardKeys();
    const QString shown = alarmText(text);
    label_->setText(shown);
    label_->setAccessibleName(shown);
    if (QAccessible::isActive()) {
        QAccessibleEvent alert(label_, QAccessible::Alert);
        QAccessible::updateAccessibility(&alert);
    }
}

void frmAlarmPopUp::show() {
    Show();
}

void frmAlarmPopUp::setForeColor(std::int32_t colour) {
    ensureLoaded();
    if (foreColor_ == colour) {
        return;
    }
    foreColor_ = colour;
    const std::optional<int> index = display::systemColourIndex(colour);
    const QColor text =
        index ? display::systemColour(*index) : colourFrom(display::colourOf(colour));
    QPalette palette = label_->palette();
    palette.setColor(QPalette::WindowText, text);
    palette.setColor(QPalette::Window,
                     colourFrom(display::readableBackground(
                         rgbOf(text), rgbOf(QGuiApplication::palette().color(QPalette::Base)))));
    label_->setPalette(palette);
}

void frmAlarmPopUp::setCaption(const std::string& text) {
    ensureLoaded();
    const QString title = platform::titleText(text);
    if (title != windowTitle()) {
        setWindowTitle(title);
    }
}

void frmAlarmPopUp::makeTopmost() {
    ensureLoaded();
    requests_.SetWindowPos(windowId(), platform::InsertAfter::Topmost,
                           platform::noSize + platform::noMove + platform::noActivate);
    requests_.CoverFullScreen(windowId());
}

bool frmAlarmPopUp::disableTicked() {
    ensureLoaded();
    return chkDisAblePopUp_->isChecked();
}

void frmAlarmPopUp::switchToWorkstation() {
    const RoutineScope routine(*this);
    const auto window = static_cast<platform::WindowId>(static_cast<std::uint32_t>(wsHandle_));
    // A stale or zero handle makes these fail quietly; the window hides all the same.
    ignoringErrors([&] {
        requests_.SetWindowPos(window, platform::InsertAfter::Top,
                               platform::noSize + platform::noMove + platform::showWindow);
    });
    ignoringErrors([&] { requests_.ShowWindow(window, platform::ShowCommand::Restore); });
    ignoringErrors([&] { requests_.SetForegroundWindow(window); });
    hide();
}

void frmAlarmPopUp::disableChanged(bool ticked) {
    if (!ticked) {
        return;
    }
    const RoutineScope routine(*this);
    ignoringErrors([this] { settings_.save(R"(Orvane\WS\Settings)", "AlarmPopUp", "0"); });
    hide();
}

void frmAlarmPopUp::guardKeys() {
    keyGuard_->start();
    setFocus();
}

void frmAlarmPopUp::closeEvent(QCloseEvent* event) {
    if (keyGuard_->isActive()) {
        event->ignore(); // Alt+F4 that was meant for the window before
        return;
    }
    FormWindow::closeEvent(event);
}

bool frmAlarmPopUp::eventFilter(QObject* watched, QEvent* event) {
    switch (event->type()) {
    case QEvent::KeyPress:
    case QEvent::KeyRelease:
    case QEvent::Shortcut:
    case QEvent::ShortcutOverride:
        if (keyGuard_->isActive()) {
            return true;
        }
        if (const auto* key = dynamic_cast<const QKeyEvent*>(event)) {
            return key->isAutoRepeat();
        }
        return false;
    default:
        return FormWindow::eventFilter(watched, event);
    }
}

} // namespace kintar
