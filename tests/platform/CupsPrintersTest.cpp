// The print system's programs are scripts of the test here.
#include "platform/qt/CupsPrinters.h"

#include "support/Environment.h"
#include "support/ScratchFolder.h"

#include <QCoreApplication>
#include <QEventLoop>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <optional>

namespace kintar::platform {
namespace {

using ::testing::HasSubstr;
using ::testing::SizeIs;

constexpr std::chrono::seconds patience{60};

class CupsPrintersTest : public ::testing::Test {
protected:
    void program(const char* name, const std::string& script) {
        folder.write(name, "#!/bin/sh\n" + script + "\n");
        std::filesystem::permissions(folder / name, std::filesystem::perms::owner_all);
    }
    PrinterList listOf(CupsPrinters& printers) {
        std::optional<PrinterList> answer;
        QEventLoop loop;
        printers.list([&](const PrinterList& list) {
            answer = list;
            loop.quit();
        });
        EXPECT_FALSE(answer.has_value()) << "answered inside the call";
        loop.exec();
        return *answer;
    }
    std::string submitted(CupsPrinters& printers, const std::string& device) {
        std::optional<std::string> answer;
        QEventLoop loop;
        printers.submit(device, "/a file.pdf", "Who is in", 2, [&](const std::string& error) {
            answer = error;
            loop.quit();
        });
        loop.exec();
        return *answer;
    }

    testing::ScratchFolder folder;
    testing::Environment path{"PATH", folder.path() + ":/usr/bin:/bin"};
};

TEST_F(CupsPrintersTest, ListsWhatThePrintSystemHas) {
    program("lpstat", "echo 'device for Gate: x:y'");
    CupsPrinters printers(patience);
    EXPECT_THAT(listOf(printers).printers, SizeIs(1));
}

TEST_F(CupsPrintersTest, ListsNothingWhereThereIsNoPrintSystem) {
    program("lpstat", "echo 'lpstat: No destinations added.' >&2; exit 1");
    CupsPrinters printers(patience);
    EXPECT_EQ(listOf(printers), PrinterList());
}

TEST_F(CupsPrintersTest, ListsWhatItKnewLastWhereTheAnswerTakesTooLong) {
    program("lpstat", "echo 'device for Gate: x:y'");
    CupsPrinters printers(std::chrono::seconds(2));
    listOf(printers);
    program("lpstat", "exec sleep 1000");
    EXPECT_THAT(listOf(printers).printers, SizeIs(1));
}

TEST_F(CupsPrintersTest, HandsOverFileTitleCopiesAndPrinter) {
    program("lp", "printf '%s|' \"$@\" >'" + (folder / "asked") + "'");
    CupsPrinters printers(patience);
    EXPECT_EQ(submitted(printers, "Gate"), "");
    EXPECT_EQ(folder.read("asked"), "-d|Gate|-n|2|-t|Who is in|-o|fit-to-page|--|/a file.pdf|");
    EXPECT_EQ(submitted(printers, ""), "");
    EXPECT_EQ(folder.read("asked"), "-n|2|-t|Who is in|-o|fit-to-page|--|/a file.pdf|");
}

TEST_F(CupsPrintersTest, SaysWhyAJobWasNotTaken) {
    program("lp", "echo 'lp: The printer or class does not exist.' >&2; exit 1");
    CupsPrinters printers(patience);
    EXPECT_THAT(submitted(printers, "Gone"), HasSubstr("The printer or class does not exist."));
    program("lp", "exec sleep 1000");
    CupsPrinters impatient(std::chrono::milliseconds(50));
    EXPECT_EQ(submitted(impatient, "Gate"), "The print system does not answer.");
}

TEST_F(CupsPrintersTest, SaysThatThereIsNoPrintSystem) {
    const testing::Environment nowhere("PATH", folder.path());
    CupsPrinters printers(patience);
    EXPECT_THAT(submitted(printers, "Gate"), HasSubstr("there is no print system"));
}

TEST_F(CupsPrintersTest, AnswersNothingAfterACancel) {
    program("lpstat", "exec sleep 1000");
    bool answered = false;
    {
        CupsPrinters printers(patience);
        printers.list([&answered](const PrinterList&) { answered = true; });
        printers.cancel();
        QCoreApplication::processEvents();
    }
    EXPECT_FALSE(answered);
}

} // namespace
} // namespace kintar::platform

int main(int argc, char** argv) {
    ::testing::InitGoogleTest(&argc, argv);
    const QCoreApplication application(argc, argv);
    return RUN_ALL_TESTS();
}
