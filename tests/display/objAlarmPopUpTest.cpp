#include "display/objAlarmPopUp.h"

#include "support/FakeServer.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <limits>

namespace kintar {
namespace {

using ::testing::Contains;
using ::testing::ElementsAre;
using testing::Events;
using testing::FakeServer;
using ::testing::IsEmpty;

class FakeAlarmForm final : public display::AlarmForm {
public:
    void WsHandle(std::int32_t window) override { note("WsHandle " + std::to_string(window)); }
    void setAlarm(const std::string& text) override { note("alarm " + text); }
    void show() override {
        note("show");
        if (failing) {
            throw std::runtime_error("no display");
        }
    }
    void setForeColor(std::int32_t colour) override { note("colour " + std::to_string(colour)); }
    void setCaption(const std::string& text) override { note("caption '" + text + "'"); }
    void makeTopmost() override { note("topmost"); }
    bool disableTicked() override {
        note("ticked?");
        return ticked;
    }

    Events events;
    bool ticked = false;
    bool failing = false;

private:
    void note(std::string event) { events.push_back(std::move(event)); }
};

struct Alarm {
    FakeServer server;
    FakeAlarmForm form;
    std::unique_ptr<objAlarmPopUp> object = make();

    std::unique_ptr<objAlarmPopUp> make() {
        return std::make_unique<objAlarmPopUp>(server.globals,
                                               [this]() -> display::AlarmForm& { return form; });
    }
};

TEST(objAlarmPopUpTest, ShowsAnAlarmInItsOrderOfSteps) {
    Alarm alarm;
    alarm.object->WsHandle(77);
    alarm.object->ForeColor(255);
    alarm.object->LocName("North");
    EXPECT_THAT(alarm.form.events, IsEmpty());
    alarm.object->EventString("Door forced");
    EXPECT_THAT(alarm.form.events, ElementsAre("WsHandle 77", "alarm Door forced", "show",
                                               "colour 255", "caption '  North'", "topmost"));
}

TEST(objAlarmPopUpTest, PutsTwoBlanksBehindTheTitleAlsoWithoutALocation) {
    Alarm alarm;
    alarm.object->EventString("Door forced");
    EXPECT_THAT(alarm.form.events, Contains("caption '  '"));
}

TEST(objAlarmPopUpTest, IsEnabledUnlessTheBoxIsTicked) {
    Alarm alarm;
    EXPECT_TRUE(alarm.object->Enabled());
    alarm.form.ticked = true;
    EXPECT_FALSE(alarm.object->Enabled());
    EXPECT_THAT(alarm.form.events, ElementsAre("ticked?", "ticked?"));
}

TEST(objAlarmPopUpTest, GoesOnWithTheNextStepAfterOneThatFailed) {
    Alarm alarm;
    alarm.form.failing = true;
    alarm.object->EventString("Door forced");
    EXPECT_EQ(alarm.form.events.back(), "topmost");
}

TEST(objAlarmPopUpTest, JoinsTheSharedLifetimeAndUnloadsItsWindowFirst) {
    Alarm alarm;
    testing::FakePlace place("frmAlarmPopUp", alarm.server.events);
    alarm.server.globals.forms.place(FormId::frmAlarmPopUp, place);
    EXPECT_EQ(alarm.server.globals.gInstanceCount, 1);
    alarm.server.takeEvents();
    alarm.object.reset();
    EXPECT_EQ(alarm.server.globals.gInstanceCount, 0);
    EXPECT_THAT(alarm.server.events, ElementsAre("unload frmAlarmPopUp", "unload frmAlarmPopUp",
                                                 "close data", "close setup", "release TarnSys"));
}

TEST(objAlarmPopUpTest, LivesAfterAFailedStartUp) {
    FakeServer server;
    server.companion.faults.system = true;
    FakeAlarmForm form;
    objAlarmPopUp object(server.globals, [&form]() -> display::AlarmForm& { return form; });
    object.EventString("Door forced");
    EXPECT_THAT(form.events, Contains("alarm Door forced"));
}

TEST(objAlarmPopUpTest, RaisesAnOverflowOfTheCountAndCountsNothing) {
    FakeServer server;
    FakeAlarmForm form;
    server.globals.gInstanceCount = std::numeric_limits<std::int16_t>::max();
    EXPECT_THROW(objAlarmPopUp(server.globals, [&form]() -> display::AlarmForm& { return form; }),
                 RunTimeError);
    EXPECT_EQ(server.globals.gInstanceCount, std::numeric_limits<std::int16_t>::max());
}

TEST(objAlarmPopUpTest, HasItsMembersInSlotOrder) {
    FakeServer server;
    const PublicClass described = objAlarmPopUp::describe(server.globals, {});
    std::vector<std::string> names;
    for (const Member& member : described.members) {
        names.push_back(member.name);
    }
    EXPECT_THAT(names, ElementsAre("EventString", "ForeColor", "WsHandle", "LocName", "Enabled"));
    EXPECT_EQ(described.members.back().kind, MemberKind::ReadOnly);
    EXPECT_EQ(described.members.back().type, ValueType::Boolean);
}

} // namespace
} // namespace kintar
