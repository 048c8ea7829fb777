#include "platform/CupsAnswers.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace kintar::platform {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

TEST(CupsAnswers, NamePrintersTheirPortsAndTheDefault) {
    const PrinterList list = readPrinterList("system default destination: Front\n"
                                             "device for Front: socket://10.0.0.7:9100\n"
                                             "device for Gate: ipp://gate/ipp\n");
    EXPECT_EQ(list.defaultDevice, "Front");
    EXPECT_THAT(list.printers, ElementsAre(Printer{"Front", "CUPS", "socket://10.0.0.7:9100"},
                                           Printer{"Gate", "CUPS", "ipp://gate/ipp"}));
}

TEST(CupsAnswers, MayNameNoDefaultAndNoPrinter) {
    EXPECT_EQ(readPrinterList("no system default destination\n"), PrinterList());
    EXPECT_EQ(readPrinterList(""), PrinterList());
}

TEST(CupsAnswers, AreReadPastLinesOfAnyOtherKind) {
    EXPECT_THAT(readPrinterList("device for\ndevice for : x\ndevice for Odd\n\n\xFF\n").printers,
                IsEmpty());
}

TEST(CupsAnswers, ComplainWithoutTheNameOfTheProgram) {
    EXPECT_EQ(firstComplaint("lp: The printer or class does not exist.\nmore\n"),
              "The printer or class does not exist.");
    EXPECT_EQ(firstComplaint(""), "");
}

} // namespace
} // namespace kintar::platform
