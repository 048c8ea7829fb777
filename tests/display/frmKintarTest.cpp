#include "display/frmKintar.h"

#include "display/CommandLabel.h"
#include "platform/qt/ElidedLabel.h"
#include "platform/qt/PhotoBox.h"

#include "display/DisplayWorld.h"

#include <QAbstractButton>
#include <QElapsedTimer>
#include <QGuiApplication>
#include <QScreen>
#include <QTest>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace kintar {
namespace {

using platform::PhotoBox;
using testing::DisplayWorld;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using testing::RecordingWindowRequests;
using testing::runPending;
using testing::runUntil;

class frmKintarTest : public ::testing::Test {
protected:
    PhotoBox& lead1() { return world.control<PhotoBox>("Lead1"); }
    QColor photoColour() { return lead1().photo().pixelColor(5, 5); }
    void doubleClick(const char* label) {
        QTest::mouseDClick(&world.control<QWidget>(label), Qt::LeftButton);
    }
    /// A click of the pointer, which whatever lies on top there gets.
    void click(const char* command) {
        QWidget& control = world.control<QWidget>(command);
        const QPoint centre = control.mapTo(&world.form(), control.rect().center());
        QWidget* hit = control.isVisible() ? world.form().childAt(centre) : &control;
        QTest::mouseClick(hit, Qt::LeftButton);
    }
    std::string title() { return world.form().windowTitle().toStdString(); }
    std::string setting(const char* key) {
        return world.settings.get(R"(Orvane\Kintar)", key, "none");
    }
    void saveSetting(const char* key, const char* value) {
        world.settings.save(R"(Orvane\Kintar)", key, value);
    }
    platform::Placement placed() {
        const frmKintar& form = world.form();
        return {form.x() * 15, form.y() * 15, form.width() * 15, form.height() * 15};
    }

    DisplayWorld world;
};

TEST_F(frmKintarTest, PreparesItselfFirstThenAsksForNobodysPhotoThenReadsTheImageTypes) {
    objKintar object(world.display);
    EXPECT_THAT(world.companion.tarnRec.statements,
                ElementsAre("PrepareForm frmKintar",
                            "SELECT FileName FROM Images WHERE NameID = 0 AND ImgType = 0",
                            "SELECT LocGrp FROM LocGrp Order By LocGrp",
                            "SELECT LocGrp, Num FROM ImageType WHERE DefaultImage <> 0"));
    EXPECT_EQ(lead1().state(), PhotoBox::State::NoImage);
    EXPECT_EQ(world.text("Lead1"), "No Image");
}

TEST_F(frmKintarTest, TakesItsCaptionsFromTheTextTable) {
    world.companion.tarnRec.texts = {{10202, "Karte & sperren"}};
    objKintar object(world.display);
    EXPECT_EQ(world.text("lblEnable"), "Enable Card");
    EXPECT_EQ(world.text("lblDisAble"), "Karte & sperren");
}

TEST_F(frmKintarTest, ShowsThePhotoTheNameTheEventAndThePlace) {
    objKintar object(world.display);
    world.smith(object);
    ASSERT_TRUE(world.displayed());
    EXPECT_EQ(world.companion.tarnRec.statements.back(),
              "SELECT FileName FROM Images WHERE NameID = 12 AND ImgType = 2");
    EXPECT_EQ(title(), "Smith, John");
    EXPECT_EQ(world.text("lblName"), "Smith, John");
    EXPECT_EQ(world.text("Label_1"), "5:05:00 PM  Valid Access");
    EXPECT_EQ(world.text("Label_2"), "Main Door  Head Office");
    ASSERT_EQ(world.photos.requests.size(), 1U);
    EXPECT_EQ(world.photos.requests[0].photo.folder, world.site / "Data/Images");
    EXPECT_EQ(world.photos.requests[0].photo.fileName, "smith.jpg");
    EXPECT_EQ(lead1().state(), PhotoBox::State::Blank);
    world.photos.answer(0, Qt::red);
    EXPECT_EQ(lead1().state(), PhotoBox::State::Photo);
    EXPECT_EQ(photoColour(), QColor(Qt::red));
    EXPECT_EQ(world.text("Lead1"), "Photo");
}

TEST_F(frmKintarTest, ShowsTheTimeOfTheEventAloneInTheLongTimeFormat) {
    objKintar object(world.display);
    world.smith(object);
    object.DateTime("2012-03-14T00:00:00");
    object.ID(12);
    ASSERT_TRUE(world.displayed());
    EXPECT_EQ(world.text("Label_1"), "12:00:00 AM  Valid Access");
}

TEST_F(frmKintarTest, ShowsThePhotoOfTypeZeroForAGroupWithoutADefaultImageType) {
    objKintar object(world.display);
    object.LocGrp(1);
    object.ID(12);
    ASSERT_TRUE(world.displayed());
    EXPECT_EQ(world.companion.tarnRec.statements.back(),
              "SELECT FileName FROM Images WHERE NameID = 12 AND ImgType = 0");
}

TEST_F(frmKintarTest, ShowsThePhotoOfTypeZeroForAGroupThatIsMissing) {
    objKintar object(world.display);
    object.LocGrp(99);
    object.ID(12);
    ASSERT_TRUE(world.displayed());
    EXPECT_EQ(world.companion.tarnRec.statements.back(),
              "SELECT FileName FROM Images WHERE NameID = 12 AND ImgType = 0");
}

TEST_F(frmKintarTest, ShowsNoImageForAPersonWithoutARowInImages) {
    objKintar object(world.display);
    object.LocGrp(3);
    object.ID(99);
    ASSERT_TRUE(world.displayed());
    EXPECT_EQ(world.text("Lead1"), "No Image");
    EXPECT_THAT(world.photos.requests, IsEmpty());
}

TEST_F(frmKintarTest, ShowsNoImageWhereTheFileIsMissing) {
    objKintar object(world.display);
    world.smith(object);
    ASSERT_TRUE(world.displayed());
    world.photos.answerNone(0);
    EXPECT_EQ(world.text("Lead1"), "No Image");
}

TEST_F(frmKintarTest, ShowsNoImageAndTheTextsWhereTheQueryFails) {
    objKintar object(world.display);
    world.companion.tarnRec.failing = true;
    world.smith(object);
    ASSERT_TRUE(world.displayed());
    EXPECT_EQ(world.text("Lead1"), "No Image");
    EXPECT_EQ(title(), "Smith, John");
    EXPECT_THAT(world.application.boxes, IsEmpty());
}

TEST_F(frmKintarTest, WorksWithoutADatabase) {
    world.companion.broken = true;
    objKintar object(world.display);
    EXPECT_THAT(world.application.boxes, ElementsAre("Problem Instancing TarnSys Object"));
    world.smith(object);
    ASSERT_TRUE(world.displayed());
    EXPECT_EQ(title(), "Smith, John");
    EXPECT_EQ(world.text("Lead1"), "No Image");
    doubleClick("Label_1");
    EXPECT_FALSE(world.visible("lblEnable"));
}

TEST_F(frmKintarTest, ComesToTheTopAndIsAnOrdinaryWindowAgainAfterwards) {
    objKintar object(world.display);
    world.smith(object);
    ASSERT_TRUE(runUntil([&] { return world.windows.placed.size() == 2; }));
    const auto window = static_cast<platform::WindowId>(world.form().winId());
    EXPECT_THAT(world.windows.placed, ElementsAre(RecordingWindowRequests::Placed{window, -1, 19},
                                                  RecordingWindowRequests::Placed{window, 0, 19}));
    EXPECT_THAT(world.windows.foreground, IsEmpty());
}

TEST_F(frmKintarTest, DoesNotStartASecondDisplayWhileOneIsUnderWay) {
    objKintar object(world.display);
    world.form().hide();
    world.application.meanwhile = [&] { world.jones(object); };
    world.smith(object);
    ASSERT_TRUE(world.displayed());
    // The display under way shows the latest values; no other follows it.
    EXPECT_EQ(title(), "Jones, Jane");
    ASSERT_TRUE(runUntil([&] { return world.windows.placed.size() == 2; }));
    EXPECT_EQ(world.photos.requests.size(), 1U);
    EXPECT_EQ(world.photos.requests[0].photo.fileName, "jones.jpg");
}

TEST_F(frmKintarTest, ShowsTheLatestOfSeveralEventsInOneTick) {
    objKintar object(world.display);
    world.smith(object);
    world.jones(object);
    ASSERT_TRUE(world.displayed());
    EXPECT_EQ(title(), "Jones, Jane");
    EXPECT_EQ(world.photos.requests.size(), 1U);
}

TEST_F(frmKintarTest, DisplaysAlsoWhereEventsComeFasterThanItsTimer) {
    objKintar object(world.display);
    QElapsedTimer patience;
    patience.start();
    while (world.windows.placed.empty() && !patience.hasExpired(30000)) {
        world.smith(object);
        QCoreApplication::processEvents();
    }
    EXPECT_EQ(title(), "Smith, John");
}

TEST_F(frmKintarTest, TakesThePhotoAwayWithTheNameItBelongsTo) {
    objKintar object(world.display);
    world.smith(object);
    ASSERT_TRUE(world.displayed());
    world.photos.answer(0, Qt::red);
    world.jones(object);
    // Not displayed yet: everything still is Smith's.
    EXPECT_EQ(title(), "Smith, John");
    EXPECT_EQ(lead1().state(), PhotoBox::State::Photo);
    ASSERT_TRUE(runUntil([&] { return title() == "Jones, Jane"; }));
    EXPECT_EQ(lead1().state(), PhotoBox::State::Blank);
    world.photos.answer(1, Qt::blue);
    EXPECT_EQ(photoColour(), QColor(Qt::blue));
}

TEST_F(frmKintarTest, NeverShowsAPhotoThatComesAfterTheNextName) {
    objKintar object(world.display);
    world.smith(object);
    ASSERT_TRUE(world.displayed());
    world.jones(object);
    ASSERT_TRUE(runUntil([&] { return title() == "Jones, Jane"; }));
    EXPECT_TRUE(world.photos.requests[0].cancelled);
    world.photos.answer(0, Qt::red);
    EXPECT_EQ(lead1().state(), PhotoBox::State::Blank);
    world.photos.answer(1, Qt::blue);
    EXPECT_EQ(photoColour(), QColor(Qt::blue));
    world.photos.answer(0, Qt::red);
    EXPECT_EQ(photoColour(), QColor(Qt::blue));
}

TEST_F(frmKintarTest, ShowsThePhotoOfTheNameThatStandsThereWhileNewerValuesWait) {
    objKintar object(world.display);
    world.smith(object);
    ASSERT_TRUE(world.displayed());
    world.jones(object);
    world.photos.answer(0, Qt::red);
    EXPECT_EQ(title(), "Smith, John");
    EXPECT_EQ(photoColour(), QColor(Qt::red));
}

TEST_F(frmKintarTest, IsReadyForTheNextEventWhileAPhotoIsDecoded) {
    objKintar object(world.display);
    for (int i = 0; i < 5; ++i) {
        world.smith(object);
        ASSERT_TRUE(runUntil([&] { return title() == "Smith, John"; }));
        world.jones(object);
        ASSERT_TRUE(runUntil([&] { return title() == "Jones, Jane"; }));
    }
    EXPECT_EQ(world.photos.requests.size(), 10U);
}

TEST_F(frmKintarTest, OffersTheCommandsToAnOperatorWithTheRight) {
    objKintar object(world.display);
    world.smith(object);
    ASSERT_TRUE(world.displayed());
    EXPECT_FALSE(world.visible("lblEnable"));
    for (const char* label : {"Label_1", "Label_2"}) {
        world.sys.calls.clear();
        doubleClick(label);
        EXPECT_THAT(world.sys.calls, ElementsAre("SetOperator 7", "HasRight L3M2"));
        EXPECT_TRUE(world.visible("lblEnable"));
        EXPECT_TRUE(world.visible("lblDisAble"));
        world.smith(object);
        EXPECT_FALSE(world.visible("lblEnable"));
        EXPECT_FALSE(world.visible("lblDisAble"));
        ASSERT_TRUE(world.displayed());
    }
}

TEST_F(frmKintarTest, OffersNothingToAnOperatorWithoutTheRight) {
    world.sys.right = "L4M2";
    objKintar object(world.display);
    world.smith(object);
    ASSERT_TRUE(world.displayed());
    doubleClick("Label_1");
    EXPECT_FALSE(world.visible("lblEnable"));
    EXPECT_FALSE(world.visible("lblDisAble"));
}

TEST_F(frmKintarTest, OffersNothingWhereTheOperatorCannotBeSet) {
    world.sys.operatorFails = true;
    objKintar object(world.display);
    world.smith(object);
    ASSERT_TRUE(world.displayed());
    doubleClick("Label_1");
    EXPECT_FALSE(world.visible("lblDisAble"));
}

TEST_F(frmKintarTest, DisablesTheCardOfThePersonShown) {
    objKintar object(world.display);
    world.smith(object);
    ASSERT_TRUE(world.displayed());
    doubleClick("Label_2");
    click("lblDisAble");
    EXPECT_EQ(world.site.read("Data/^IMP1.txt"), "I L3 NameID ^12^^^\r\n"
                                                 "T Cards\r\n"
                                                 "F Code ^4711^^^\r\n"
                                                 "F StopDate ^3/14/2012  17:05:00^^^\r\n"
                                                 "W\r\n");
    EXPECT_FALSE(world.visible("lblEnable"));
    EXPECT_FALSE(world.visible("lblDisAble"));
    EXPECT_EQ(world.text("lblStatus"), "Disable command sent");
}

TEST_F(frmKintarTest, EnablesTheCardOfThePersonShown) {
    objKintar object(world.display);
    world.smith(object);
    ASSERT_TRUE(world.displayed());
    doubleClick("Label_2");
    click("lblEnable");
    EXPECT_NE(world.site.read("Data/^IMP1.txt").find("^3/15/2012  00:00:00^"), std::string::npos);
    EXPECT_FALSE(world.visible("lblEnable"));
    EXPECT_FALSE(world.visible("lblDisAble"));
}

TEST_F(frmKintarTest, HidesTheCommandsWhileNewerValuesWaitAndTakesNoClick) {
    objKintar object(world.display);
    world.smith(object);
    ASSERT_TRUE(world.displayed());
    doubleClick("Label_1");
    world.jones(object);
    EXPECT_FALSE(world.visible("lblDisAble"));
    world.sys.calls.clear();
    doubleClick("Label_1");
    EXPECT_THAT(world.sys.calls, IsEmpty());
    EXPECT_FALSE(world.visible("lblDisAble"));
    // A press that was under way when the values came.
    world.control<QAbstractButton>("lblDisAble").click();
    world.control<QAbstractButton>("lblEnable").click();
    EXPECT_FALSE(world.site.has("Data/^IMP1.txt"));
}

TEST_F(frmKintarTest, SwitchesTheCardOfTheNameShownWhileAPhotoIsStillDecoded) {
    objKintar object(world.display);
    world.smith(object);
    ASSERT_TRUE(world.displayed());
    world.jones(object);
    ASSERT_TRUE(runUntil([&] { return title() == "Jones, Jane"; }));
    doubleClick("Label_1");
    world.photos.answer(0, Qt::red);
    click("lblDisAble");
    EXPECT_EQ(title(), "Jones, Jane");
    EXPECT_TRUE(world.site.read("Data/^IMP1.txt").starts_with("I L3 NameID ^13^^^\r\n"));
    EXPECT_NE(world.site.read("Data/^IMP1.txt").find("F Code ^4712^^^"), std::string::npos);
}

TEST_F(frmKintarTest, DoesNotTakeADoubleClickInTheMiddleOfADisplay) {
    objKintar object(world.display);
    world.form().hide();
    world.application.meanwhile = [&] { doubleClick("Label_1"); };
    world.smith(object);
    ASSERT_TRUE(world.displayed());
    EXPECT_THAT(world.sys.calls, IsEmpty());
    EXPECT_FALSE(world.visible("lblDisAble"));
}

TEST_F(frmKintarTest, ReportsACommandThatCouldNotBeWrittenAndStaysUsable) {
    objKintar object(world.display);
    world.smith(object);
    ASSERT_TRUE(world.displayed());
    world.sys.dataPath = world.site / "gone";
    doubleClick("Label_1");
    click("lblDisAble");
    ASSERT_EQ(world.sys.reports.size(), 1U);
    EXPECT_TRUE(world.sys.reports[0].ends_with("\r\nfrmKintar/SetCardState|2"));
    EXPECT_EQ(world.text("lblStatus"), "Card NOT changed");
    EXPECT_THAT(world.application.boxes, IsEmpty());
    world.sys.dataPath = world.site / "Data";
    doubleClick("Label_1");
    EXPECT_EQ(world.text("lblStatus"), "");
    click("lblDisAble");
    EXPECT_TRUE(world.site.has("Data/^IMP1.txt"));
}

TEST_F(frmKintarTest, WritesNoCommandAndReportsNoErrorForACodeOfZero) {
    objKintar object(world.display);
    DisplayWorld::set(object, "John", "Smith", "0");
    object.ID(12);
    ASSERT_TRUE(world.displayed());
    doubleClick("Label_1");
    click("lblDisAble");
    EXPECT_FALSE(world.site.has("Data/^IMP1.txt"));
    EXPECT_FALSE(world.site.has("Errors/KintrAscii.txt"));
    EXPECT_THAT(world.sys.reports, IsEmpty());
    EXPECT_EQ(world.text("lblStatus"), "Card NOT changed");
}

TEST_F(frmKintarTest, ReportsARuleFileWithoutADate) {
    world.site.write("CardEnable.txt", "");
    objKintar object(world.display);
    world.smith(object);
    ASSERT_TRUE(world.displayed());
    doubleClick("Label_1");
    click("lblEnable");
    ASSERT_EQ(world.sys.reports.size(), 1U);
    EXPECT_TRUE(world.sys.reports[0].starts_with("62|"));
    EXPECT_FALSE(world.site.has("Data/^IMP1.txt"));
}

TEST_F(frmKintarTest, NeverTakesTheKeyboard) {
    objKintar object(world.display);
    world.smith(object);
    ASSERT_TRUE(world.displayed());
    EXPECT_TRUE(world.form().windowFlags().testFlag(Qt::WindowDoesNotAcceptFocus));
    EXPECT_TRUE(world.form().testAttribute(Qt::WA_ShowWithoutActivating));
    for (const QWidget* control : world.form().findChildren<QWidget*>()) {
        EXPECT_EQ(control->focusPolicy(), Qt::NoFocus) << control->objectName().toStdString();
    }
}

TEST_F(frmKintarTest, ShowsTextAsPlainTextWhateverItContains) {
    objKintar object(world.display);
    object.LName("[*]<b>O'Brien</b>");
    object.FName("A&B\n\xE2\x80\xAE");
    object.EventDesc("<img src='x'>");
    object.ID(12);
    ASSERT_TRUE(world.displayed());
    EXPECT_EQ(title(), "[*][*]<b>O'Brien</b>, A&B ");
    EXPECT_EQ(world.text("Label_1"), "  <img src='x'>");
    EXPECT_EQ(world.control<QLabel>("Label_1").textFormat(), Qt::PlainText);
}

TEST_F(frmKintarTest, OpensWhereItStoodWithItsDefaults) {
    objKintar object(world.display);
    EXPECT_EQ(placed(), (platform::Placement{0, 0, 3000, 3765}));
    EXPECT_EQ(lead1().geometry().width(), 200);
    EXPECT_LE(lead1().geometry().height(), 177);
    EXPECT_GE(lead1().geometry().height(), 160) << "the letters take too much of the photo";
}

TEST_F(frmKintarTest, OpensASavedWidthOf1000At2400Twips) {
    saveSetting("Width", "1000");
    objKintar object(world.display);
    EXPECT_EQ(placed().width, 2400);
}

TEST_F(frmKintarTest, ComesBackToTheScreenWithItsFrameFromOutside) {
    saveSetting("Left", "9999999");
    saveSetting("Top", "9999999");
    objKintar object(world.display);
    const QRect screen = QGuiApplication::primaryScreen()->availableGeometry();
    EXPECT_TRUE(screen.contains(world.form().frameGeometry()));
    EXPECT_GT(world.form().x(), screen.right() - 300);
    EXPECT_GT(world.form().y(), screen.bottom() - 350);
}

TEST_F(frmKintarTest, IgnoresSettingsThatAreNoNumbers) {
    saveSetting("Width", "wide");
    saveSetting("LHeight", "1e999");
    saveSetting("Height", "-5");
    objKintar object(world.display);
    EXPECT_EQ(placed().width, 2400);
    EXPECT_TRUE(world.form().isVisible());
}

TEST_F(frmKintarTest, SavesItsPlacementWhenItIsUnloaded) {
    {
        objKintar object(world.display);
        world.form().move(40, 60);
        world.form().resize(300, 351);
        runPending();
    }
    EXPECT_EQ(setting("Left"), "600");
    EXPECT_EQ(setting("Top"), "900");
    EXPECT_EQ(setting("Width"), "4500");
    EXPECT_EQ(setting("Height"), "5265");
    EXPECT_EQ(setting("LHeight"), "4155"); // the photo got what the window got
}

TEST_F(frmKintarTest, MovesNothingInTenRoundsOfSavingAndRestoring) {
    saveSetting("Left", "615");
    saveSetting("Top", "307");
    saveSetting("Width", "3010");
    saveSetting("Height", "4000");
    saveSetting("LHeight", "2700");
    platform::Placement first;
    for (int round = 0; round < 10; ++round) {
        objKintar object(world.display);
        runPending();
        if (round == 0) {
            first = placed();
        }
        EXPECT_EQ(placed(), first) << round;
    }
    EXPECT_EQ(setting("LHeight"), "2700");
}

TEST_F(frmKintarTest, KeepsThePreviouslySavedPositionWhenClosedMinimised) {
    saveSetting("Left", "615");
    {
        objKintar object(world.display);
        world.form().move(70, 70);
        world.form().showMinimized();
        runPending();
    }
    EXPECT_EQ(setting("Left"), "615");
    EXPECT_EQ(setting("Width"), "none");
}

TEST_F(frmKintarTest, ShowsAgainAtTheNextEventAfterTheOperatorClosedIt) {
    objKintar object(world.display);
    world.smith(object);
    ASSERT_TRUE(world.displayed());
    world.form().close();
    runPending();
    EXPECT_FALSE(world.display.kintar().exists());
    world.jones(object);
    ASSERT_TRUE(world.displayed());
    EXPECT_TRUE(world.form().isVisible());
    EXPECT_EQ(title(), "Jones, Jane");
}

TEST_F(frmKintarTest, MayBeClosedWhileItLetsWindowMessagesRun) {
    objKintar object(world.display);
    world.form().hide();
    const QPointer<frmKintar> form = &world.form();
    bool aliveWithin = false;
    world.application.meanwhile = [&] {
        form->close();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        aliveWithin = !form.isNull();
    };
    world.smith(object);
    ASSERT_TRUE(runUntil([&] { return form.isNull(); }));
    EXPECT_TRUE(aliveWithin);
    EXPECT_FALSE(world.display.kintar().exists());
    EXPECT_THAT(world.windows.placed, IsEmpty());
    world.jones(object);
    ASSERT_TRUE(world.displayed());
    EXPECT_EQ(title(), "Jones, Jane");
}

TEST_F(frmKintarTest, DropsAPhotoThatComesAfterItsEnd) {
    objKintar object(world.display);
    world.smith(object);
    ASSERT_TRUE(world.displayed());
    world.display.kintar().unload();
    runPending();
    EXPECT_TRUE(world.photos.requests[0].cancelled);
}

TEST_F(frmKintarTest, LaysOutThePhotoOnTopTheTextsBelowAndTheCommandsBelowThose) {
    objKintar object(world.display);
    world.smith(object);
    ASSERT_TRUE(world.displayed());
    doubleClick("Label_1");
    int bottom = 0;
    for (const char* name : {"Lead1", "lblName", "Label_1", "Label_2", "lblEnable"}) {
        const QRect area = world.control<QWidget>(name).geometry();
        EXPECT_GE(area.top(), bottom) << name;
        bottom = area.bottom();
    }
    EXPECT_GE(world.control<QWidget>("lblDisAble").geometry().top(),
              world.control<QWidget>("Label_2").geometry().bottom());
    EXPECT_LE(world.control<QWidget>("lblDisAble").geometry().bottom(), world.form().height());
}

TEST_F(frmKintarTest, MovesNothingUnderThePointerWhenTheCommandsShow) {
    objKintar object(world.display);
    world.smith(object);
    ASSERT_TRUE(world.displayed());
    const QRect before = world.control<QWidget>("Label_2").geometry();
    doubleClick("Label_2");
    EXPECT_EQ(world.control<QWidget>("Label_2").geometry(), before);
}

TEST_F(frmKintarTest, DrawsAPhotoForTheWholeOfAHighDensityScreen) {
    objKintar object(world.display);
    world.smith(object);
    ASSERT_TRUE(world.displayed());
    const double ratio = world.form().devicePixelRatioF();
    EXPECT_EQ(world.photos.requests[0].photo.width, static_cast<int>(lead1().width() * ratio));
    EXPECT_EQ(world.photos.requests[0].photo.height, static_cast<int>(lead1().height() * ratio));
}

} // namespace
} // namespace kintar
