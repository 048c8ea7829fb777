#include "overrides/frmOvrSchedule.h"

#include "base/Number.h"
#include "overrides/AdditionalDaysFrame.h"
#include "overrides/OverrideSideFrame.h"
#include "platform/qt/Controls.h"
#include "platform/qt/PlainText.h"
#include "server/IgnoringErrors.h"

#include <QApplication>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QPushButton>
#include <QSignalBlocker>
#include <QSlider>
#include <QStyle>
#include <QTabBar>
#include <QTimer>

#include <chrono>

namespace kintar {
namespace {

constexpr std::chrono::milliseconds topmostTime{100};
constexpr int generalTab = 0;
constexpr int additionalDaysTab = 1;

constexpr OverrideSideFrame::Names startNames{"Frame_0", "Start",   "ssdStartDate", "Slider1",
                                              "Label_0", "Label_1", "Label_5",      1};
constexpr OverrideSideFrame::Names stopNames{"Frame_1", "Stop",    "ssdStopDate", "Slider2",
                                             "Label_2", "Label_3", "Label_6",     6};

void setLine(QLabel& label, const std::string& text) {
    const QString line = platform::oneLine(text);
    if (label.text() != line) {
        label.setText(line);
        label.setAccessibleName(line);
    }
}

} // namespace

frmOvrSchedule::frmOvrSchedule(OverrideWindowServices services)
    : FormWindow("frmOvrSchedule"), services_(std::move(services)),
      editor_(services_.record, services_.texts) {
    setWindowTitle(QStringLiteral("Scheduled Override"));
    makeControls();
    layOut();
    connectSide(*startFrame_, editor_.start);
    connectSide(*stopFrame_, editor_.stop);
    connectAdditionalDays();
    connect(Tab1, &QTabBar::currentChanged, this, &frmOvrSchedule::Tab1_Click);
    displayError();
}

QLabel* frmOvrSchedule::newLabel(const char* name, const QString& text) {
    auto* label = new QLabel(text, this);
    platform::makePlain(*label);
    platform::nameControl(*label, name, "label", text);
    return label;
}

QPushButton* frmOvrSchedule::newButton(const char* name, const QString& caption, Step step) {
    auto* button = new QPushButton(caption, this);
    QString spoken = caption;
    platform::nameControl(*button, name, "button", spoken.remove(u'&'));
    button->setAutoDefault(true);
    connect(button, &QPushButton::clicked, this, [this, step = std::move(step)] {
        completeEntries();
        perform(step);
    });
    return button;
}

void frmOvrSchedule::makeControls() {
    Tab1 = new QTabBar(this);
    platform::nameControl(*Tab1, "Tab1", "tab strip", QStringLiteral("Pages"));
    Tab1->addTab(QStringLiteral("General"));
    Tab1->addTab(QStringLiteral("Additional Days"));
    Tab1->setExpanding(false);
    Tab1->setElideMode(Qt::ElideRight);
    Tab1->setUsesScrollButtons(false);
    general_ = new QWidget(this);
    startFrame_ = new OverrideSideFrame(startNames, services_.texts, general_);
    stopFrame_ = new OverrideSideFrame(stopNames, services_.texts, general_);
    makeErrorFrame();
    additionalDays_ = new AdditionalDaysFrame(services_.texts.formats(), this);
    makeFooter();
}

void frmOvrSchedule::makeErrorFrame() {
    errorFrame_ = new QFrame(this);
    errorFrame_->setFrameShape(QFrame::StyledPanel);
    platform::nameControl(*errorFrame_, "Frame_2", "frame", QStringLiteral("Error"));
    errorText_ = newLabel("Label_8", platform::oneLine(editor_.errorText()));
    errorText_->setWordWrap(true);
    QFont font = errorText_->font();
    font.setBold(true);
    errorText_->setFont(font);
    cmdErrOK = newButton("cmdErrOK", QStringLiteral("OK"), [this] { cmdErrOK_Click(); });
    auto* icon = new QLabel(errorFrame_);
    icon->setPixmap(style()->standardIcon(QStyle::SP_MessageBoxWarning).pixmap(32));
    auto* layout = new QHBoxLayout(errorFrame_);
    layout->addStretch(1);
    layout->addWidget(icon);
    layout->addWidget(errorText_, 2);
    layout->addWidget(cmdErrOK);
    layout->addStretch(1);
}

void frmOvrSchedule::makeFooter() {
    newLabel("Label_4", QStringLiteral("Operator:"));
    operatorReadout_ = newLabel("Label_7", QStringLiteral("Opr Name"));
    lblZone = newLabel("lblZone", {});
    lblZone->setWordWrap(true);
    lblNotice = newLabel("lblNotice", {});
    lblNotice->setWordWrap(true);
    cmdDelete = newButton("cmdDelete", QStringLiteral("&Delete"), [this] { editor_.cmdDelete(); });
    cmdNext = newButton("cmdNext", QStringLiteral("&Next"), [this] { editor_.cmdNext(); });
    cmdPrevious =
        newButton("cmdPrevious", QStringLiteral("&Previous"), [this] { editor_.cmdPrevious(); });
    cmdCancel = newButton("cmdCancel", QStringLiteral("&Cancel"), [this] { close(); });
    cmdOK = newButton("cmdOK", QStringLiteral("&OK"), [this] { cmdOK_Click(); });
}

void frmOvrSchedule::layOut() {
    auto* sides = new QHBoxLayout(general_);
    sides->setContentsMargins(0, 0, 0, 0);
    sides->addWidget(startFrame_, 1);
    sides->addWidget(stopFrame_, 1);
    auto* operatorLine = new QHBoxLayout;
    operatorLine->addWidget(findChild<QLabel*>(QStringLiteral("Label_4")));
    operatorLine->addWidget(operatorReadout_, 1);
    auto* buttons = new QHBoxLayout;
    buttons->addWidget(cmdDelete);
    buttons->addStretch(1);
    for (QPushButton* button : {cmdPrevious, cmdNext, cmdCancel, cmdOK}) {
        buttons->addWidget(button);
    }
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(Tab1);
    layout->addWidget(general_, 1);
    layout->addWidget(errorFrame_, 1);
    layout->addWidget(additionalDays_, 1);
    layout->addLayout(operatorLine);
    layout->addWidget(lblZone);
    layout->addWidget(lblNotice);
    layout->addLayout(buttons);
    errorFrame_->hide();
    additionalDays_->hide();
    lblNotice->hide();
}

void frmOvrSchedule::connectSide(OverrideSideFrame& frame, OverrideSide& side) {
    frame.onDate = [this, &side](DateTime date) {
        performEdit([this, &side, date] { editor_.setDate(side, date); });
    };
    frame.onSliderMoved = [this, &side](int value) {
        performEdit([this, &side, value] { editor_.moveSlider(side, value); });
    };
    frame.onSliderSet = [this, &side](int value) {
        performEdit([this, &side, value] { editor_.setSlider(side, value); });
    };
    frame.onCommand = [this, &side](OverrideCommand command) {
        performEdit([&side, command] { side.options.select(command); });
    };
}

void frmOvrSchedule::connectAdditionalDays() {
    additionalDays_->onAdd = [this](DateTime start, DateTime stop) {
        perform([this, start, stop] { editor_.cmdAdd2List(start, stop); });
    };
    additionalDays_->onRemove = [this](const std::string& key) {
        perform([this, key] { editor_.cmdDelList(key); });
    };
}

void frmOvrSchedule::OprID(const std::string& value) {
    editor_.point.OprID = leadingLong(value);
}

void frmOvrSchedule::Load() {
    ignoringErrors(
        [this] { services_.globals.tarnRec().PrepareForm(services_.globals.gCnn2(), *this); });
    perform([this] { editor_.Load(); });
    Tab1->setTabText(generalTab, platform::captionText(editor_.tabCaption()));
}

void frmOvrSchedule::Unload() {
    waiting_.clear();
    editor_.close();
    services_.done.set(true);
}

void frmOvrSchedule::showEditor() {
    const RoutineScope routine(*this);
    if (std::exchange(shown_, true)) {
        perform([this] { editor_.pointPassed(); });
    }
    if (!isUnloaded()) {
        Show();
    }
}

void frmOvrSchedule::requestOrder(platform::InsertAfter insertAfter) {
    ignoringErrors([&] {
        services_.windows.SetWindowPos(windowId(), insertAfter,
                                       platform::noSize | platform::noMove | platform::noActivate);
    });
}

void frmOvrSchedule::bringToFront(std::function<void()> afterwards) {
    if (isUnloaded()) {
        return;
    }
    requestOrder(platform::InsertAfter::Topmost);
    QTimer::singleShot(topmostTime, this, [this, afterwards = std::move(afterwards)] {
        if (!isUnloaded()) {
            requestOrder(platform::InsertAfter::Top);
            afterwards();
        }
    });
}

void frmOvrSchedule::perform(Step step) {
    waiting_.push_back(std::move(step));
    if (running_) {
        return;
    }
    const RoutineScope routine(*this);
    running_ = true;
    // What messages that run within a step would draw is about to be replaced.
    setUpdatesEnabled(false);
    while (!waiting_.empty() && !isUnloaded()) {
        const Step next = std::move(waiting_.front());
        waiting_.pop_front();
        next();
        if (!isUnloaded()) {
            display();
        }
    }
    setUpdatesEnabled(true);
    running_ = false;
}

void frmOvrSchedule::performEdit(Step step) {
    if (!running_) {
        perform(std::move(step));
    }
}

void frmOvrSchedule::completeEntries() {
    // A shortcut leaves the focus, and so a half-typed date, where it is.
    startFrame_->completeEntry();
    stopFrame_->completeEntry();
}

void frmOvrSchedule::cmdOK_Click() {
    if (editor_.cmdOK()) {
        close();
        return;
    }
    if (editor_.errorShown()) {
        Tab1->setCurrentIndex(generalTab);
        display();
        cmdErrOK->setFocus();
        QApplication::beep();
    }
}

void frmOvrSchedule::cmdErrOK_Click() {
    editor_.cmdErrOK();
    display();
    stopFrame_->slider()->setFocus();
}

void frmOvrSchedule::Tab1_Click(int index) {
    if (index == additionalDaysTab && !editor_.additionalDaysUsable()) {
        QApplication::beep();
        Tab1->setCurrentIndex(generalTab);
        return;
    }
    const bool byKeyboard = Tab1->hasFocus();
    display();
    // Otherwise the focus of what was hidden would pass to the next control: Delete.
    if (index == additionalDaysTab) {
        additionalDays_->begin(editor_.today());
    } else {
        startFrame_->slider()->setFocus();
    }
    if (byKeyboard) {
        Tab1->setFocus();
    }
}

void frmOvrSchedule::display() {
    setWindowTitle(platform::titleText(editor_.caption()));
    startFrame_->display(editor_.start);
    stopFrame_->display(editor_.stop);
    additionalDays_->display(editor_.additionalDays());
    setLine(*operatorReadout_, editor_.operatorReadout());
    setLine(*lblZone, editor_.zoneLine());
    if (lblZone->font().bold() != editor_.zoneDiffers()) {
        QFont font = this->font();
        font.setBold(editor_.zoneDiffers());
        lblZone->setFont(font);
    }
    setLine(*lblNotice, editor_.notice());
    lblNotice->setVisible(!editor_.notice().empty());
    if (Tab1->currentIndex() == additionalDaysTab && !editor_.additionalDaysUsable()) {
        const QSignalBlocker blocker(Tab1);
        Tab1->setCurrentIndex(generalTab);
    }
    displayError();
}

void frmOvrSchedule::displayError() {
    const bool error = editor_.errorShown();
    const bool general = Tab1->currentIndex() == generalTab;
    setLine(*errorText_, editor_.errorText());
    for (QPushButton* button : {cmdNext, cmdPrevious, cmdOK, cmdCancel}) {
        button->setEnabled(!error);
    }
    errorFrame_->setVisible(general && error);
    general_->setVisible(general && !error);
    additionalDays_->setVisible(!general);
}

void frmOvrSchedule::keyPressEvent(QKeyEvent* event) {
    const bool confirms = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    if (confirms || event->key() == Qt::Key_Escape) {
        QPushButton* usual = confirms ? cmdOK : cmdCancel;
        (editor_.errorShown() ? cmdErrOK : usual)->click();
        return;
    }
    FormWindow::keyPressEvent(event);
}

} // namespace kintar
