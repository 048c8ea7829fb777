#include "host/ServedTest.h"

#include <gmock/gmock.h>

#include <fstream>
#include <sstream>

namespace kintar::host {

using testing::HasSubstr;
using testing::StartsWith;

namespace {

struct Outcome {
    int status = 0;
    std::string out;
    std::string err;
};

class KintarctlTest : public ServedTest {
protected:
    // Runs the program by a shell, which redirects.
    Outcome run(const std::string& arguments, const std::string& input = "") {
        const std::string base = bus.folder() + "/run";
        std::ofstream(base + ".in") << input;
        ChildProcess program({"sh", "-c",
                              std::string(KINTARCTL) + " " + arguments + " <" + base + ".in >" +
                                  base + ".out 2>" + base + ".err"},
                             {{"DBUS_SESSION_BUS_ADDRESS", bus.address()}});
        const int status = program.wait();
        return {status, contents(base + ".out"), contents(base + ".err")};
    }

    static std::string contents(const std::string& path) {
        std::ostringstream text;
        text << std::ifstream(path).rdbuf();
        return text.str();
    }
};

} // namespace

TEST_F(KintarctlTest, TellsClassesVersionAndInterfaces) {
    serve();
    EXPECT_EQ(run("classes").out, "objPlain\nobjWitness\nobjLater\nobjBox\nobjBroken\nobjKintar\n");
    EXPECT_EQ(run("version").out, "1.2.3\n");
    EXPECT_THAT(run("introspect").out, HasSubstr("net.tarnholm.Kintar3.Server"));
    const Outcome unknown = run("introspect /net/other");
    EXPECT_EQ(unknown.status, 1);
    EXPECT_THAT(unknown.err, StartsWith("kintarctl: org.freedesktop.DBus.Error.UnknownObject: "));
}

TEST_F(KintarctlTest, RawCarriesOutEveryKindOfLineOverOneConnection) {
    serve();
    const Outcome outcome = run("raw", "create objPlain as p\n"
                                       "\n# a comment\n"
                                       "set p Number -5\n"
                                       "set p Text \"two words\\nand 'more'\"\n"
                                       "set p Flag true\n"
                                       "set p Moment 2012-03-14T17:05:00\n"
                                       "get p Answer\n"
                                       "getall p\n"
                                       "call p Add 40 2\n"
                                       "call p Touch\n"
                                       "call p Greet x\n"
                                       "wait 1\n"
                                       "create objWitness as w\n"
                                       "release p\n"
                                       "get w Log\n");
    EXPECT_EQ(outcome.err, "");
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.out, "/net/tarnholm/Kintar3/objPlain/1\n"
                           "-5\n"
                           "Answer=-5\nShort=0\nFlag=true\nText=two words\\nand 'more'\n"
                           "Moment=2012-03-14T17:05:00\n"
                           "42\n"
                           "x-\n"
                           "/net/tarnholm/Kintar3/objWitness/2\n"
                           "+plain1;Number=-5;-plain1;\n");
}

TEST_F(KintarctlTest, RawTellsTheMembersOfAnObject) {
    serve();
    const Outcome outcome = run("raw", "create objLater as l\nmembers l\n");
    EXPECT_THAT(outcome.out, HasSubstr("property Quick i write\nproperty Slow i write\n"));
}

TEST_F(KintarctlTest, RawReportsAnErrorWithItsNameAndGoesOn) {
    serve();
    const Outcome outcome =
        run("raw", "create objMissing\ncreate objPlain as p\ncall p Overflow\nget p Number\n");
    EXPECT_EQ(outcome.status, 1);
    EXPECT_EQ(outcome.out, "/net/tarnholm/Kintar3/objPlain/1\n");
    EXPECT_THAT(outcome.err, StartsWith("line 1: org.freedesktop.DBus.Error.UnknownObject: "));
    EXPECT_THAT(outcome.err, HasSubstr("line 3: net.tarnholm.Kintar3.Error.RunTime: Run-time "
                                       "error '6': Overflow\n"));
    EXPECT_THAT(outcome.err, HasSubstr("line 4: org.freedesktop.DBus.Error.AccessDenied: "));
}

TEST_F(KintarctlTest, RawEndsAtTheFirstErrorWhereAsked) {
    serve();
    const Outcome outcome = run("raw --stop", "create objMissing\ncreate objPlain\n");
    EXPECT_EQ(outcome.status, 1);
    EXPECT_EQ(outcome.out, "");
}

TEST_F(KintarctlTest, RawRefusesLinesThatAreNone) {
    serve();
    for (const char* line :
         {"fly away", "create", "create objPlain als p", "create objPlain as", "get p Answer",
          "set o", "wait soon", "wait -1", "get \"o", "release", "call o"}) {
        const Outcome outcome = run("raw", std::string("create objPlain as o\n") + line + "\n");
        EXPECT_EQ(outcome.status, 2) << line;
        EXPECT_THAT(outcome.err, StartsWith("line 2: ")) << line;
    }
}

TEST_F(KintarctlTest, RawRefusesValuesOfAnotherTypeBeforeTheyAreSent) {
    serve();
    for (const char* line :
         {"set p Number 5x", "set p Number 2147483648", "set p Short 32768", "set p Flag yes",
          "set p Number \"\"", "set p Missing 1", "set p Touch 1", "call p Number",
          "call p Add 1 2 3", "call p Add a 2"}) {
        const Outcome outcome = run("raw", std::string("create objPlain as p\n") + line + "\n");
        EXPECT_EQ(outcome.status, 2) << line;
        EXPECT_THAT(outcome.err, StartsWith("line 2: ")) << line;
    }
    EXPECT_EQ(run("raw", "create objPlain as p\nset p Moment tomorrow\n").status, 1);
    EXPECT_EQ(run("raw", "create objPlain as p\ncall p Add 1\n").status, 1);
}

TEST_F(KintarctlTest, RawReleasesItsObjectsYoungestFirstAtTheEnd) {
    serve();
    run("raw", "create objPlain\ncreate objLater\n");
    EXPECT_EQ(run("raw", "create objWitness as w\nget w Log\n").out,
              "/net/tarnholm/Kintar3/objWitness/3\n+plain1;+later2;-later2;-plain1;\n");
}

TEST_F(KintarctlTest, PhotoSetsWhatWasGivenAndTheNumberLast) {
    serve();
    const Outcome outcome =
        run("photo --id 17 --locgrp 3 --locname Gate --fname Ada --lname \"O'Brien\" --device R1 "
            "--event Granted --datetime 2012-03-14T17:05:00 --code 0012 --opr 4 --for 0");
    EXPECT_EQ(outcome.status, 0) << outcome.err;
    EXPECT_EQ(run("raw", "create objWitness as w\nget w Log\n").out,
              "/net/tarnholm/Kintar3/objWitness/2\n"
              "+kintar1;LocGrp=3;LocName=Gate;FName=Ada;LName=O'Brien;Device=R1;EventDesc=Granted;"
              "DateTime=2012-03-14T17:05:00;Code=0012;OprID=4;ID=17;-kintar1;\n");
}

TEST_F(KintarctlTest, PhotoHoldsItsObjectUntilItIsInterrupted) {
    serve();
    BusClient watcher(bus.address());
    const std::string witness = watcher.create("objWitness");
    ChildProcess photo({KINTARCTL, "photo", "--id", "17"},
                       {{"DBUS_SESSION_BUS_ADDRESS", bus.address()}});
    while (logOf(watcher, witness).find("ID=17") == std::string::npos) {
    }
    photo.signal(SIGINT);
    EXPECT_EQ(photo.wait(), 0);
    EXPECT_EQ(logOf(watcher, witness), "+kintar1;ID=17;-kintar1;");
}

TEST_F(KintarctlTest, PhotoFailsWhereTheServerGoes) {
    serve();
    BusClient watcher(bus.address());
    const std::string witness = watcher.create("objWitness");
    const std::string errors = bus.folder() + "/errors";
    ChildProcess photo({"sh", "-c", std::string(KINTARCTL) + " photo --id 17 2>" + errors},
                       {{"DBUS_SESSION_BUS_ADDRESS", bus.address()}});
    while (logOf(watcher, witness).find("ID=17") == std::string::npos) {
    }
    server->signal(SIGTERM);
    EXPECT_EQ(photo.wait(), 1);
    EXPECT_THAT(contents(errors), HasSubstr("the server has gone"));
}

TEST_F(KintarctlTest, WrongArgumentsAreRefused) {
    for (const char* arguments : {"", "fly", "photo", "photo --id x", "photo --id 99999999999",
                                  "photo --id 1 --for -1", "raw extra", "classes --x"}) {
        const Outcome outcome = run(arguments);
        EXPECT_EQ(outcome.status, 2) << arguments;
        EXPECT_NE(outcome.err, "") << arguments;
    }
}

TEST_F(KintarctlTest, HelpHasExamplesAndExitStatuses) {
    EXPECT_EQ(run("--help").status, 0);
    EXPECT_THAT(run("--help").out, HasSubstr("Exit status: 0 done; 1 "));
    EXPECT_THAT(run("photo --help").out, HasSubstr("closes all windows of the server"));
    EXPECT_THAT(run("raw --help").out, HasSubstr("create CLASS [as NAME]"));
}

TEST_F(KintarctlTest, WithoutABusItSaysSo) {
    ChildProcess program(
        {"sh", "-c", std::string(KINTARCTL) + " classes 2>" + bus.folder() + "/errors"},
        {{"DBUS_SESSION_BUS_ADDRESS", "unix:path=" + bus.folder() + "/nothing"}});
    EXPECT_EQ(program.wait(), 3);
    EXPECT_THAT(contents(bus.folder() + "/errors"), HasSubstr("no session bus"));
}

TEST_F(KintarctlTest, WithoutAServerItSaysSo) {
    const Outcome outcome = run("classes");
    EXPECT_EQ(outcome.status, 1);
    EXPECT_THAT(outcome.err, HasSubstr("org.freedesktop.DBus.Error.ServiceUnknown"));
}

} // namespace kintar::host
