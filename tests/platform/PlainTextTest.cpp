#include "platform/qt/PlainText.h"

#include <QLabel>
#include <QPushButton>

#include <gtest/gtest.h>

namespace kintar::platform {
namespace {

TEST(PlainText, PutsBlanksInThePlaceOfLineBreaksAndControlCharacters) {
    EXPECT_EQ(oneLine("a\r\nb\tc\x01"
                      "d\x7F"),
              QStringLiteral("a  b c d "));
    EXPECT_EQ(oneLine(std::string_view("a\0b", 3)), QStringLiteral("a b"));
    EXPECT_EQ(oneLine("a\xE2\x80\xA8"
                      "b"),
              QStringLiteral("a b"));
}

TEST(PlainText, LeavesOutWhatTurnsTheDirectionOfOtherText) {
    EXPECT_EQ(oneLine("\xE2\x80\xAE"
                      "abc\xE2\x81\xA6"),
              QStringLiteral("abc"));
    EXPECT_EQ(oneLine("\xD7\x90\xD7\x91"), QStringLiteral("\u05D0\u05D1"));
}

TEST(PlainText, ShowsAReplacementForWhatIsNoUtf8) {
    EXPECT_EQ(oneLine("a\xFF"
                      "b"),
              QStringLiteral("a\uFFFDb"));
}

TEST(PlainText, CutsWhatNoWindowCouldShow) {
    EXPECT_EQ(oneLine(std::string(10'000'000, 'x')).size(), 4096);
}

TEST(PlainText, ShowsATitleAsItStands) {
    QWidget window;
    window.setWindowTitle(titleText("a[*]b &c <b>"));
    window.setWindowModified(true);
    EXPECT_EQ(window.windowTitle(), QStringLiteral("a[*][*]b &c <b>"));
    EXPECT_EQ(titleText("plain"), QStringLiteral("plain"));
}

TEST(PlainText, UnderlinesNoLetterOfACaption) {
    QPushButton button(captionText("R&D && more"));
    EXPECT_TRUE(button.shortcut().isEmpty());
    EXPECT_EQ(button.text(), QStringLiteral("R&&D &&&& more"));
}

TEST(PlainText, ShowsATooltipWithItsSigns) {
    EXPECT_EQ(tooltipText("<b>&</b>"), QStringLiteral("<span>&lt;b&gt;&amp;&lt;/b&gt;</span>"));
    EXPECT_TRUE(tooltipText("").isEmpty());
}

TEST(PlainText, MakesALabelPlain) {
    QLabel label;
    makePlain(label);
    EXPECT_EQ(label.textFormat(), Qt::PlainText);
}

} // namespace
} // namespace kintar::platform
