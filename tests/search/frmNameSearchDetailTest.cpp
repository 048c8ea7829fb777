// The detail pane of the name search window.
#include "platform/qt/PhotoBox.h"
#include "search/NameSearchFixture.h"

namespace kintar::testing {
namespace {

using State = platform::PhotoBox::State;

class NameDetail : public NameSearch {
protected:
    platform::PhotoBox& photo() { return control<platform::PhotoBox>("Lead1"); }
    QString value(int row) { return udfs().topLevelItem(row)->text(1); }
    void openValue(int row) {
        const QRect place = udfs().visualItemRect(udfs().topLevelItem(row));
        const QPoint point(10, place.center().y());
        QTest::mouseClick(udfs().viewport(), Qt::LeftButton, {}, point);
        QTest::mouseDClick(udfs().viewport(), Qt::LeftButton, {}, point);
    }
};

TEST_F(NameDetail, ThePhotoIsLoadedFromTheImagesFolderAtTheSizeOfItsArea) {
    open();
    search();
    ASSERT_EQ(twins.photos.requests.size(), 1U);
    EXPECT_EQ(twins.photos.requests[0].folder, "/site/Data/Images");
    EXPECT_EQ(twins.photos.requests[0].fileName, "moss.jpg");
    EXPECT_EQ(twins.photos.requests[0].width, 157);
    EXPECT_EQ(twins.photos.requests[0].height, 115);
    EXPECT_EQ(photo().state(), State::Blank);
}

TEST_F(NameDetail, TheAreaIsCutToTheProportionsOfThePhoto) {
    open();
    search();
    QImage face(100, 115, QImage::Format_RGB32);
    ASSERT_TRUE(twins.photos.answer(1, face));
    EXPECT_EQ(photo().size(), QSize(100, 115));
    clickRow(1);
    EXPECT_EQ(photo().size(), QSize(157, 115));
    QImage wide(157, 50, QImage::Format_RGB32);
    ASSERT_TRUE(twins.photos.answer(2, wide));
    EXPECT_EQ(photo().size(), QSize(157, 50));
}

TEST_F(NameDetail, TheLastOneSelectedWinsAndNothingQueuesUp) {
    open();
    search();
    for (int round = 0; round < 20; ++round) {
        QTest::keyClick(&list(), Qt::Key_Down);
        QTest::keyClick(&list(), Qt::Key_Up);
    }
    EXPECT_EQ(twins.photos.waiting(), 1U);
    QImage face(10, 10, QImage::Format_RGB32);
    EXPECT_FALSE(twins.photos.answer(1, face));
    EXPECT_EQ(photo().state(), State::Blank);
    ASSERT_TRUE(
        twins.photos.answer(static_cast<std::uint32_t>(twins.photos.requests.size()), face));
    EXPECT_EQ(photo().state(), State::Photo);
}

TEST_F(NameDetail, ANameWithoutAPhotoShowsNone) {
    open();
    search();
    QImage face(10, 10, QImage::Format_RGB32);
    ASSERT_TRUE(twins.photos.answer(1, face));
    clickRow(2);
    EXPECT_EQ(photo().state(), State::NoImage);
    EXPECT_EQ(twins.photos.requests.size(), 1U);
}

TEST_F(NameDetail, AVisitorIsMarked) {
    open();
    search();
    EXPECT_FALSE(control<QLabel>("visitorMark").isVisible());
    clickRow(1);
    EXPECT_EQ(label("Label_1"), "   Visitor");
    clickRow(2);
    EXPECT_EQ(label("Label_1"), "");
    EXPECT_FALSE(control<QLabel>("visitorMark").isVisible());
}

TEST_F(NameDetail, AVisitorWhoseStatusTakesThePlaceOfTheMarkIsMarkedAboveIt) {
    twins.tables().answer(useQuery(10), {"Status", "Loc", "LastDate:d", "LastDev", "InOut"},
                          {Row{1, 3, "2012-03-14 17:05:00", 7, "I  N  N  N"}});
    open();
    search();
    clickRow(1);
    EXPECT_EQ(label("Label_1"), "     I  N  N  N");
    EXPECT_TRUE(control<QLabel>("visitorMark").isVisible());
    clickRow(2);
    EXPECT_FALSE(control<QLabel>("visitorMark").isVisible());
}

TEST_F(NameDetail, TheFieldsButtonShowsAndHides) {
    open();
    search();
    EXPECT_FALSE(udfs().isVisible());
    click("cmdUDF");
    ASSERT_TRUE(udfs().isVisible());
    ASSERT_EQ(udfs().topLevelItemCount(), 3);
    EXPECT_EQ(value(0), QLatin1String("car of 30"));
    EXPECT_EQ(value(1), QLatin1String("secret"));
    click("cmdUDF");
    EXPECT_FALSE(udfs().isVisible());
}

TEST_F(NameDetail, HiddenValuesAreWithheldFromThoseWhoMayNot) {
    open(1, 0);
    search();
    click("cmdUDF");
    ASSERT_EQ(udfs().topLevelItemCount(), 3);
    EXPECT_EQ(udfs().topLevelItem(1)->text(0), QLatin1String("Salary"));
    EXPECT_EQ(value(1), QString());
    EXPECT_EQ(value(0), QLatin1String("car of 30"));
}

TEST_F(NameDetail, APermissionThatCannotBeFoundOutIsNone) {
    twins.tables().forget("Select AllMenus From PwProfile Where ID = 1");
    open();
    search();
    click("cmdUDF");
    EXPECT_EQ(value(1), QString());
}

TEST_F(NameDetail, FieldsNeverStandBesideAnotherName) {
    open();
    search();
    click("cmdUDF");
    clickRow(1);
    EXPECT_EQ(value(0), QLatin1String("car of 10"));
    search("none");
    EXPECT_FALSE(udfs().isVisible());
    EXPECT_EQ(udfs().topLevelItemCount(), 0);
}

TEST_F(NameDetail, FieldsAreGoneWhenAnotherOperatorOpensTheDialog) {
    open();
    search();
    click("cmdUDF");
    ASSERT_EQ(value(1), QLatin1String("secret"));
    open(1, 0);
    EXPECT_FALSE(udfs().isVisible());
    EXPECT_EQ(udfs().topLevelItemCount(), 0);
    click("cmdUDF");
    EXPECT_EQ(value(1), QString());
}

TEST_F(NameDetail, FieldsOfNobodyAreNotShown) {
    open();
    click("cmdUDF");
    EXPECT_FALSE(udfs().isVisible());
    EXPECT_EQ(label("lblCount"), "No name is selected.");
}

TEST_F(NameDetail, AWebAddressOpensInTheBrowser) {
    open();
    search();
    click("cmdUDF");
    openValue(2);
    EXPECT_EQ(twins.browser.opened, std::vector<std::string>{"https://example.com/30"});
    udfs().setCurrentItem(udfs().topLevelItem(2));
    udfs().setFocus();
    QTest::keyClick(&udfs(), Qt::Key_Return);
    EXPECT_EQ(twins.browser.opened.size(), 2U);
}

TEST_F(NameDetail, WhatIsNoWebAddressIsRefusedInTheStatusLine) {
    open();
    search();
    click("cmdUDF");
    openValue(0);
    EXPECT_TRUE(twins.browser.opened.empty());
    EXPECT_EQ(label("lblCount"), "Only web addresses can be opened.");
}

TEST_F(NameDetail, AWithheldValueOpensNothing) {
    open(1, 0);
    search();
    click("cmdUDF");
    openValue(1);
    EXPECT_TRUE(twins.browser.opened.empty());
    EXPECT_EQ(label("lblCount"), "3 names found.");
}

TEST_F(NameDetail, ABrowserThatDoesNotStartIsSaid) {
    twins.browser.works = false;
    open();
    search();
    click("cmdUDF");
    openValue(2);
    EXPECT_EQ(label("lblCount"), "The web browser could not be started.");
}

TEST_F(NameDetail, TextFromOutsideStaysPlain) {
    twins.tables().answer(allNames, nameColumns, {Row{30, "<b>Moss</b> & [*]\nKate", 0, 0, "x"}});
    open();
    search();
    EXPECT_EQ(shown(), std::vector<std::string>{"<b>Moss</b> & [*] Kate"});
    clickRow(0);
    EXPECT_EQ(title(), "<b>Moss</b> & [*][*] Kate  HQ:  Search Names");
    const QString tooltip = list().model()->index(0, 0).data(Qt::ToolTipRole).toString();
    EXPECT_TRUE(tooltip.contains(QLatin1String("&lt;b&gt;")));
}

} // namespace
} // namespace kintar::testing
