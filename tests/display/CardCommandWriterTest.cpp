#include "display/CardCommandWriter.h"

#include "base/RunTimeError.h"
#include "platform/PosixFiles.h"
#include "support/FakeClock.h"
#include "support/ScratchFolder.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <system_error>

namespace kintar {
namespace {

constexpr const char* disableCommand = "I L3 NameID ^12^^^\r\n"
                                       "T Cards\r\n"
                                       "F Code ^4711^^^\r\n"
                                       "F StopDate ^3/14/2012  17:05:00^^^\r\n"
                                       "W\r\n";

/// Real files, with another workstation that acts in the middle of a command.
class BusyFiles final : public platform::Files {
public:
    std::optional<std::string> read(const std::string& path, std::size_t limit) override {
        return real_.read(path, limit);
    }
    void deleteIfExists(const std::string& path) override { real_.deleteIfExists(path); }
    void append(const std::string& path, std::string_view text) override {
        real_.append(path, text);
    }
    std::vector<std::string> names(const std::string& folder) override {
        std::vector<std::string> found = real_.names(folder);
        if (afterListing) {
            afterListing();
        }
        return found;
    }
    bool createWhole(const std::string& path, std::string_view content) override {
        return real_.createWhole(path, content);
    }

    std::function<void()> afterListing;

private:
    platform::PosixFiles real_;
};

class CardCommandWriterTest : public ::testing::Test {
protected:
    CardCommandWriterTest() {
        site.makeFolder("Errors");
        site.makeFolder("Data");
    }

    bool write(bool enable, const std::string& code = "4711") {
        return writer.write({enable, 12, 3, code, site.path(), site / "Data"});
    }

    testing::ScratchFolder site;
    testing::FakeClock clock{*DateTime::fromFields(2012, 3, 14, 17, 5, 0)};
    BusyFiles files;
    CardCommandWriter writer{files, clock, LocaleFormats{}};
};

TEST_F(CardCommandWriterTest, StagesAndDropsTheSameBytes) {
    EXPECT_TRUE(write(false));
    EXPECT_EQ(site.read("Data/^IMP1.txt"), disableCommand);
    EXPECT_EQ(site.read("Errors/KintrAscii.txt"), disableCommand);
}

TEST_F(CardCommandWriterTest, ReplacesWhatWasStagedBefore) {
    site.write("Errors/KintrAscii.txt", "an older command");
    EXPECT_TRUE(write(false));
    EXPECT_EQ(site.read("Errors/KintrAscii.txt"), disableCommand);
}

TEST_F(CardCommandWriterTest, ReadsTheRuleFileWhenEnabling) {
    site.write("CardEnable.txt", "7\r\n18:00\r\n");
    EXPECT_TRUE(write(true));
    EXPECT_NE(site.read("Data/^IMP1.txt").find("^3/21/2012  18:00:00^"), std::string::npos);
}

TEST_F(CardCommandWriterTest, TakesTheFirstFreeNameAndNeverReplacesOne) {
    site.write("Data/^IMP1.txt", "one");
    site.write("Data/^imp2.TXT", "two");
    site.write("Data/^IMP4.txt", "four");
    EXPECT_TRUE(write(false));
    EXPECT_EQ(site.read("Data/^IMP1.txt"), "one");
    EXPECT_EQ(site.read("Data/^IMP3.txt"), disableCommand);
    EXPECT_EQ(site.read("Data/^IMP4.txt"), "four");
}

TEST_F(CardCommandWriterTest, GoesOnToTheNextNumberWhereANameIsTakenInThatMoment) {
    files.afterListing = [this] {
        site.write("Data/^IMP1.txt", "another workstation's");
        site.write("Data/^IMP2.txt", "a third one's");
    };
    EXPECT_TRUE(write(false));
    EXPECT_EQ(site.read("Data/^IMP1.txt"), "another workstation's");
    EXPECT_EQ(site.read("Data/^IMP3.txt"), disableCommand);
}

TEST_F(CardCommandWriterTest, DropsItsOwnCommandWhereAnotherServerStagedMeanwhile) {
    files.afterListing = [this] { site.write("Errors/KintrAscii.txt", "another server's"); };
    EXPECT_TRUE(write(false));
    EXPECT_EQ(site.read("Data/^IMP1.txt"), disableCommand);
}

TEST_F(CardCommandWriterTest, WritesNothingForACodeOfZeroButDeletesWhatWasStaged) {
    site.write("Errors/KintrAscii.txt", "an older command");
    EXPECT_FALSE(write(false, "0"));
    EXPECT_FALSE(site.has("Errors/KintrAscii.txt"));
    EXPECT_FALSE(site.has("Data/^IMP1.txt"));
}

TEST_F(CardCommandWriterTest, WritesNothingForACodeThatIsNoNumber) {
    EXPECT_THROW(write(false, "12\r\nW"), RunTimeError);
    EXPECT_FALSE(site.has("Errors/KintrAscii.txt"));
    EXPECT_FALSE(site.has("Data/^IMP1.txt"));
}

TEST_F(CardCommandWriterTest, WritesNothingForARuleFileWithoutADate) {
    site.write("CardEnable.txt", "");
    EXPECT_THROW(write(true), RunTimeError);
    EXPECT_FALSE(site.has("Errors/KintrAscii.txt"));
    EXPECT_FALSE(site.has("Data/^IMP1.txt"));
}

TEST_F(CardCommandWriterTest, WritesNothingWhereTheRuleFileCannotBeRead) {
    site.makeFolder("CardEnable.txt");
    EXPECT_THROW(write(true), std::system_error);
    EXPECT_FALSE(site.has("Data/^IMP1.txt"));
}

TEST_F(CardCommandWriterTest, DoesNotMakeTheErrorsFolder) {
    std::filesystem::remove(site / "Errors");
    EXPECT_THROW(write(false), std::system_error);
    EXPECT_FALSE(site.has("Errors"));
    EXPECT_FALSE(site.has("Data/^IMP1.txt"));
}

TEST_F(CardCommandWriterTest, LeavesTheStagedCommandWhereTheSharedFolderIsMissing) {
    std::filesystem::remove(site / "Data");
    EXPECT_THROW(write(false), std::system_error);
    EXPECT_EQ(site.read("Errors/KintrAscii.txt"), disableCommand);
}

TEST_F(CardCommandWriterTest, LeavesTheStagedCommandWhereEveryNameIsTaken) {
    for (int number = 1; number <= 32000; ++number) {
        site.write("Data/^IMP" + std::to_string(number) + ".txt", "");
    }
    EXPECT_THROW(write(false), RunTimeError);
    EXPECT_EQ(site.read("Errors/KintrAscii.txt"), disableCommand);
    EXPECT_FALSE(site.has("Data/^IMP32001.txt"));
}

} // namespace
} // namespace kintar
