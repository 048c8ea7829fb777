#include "display/frmKintar.h"

#include "base/RunTimeError.h"
#include "base/Twips.h"
#include "display/CommandLabel.h"
#include "display/EventText.h"
#include "platform/qt/Controls.h"
#include "platform/qt/ElidedLabel.h"
#include "platform/qt/PhotoBox.h"
#include "platform/qt/PlainText.h"
#include "server/IgnoringErrors.h"
#include "server/TextNumbers.h"

#include <QEvent>
#include <QResizeEvent>

#include <algorithm>
#include <chrono>
#include <optional>

namespace kintar {

namespace {

constexpr const char* settingsSection = R"(Orvane\Kintar)";
constexpr platform::Placement usualPlacement{0, 0, 3000, 3765};
constexpr int usualImageHeight = 2655;
constexpr int leastWidth = 2400;
/// Up to this window width, in pixels, the name is written in letters of the usual size.
constexpr double usualNameWidth = 240;
constexpr std::chrono::milliseconds displayDelay{1};
constexpr std::chrono::milliseconds topmostTime{100};

// Dark enough for white letters, on light and dark windows alike.
constexpr QColor enableColour(0x1B, 0x6E, 0x3A);
constexpr QColor disableColour(0xB3, 0x26, 0x1E);

void setCaption(CommandLabel& label, const std::string& text) {
    label.setText(platform::oneLine(text));
    label.setAccessibleName(platform::oneLine(text));
}

/// A timer that runs goes on: started anew by each of many events, it would never come to its end.
void enable(QTimer& timer) {
    if (!timer.isActive()) {
        timer.start();
    }
}

void setArea(QWidget& control, const Area& area) {
    control.setGeometry(area.left, area.top, area.width, area.height);
}

} // namespace

frmKintar::frmKintar(const DisplayServices& services)
    : FormWindow("frmKintar"), services_(services),
      cardCommand_(services.files, services.clock, services.formats) {
    setWindowFlag(Qt::WindowDoesNotAcceptFocus);
    setAttribute(Qt::WA_ShowWithoutActivating);
    // Without the focus the window is never the active one, and tooltips would stay away.
    setAttribute(Qt::WA_AlwaysShowToolTips);
    setWindowTitle(QStringLiteral("Photo"));
    makeControls();
    connectControls();
}

void frmKintar::makeControls() {
    Lead1 = new platform::PhotoBox(services_.photos, this);
    platform::nameControl(*Lead1, "Lead1", "image", {});
    lblName = new platform::ElidedLabel(this);
    platform::nameControl(*lblName, "lblName", "label", {});
    Label1 = new platform::ElidedLabel(this);
    platform::nameControl(*Label1, "Label_1", "label", {});
    Label2 = new platform::ElidedLabel(this);
    platform::nameControl(*Label2, "Label_2", "label", {});
    lblEnable = new CommandLabel(CommandLabel::Sign::Tick, enableColour, this);
    platform::nameControl(*lblEnable, "lblEnable", "label", {});
    setCaption(*lblEnable, "Enable Card");
    lblDisAble = new CommandLabel(CommandLabel::Sign::Cross, disableColour, this);
    platform::nameControl(*lblDisAble, "lblDisAble", "label", {});
    setCaption(*lblDisAble, "Disable Card");
    lblStatus = new platform::ElidedLabel(this);
    platform::nameControl(*lblStatus, "lblStatus", "label", {});
    lblStatus->hide();
    platform::nameControl(Timer1, "Timer1", "timer");
    platform::nameControl(Timer2, "Timer2", "timer");
    Timer1.setParent(this);
    Timer2.setParent(this);
    hideCommands();
}

void frmKintar::connectControls() {
    Timer2.setInterval(displayDelay);
    Timer2.setTimerType(Qt::PreciseTimer);
    connect(&Timer2, &QTimer::timeout, this, &frmKintar::Timer2_Timer);
    Timer1.setInterval(topmostTime);
    connect(&Timer1, &QTimer::timeout, this, &frmKintar::Timer1_Timer);
    Label1->onDoubleClick([this] { Label_DblClick(); });
    Label2->onDoubleClick([this] { Label_DblClick(); });
    connect(lblEnable, &CommandLabel::clicked, this, &frmKintar::lblEnable_Click);
    connect(lblDisAble, &CommandLabel::clicked, this, &frmKintar::lblDisAble_Click);
}

std::vector<FormCaption> frmKintar::captions() {
    return {
        {textNumber::enableCard, [this](const std::string& text) { setCaption(*lblEnable, text); }},
        {textNumber::disableCard,
         [this](const std::string& text) { setCaption(*lblDisAble, text); }}};
}

void frmKintar::Load() {
    ignoringErrors(
        [this] { services_.globals.tarnRec().PrepareForm(services_.globals.gCnn2(), *this); });
    platform::Placement wanted = usualPlacement;
    mLHeight = usualImageHeight;
    ignoringErrors([&] {
        wanted = platform::readPlacement(services_.settings, settingsSection, usualPlacement);
        mLHeight = std::max(0, platform::settingTwips(services_.settings, settingsSection,
                                                      "LHeight", usualImageHeight));
    });
    place(wanted);
    if (placement().width < leastWidth) {
        resize(pixelsFromTwips(leastWidth), height());
    }
    setMinimumHeight(leastPhotoHeight(layoutInput()));
    mHeight = placement().height;
    layOut();
    LoadImage(0, 0);
    ignoringErrors(
        [this] { mImageTypes.build(services_.globals.tarnRec(), services_.globals.gCnn()); });
    mTimer1Free = true;
    mShowReady = true;
    mWidth = placement().width;
    services_.globals.gPhotoReady = true;
}

void frmKintar::Unload() {
    Timer1.stop();
    Timer2.stop();
    if (isMinimized()) {
        return;
    }
    ignoringErrors([this] {
        platform::savePlacement(services_.settings, settingsSection, placement());
        services_.settings.save(settingsSection, "LHeight", std::to_string(mLHeight));
    });
}

void frmKintar::Kintar(std::int32_t id, std::int32_t locGrp, const std::string& fName,
                       const std::string& lName, const std::string& dateTime,
                       const std::string& eventDesc, const std::string& device,
                       const std::string& locName, const std::string& code, std::int32_t oprID) {
    ensureLoaded();
    services_.globals.gPhotoReady = false;
    // From here to the display the window shows somebody else than a command would switch.
    mNewerWait = true;
    hideCommands();
    ID = id;
    LocGrp = locGrp;
    FName = fName;
    LName = lName;
    DateTime = dateTime;
    EventDesc = eventDesc;
    Device = device;
    LocName = locName;
    Code = code;
    OprID = oprID;
    if (mShowReady) {
        enable(Timer2);
    }
    services_.globals.gPhotoReady = true;
}

void frmKintar::Timer2_Timer() {
    const RoutineScope routine(*this);
    mShowReady = false;
    Timer2.stop();
    if (!isVisible()) {
        show();
        ignoringErrors([this] { services_.application.runPendingWindowMessages(); });
        if (isUnloaded()) {
            return;
        }
    }
    std::int16_t imgType = 0;
    ignoringErrors([&] { imgType = mImageTypes.of(LocGrp); });
    LoadImage(ID, imgType);
    showTexts();
    requestOrder(platform::InsertAfter::Topmost);
    hideCommands();
    if (mTimer1Free) {
        enable(Timer1);
    }
    mShowReady = true;
}

void frmKintar::Timer1_Timer() {
    const RoutineScope routine(*this);
    mTimer1Free = false;
    Timer1.stop();
    requestOrder(platform::InsertAfter::Top);
    mTimer1Free = true;
}

void frmKintar::LoadImage(std::int32_t id, std::int16_t imgType) {
    const RoutineScope routine(*this);
    std::optional<std::string> fileName;
    std::string folder;
    ignoringErrors([&] {
        const Recordset rows = services_.globals.tarnRec().OpenRecordset(
            photoStatement(id, imgType), services_.globals.gCnn());
        if (!rows.atEnd()) {
            folder = platform::rulePath(sys().DataPath(), R"(\Images)");
            fileName = rows.field("FileName").text();
        }
    });
    if (fileName) {
        Lead1->load(folder, *fileName);
    } else {
        Lead1->showNoImage();
    }
    layOut();
}

void frmKintar::showTexts() {
    const std::string caption = eventCaption(LName, FName);
    setWindowTitle(platform::titleText(caption));
    lblName->setLine(caption);
    Label1->setLine(eventLine(DateTime, EventDesc));
    Label2->setLine(placeLine(Device, LocName));
    setStatus("", false);
    mNewerWait = false;
}

void frmKintar::requestOrder(platform::InsertAfter insertAfter) {
    ignoringErrors([&] {
        services_.windows.SetWindowPos(windowId(), insertAfter,
                                       platform::noSize | platform::noMove | platform::noActivate);
    });
}

void frmKintar::Label_DblClick() {
    const RoutineScope routine(*this);
    if (mNewerWait) {
        return;
    }
    bool right = false;
    // An operator who could not be set has no right: what is asked next would be somebody else's.
    ignoringErrors([&] {
        sys().SetOperator(OprID);
        right = sys().HasRight(cardRight(LocGrp));
    });
    if (right) {
        setStatus("", false);
        layOut();
        lblEnable->show();
        lblDisAble->show();
    }
}

void frmKintar::lblEnable_Click() {
    const RoutineScope routine(*this);
    hideCommands();
    if (!mNewerWait) {
        SetCardState(true);
    }
}

void frmKintar::lblDisAble_Click() {
    const RoutineScope routine(*this);
    hideCommands();
    if (!mNewerWait) {
        SetCardState(false);
    }
}

void frmKintar::SetCardState(bool enable) {
    bool dropped = false;
    try {
        dropped = cardCommand_.write(
            {enable, ID, LocGrp, Code, services_.application.folder(), sys().DataPath()});
    } catch (const std::exception& error) {
        services_.globals.reportError(error, "frmKintar/SetCardState");
    }
    if (!dropped) {
        setStatus("Card NOT changed", true);
    } else {
        setStatus(enable ? "Enable command sent" : "Disable command sent", false);
    }
}

void frmKintar::hideCommands() {
    lblDisAble->hide();
    lblEnable->hide();
}

void frmKintar::setStatus(const char* text, bool bad) {
    lblStatus->setLine(text);
    // It stands where the commands stand, and would take their clicks.
    lblStatus->setVisible(*text != '\0');
    QFont font = Label1->font();
    font.setBold(bad);
    lblStatus->setFont(font);
}

TarnSys& frmKintar::sys() {
    if (!services_.globals.gSys) {
        throw RunTimeError::objectNotSet();
    }
    return *services_.globals.gSys;
}

/// Bold, and larger in a wide window: it is read from further away.
QFont frmKintar::nameFont() const {
    QFont large = font();
    large.setBold(true);
    const double scale = std::clamp(width() / usualNameWidth, 1.0, 1.6);
    if (large.pointSizeF() > 0) {
        large.setPointSizeF(large.pointSizeF() * scale);
    }
    return large;
}

PhotoLayoutInput frmKintar::layoutInput() const {
    return {width(),
            height(),
            pixelsFromTwips(mLHeight),
            QFontMetrics(nameFont()).height(),
            fontMetrics().height(),
            std::max(lblEnable->leastWidth(), lblDisAble->leastWidth()),
            lblEnable->sizeHint().height()};
}

void frmKintar::layOut() {
    const PhotoLayout layout = photoLayout(layoutInput());
    setArea(*Lead1, layout.lead1);
    lblName->setFont(nameFont());
    setArea(*lblName, layout.lblName);
    setArea(*Label1, layout.label1);
    setArea(*Label2, layout.label2);
    setArea(*lblEnable, layout.lblEnable);
    setArea(*lblDisAble, layout.lblDisAble);
    setArea(*lblStatus, layout.lblStatus);
}

void frmKintar::resizeEvent(QResizeEvent* event) {
    FormWindow::resizeEvent(event);
    if (mHeight != 0) {
        // What the window gains or loses in height is the photo's.
        const std::int32_t height = placement().height;
        mLHeight = std::max(0, mLHeight + height - std::exchange(mHeight, height));
    }
    mWidth = placement().width;
    layOut();
}

void frmKintar::changeEvent(QEvent* event) {
    FormWindow::changeEvent(event);
    const bool madeControls = lblStatus != nullptr;
    if (event->type() == QEvent::FontChange && madeControls) {
        setMinimumHeight(leastPhotoHeight(layoutInput()));
        layOut();
    }
}

} // namespace kintar
