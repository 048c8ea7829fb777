#include "platform/qt/FileSettings.h"

#include "support/Environment.h"
#include "support/ScratchFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <system_error>

namespace kintar::platform {
namespace {

using testing::Environment;
using ::testing::HasSubstr;
using testing::ScratchFolder;

constexpr const char* section = R"(Orvane\Kintar)";

class FileSettingsTest : public ::testing::Test {
protected:
    ScratchFolder folder;
    FileSettings settings{QString::fromStdString(folder / "Tarnholm_Gates/settings.ini")};

    std::string file() { return folder.read("Tarnholm_Gates/settings.ini"); }
    void write(std::string_view text) {
        folder.makeFolder("Tarnholm_Gates");
        folder.write("Tarnholm_Gates/settings.ini", text);
    }
};

TEST(FileSettings, LiesInTheUsersConfigurationFolder) {
    const Environment config("XDG_CONFIG_HOME", "/home/guard/.config");
    EXPECT_EQ(FileSettings::usualPath(),
              QStringLiteral("/home/guard/.config/Tarnholm_Gates/settings.ini"));
}

TEST_F(FileSettingsTest, GivesTheDefaultWhereNothingIsSaved) {
    EXPECT_EQ(settings.get(section, "Left", "0"), "0");
    EXPECT_FALSE(folder.has("Tarnholm_Gates"));
}

TEST_F(FileSettingsTest, SavesAsTextThatAnyProgramReads) {
    settings.save(section, "Left", "150");
    settings.save(section, "Top", "-30");
    settings.save(R"(Orvane\WS\Settings)", "AlarmPopUp", "1");
    EXPECT_EQ(file(), "[Orvane\\Kintar]\nLeft=150\nTop=-30\n"
                      "\n[Orvane\\WS\\Settings]\nAlarmPopUp=1\n");
    EXPECT_EQ(settings.get(section, "Left", "0"), "150");
}

TEST_F(FileSettingsTest, SeesWhatAnotherProgramWrote) {
    settings.save(section, "Left", "150");
    write("[Orvane\\Kintar]\nLeft=99999\n");
    EXPECT_EQ(settings.get(section, "Left", "0"), "99999");
    write("");
    EXPECT_EQ(settings.get(section, "Left", "0"), "0");
}

TEST_F(FileSettingsTest, KeepsWhatAnotherProgramWrote) {
    settings.save(section, "Left", "150");
    write("[Orvane\\Kintar]\r\nLeft=7\r\n\r\n[Other]\r\nKey=kept\r\n");
    settings.save(section, "Top", "8");
    EXPECT_EQ(file(), "[Orvane\\Kintar]\nLeft=7\nTop=8\n\n[Other]\nKey=kept\n");
}

TEST_F(FileSettingsTest, IgnoresTheCaseOfSectionsAndKeys) {
    write("[orvane\\KINTAR]\nleft=7\n");
    EXPECT_EQ(settings.get(section, "Left", "0"), "7");
}

TEST_F(FileSettingsTest, KeepsEveryCharacterOfAValue) {
    for (const std::string& value :
         {std::string("a=b;c#d[e]"), std::string(" blanks "), std::string("line\r\nbreak\ttab"),
          std::string("100%41"), std::string("\xE2\x82\xAC \xD8\xA7"), std::string(),
          std::string("a\0b", 3), std::string("@Variant(\x7F)"), std::string("\"quoted\"")}) {
        settings.save(section, "Key", value);
        EXPECT_EQ(settings.get(section, "Key", "none"), value);
        EXPECT_EQ(file().find('\0'), std::string::npos);
    }
}

TEST_F(FileSettingsTest, KeepsKeysThatLookLikeSomethingElse) {
    for (const char* key : {"[key]", ";key", "#key", "a=b"}) {
        settings.save(section, key, "7");
        EXPECT_EQ(settings.get(section, key, "none"), "7") << key;
    }
}

TEST_F(FileSettingsTest, ReadsPastLinesThatAreNoSettings) {
    write(
        "Left=1\n; comment\n# comment\nnonsense\n=5\n[Orvane\\Kintar\n[Orvane\\Kintar]\nLeft=3\n");
    EXPECT_EQ(settings.get(section, "Left", "0"), "3");
}

TEST_F(FileSettingsTest, LeavesAFileThatIsNotOursAsItIs) {
    const std::string large(2 << 20, 'x');
    write(large);
    EXPECT_EQ(settings.get(section, "Left", "0"), "0");
    EXPECT_THROW(settings.save(section, "Left", "1"), std::system_error);
    EXPECT_EQ(file().size(), large.size());
}

TEST_F(FileSettingsTest, SaysThatItCannotSave) {
    folder.write("Tarnholm_Gates", "a file where the folder should be");
    try {
        settings.save(section, "Left", "1");
        FAIL() << "nothing was said";
    } catch (const std::system_error& error) {
        EXPECT_THAT(error.what(), HasSubstr("Tarnholm_Gates/settings.ini"));
    }
    EXPECT_EQ(settings.get(section, "Left", "0"), "0");
}

TEST_F(FileSettingsTest, LeavesNoOtherFileBehind) {
    settings.save(section, "Left", "1");
    settings.save(section, "Left", "2");
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(folder / "Tarnholm_Gates"), {}), 1);
}

} // namespace
} // namespace kintar::platform
