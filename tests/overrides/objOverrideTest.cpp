#include "overrides/objOverride.h"

#include "overrides/FakeOverrides.h"
#include "overrides/OverrideDone.h"
#include "support/FakeServer.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <limits>
#include <memory>
#include <string>
#include <vector>

namespace kintar {
namespace {

using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using namespace kintar::testing;

/// A window that records what it is told, in the one record of the server.
class FakeForm final : public OverrideForm {
public:
    explicit FakeForm(Events& events) : events_(events) {}
    void PointID(std::int32_t value) override { note("PointID", std::to_string(value)); }
    void PointType(std::int16_t value) override { note("PointType", std::to_string(value)); }
    void PointName(const std::string& value) override { note("PointName", value); }
    void LocName(const std::string& value) override { note("LocName", value); }
    void OprName(const std::string& value) override { note("OprName", value); }
    void OprID(const std::string& value) override { note("OprID", value); }
    void SecureOpt(bool value) override { note("SecureOpt", value ? "1" : "0"); }
    void OpenOpt(bool value) override { note("OpenOpt", value ? "1" : "0"); }
    void TZOpt(bool value) override { note("TZOpt", value ? "1" : "0"); }
    void ArmOpt(bool value) override { note("ArmOpt", value ? "1" : "0"); }
    void ByPassOpt(bool value) override { note("ByPassOpt", value ? "1" : "0"); }
    void showEditor() override { note("show", ""); }
    void bringToFront(std::function<void()> afterwards) override {
        note("front", "");
        later = std::move(afterwards);
    }

    std::function<void()> later;
    bool fails = false;

private:
    void note(const std::string& member, const std::string& value) {
        if (fails) {
            throw std::runtime_error("the window cannot");
        }
        events_.push_back(value.empty() ? member : member + " " + value);
    }

    Events& events_;
};

class FakeSignals final : public ObjectSignals {
public:
    void changed(std::string_view member) override { members.emplace_back(member); }
    std::vector<std::string> members;
};

struct Facade {
    FakeServer server;
    FakeForm form{server.events};
    OverrideDone done;
    FakeSignals signals;
    std::unique_ptr<objOverride> object = std::make_unique<objOverride>(
        server.globals, [this]() -> OverrideForm& { return form; }, done, signals);
};

TEST(objOverride, HandsEveryPropertyStraightToTheWindow) {
    Facade it;
    it.server.takeEvents();
    it.object->PointType(3);
    it.object->PointName("Dock door");
    it.object->LocName("Lisbon");
    it.object->OprName("Ann");
    it.object->OprID(7);
    it.object->SecureOpt(true);
    it.object->OpenOpt(false);
    it.object->TZOpt(true);
    it.object->ArmOpt(false);
    it.object->ByPassOpt(true);
    EXPECT_THAT(it.server.events,
                ElementsAre("PointType 3", "PointName Dock door", "LocName Lisbon", "OprName Ann",
                            "OprID 7", "SecureOpt 1", "OpenOpt 0", "TZOpt 1", "ArmOpt 0",
                            "ByPassOpt 1"));
}

TEST(objOverride, OprID0ReachesTheWindowAsTheText0) {
    Facade it;
    it.server.takeEvents();
    it.object->OprID(0);
    EXPECT_THAT(it.server.events, ElementsAre("OprID 0"));
}

TEST(objOverride, PointIDClearsDoneStoresShowsAndBringsToTheFrontThenAnswers) {
    Facade it;
    it.done.set(true);
    it.server.takeEvents();
    int answers = 0;
    it.object->PointID(11, [&](const std::optional<RunTimeError>& error) {
        EXPECT_FALSE(error);
        ++answers;
    });
    EXPECT_FALSE(it.object->Done());
    EXPECT_THAT(it.server.events, ElementsAre("PointID 11", "show", "front"));
    EXPECT_EQ(answers, 0) << "not before the window stands in the ordinary order again";
    it.form.later();
    EXPECT_EQ(answers, 1);
}

TEST(objOverride, TheSettersNeverFail) {
    Facade it;
    it.form.fails = true;
    it.object->PointType(1);
    it.object->OprID(7);
    bool answered = false;
    {
        const auto dropped = std::shared_ptr<void>(nullptr, [&](void*) { answered = true; });
        it.object->PointID(11, [dropped](const std::optional<RunTimeError>&) {});
    }
    EXPECT_TRUE(answered) << "dropped, which answers the call";
}

TEST(objOverride, DoneBeforeAnyPointIsWhatTheLastEditorLeft) {
    Facade it;
    EXPECT_FALSE(it.object->Done()) << "a fresh server";
    it.done.set(true);
    EXPECT_TRUE(it.object->Done());
}

TEST(objOverride, TellsEveryLivingFacadeOfEveryChangeOfDone) {
    Facade it;
    FakeSignals other;
    {
        const objOverride second(
            it.server.globals, [&]() -> OverrideForm& { return it.form; }, it.done, other);
        it.done.set(true);
        it.done.set(true);
        EXPECT_THAT(other.members, ElementsAre("Done", "Done"));
    }
    it.done.set(false);
    EXPECT_THAT(other.members, ElementsAre("Done", "Done")) << "not after its end";
    EXPECT_THAT(it.signals.members, ElementsAre("Done", "Done", "Done"));
}

TEST(objOverride, JoinsTheSharedLifetime) {
    Facade it;
    EXPECT_EQ(it.server.globals.gInstanceCount, 1);
    EXPECT_THAT(it.server.events, Contains("new TarnSys"));
    FakePlace editor("frmOvrSchedule", it.server.events);
    it.server.globals.forms.place(FormId::frmOvrSchedule, editor);
    it.server.takeEvents();
    it.object.reset();
    EXPECT_EQ(it.server.events.front(), "unload frmOvrSchedule") << "before it counts down";
    EXPECT_EQ(it.server.globals.gInstanceCount, 0);
    EXPECT_THAT(it.server.events, Contains("close data"));
}

TEST(objOverride, RaisesOverflowOfTheCountAndIsToldOfNothing) {
    Facade it;
    FakeSignals other;
    it.server.globals.gInstanceCount = std::numeric_limits<std::int16_t>::max();
    EXPECT_THROW(objOverride(
                     it.server.globals, [&]() -> OverrideForm& { return it.form; }, it.done, other),
                 RunTimeError);
    it.done.set(true);
    EXPECT_THAT(other.members, IsEmpty());
}

TEST(objOverride, IsDescribedInSlotOrder) {
    Facade it;
    const PublicClass described = objOverride::describe(
        it.server.globals, [&]() -> OverrideForm& { return it.form; }, it.done);
    std::vector<std::string> names;
    for (const Member& member : described.members) {
        names.push_back(member.name);
        EXPECT_EQ(member.kind,
                  member.name == "Done" ? MemberKind::ReadOnly : MemberKind::WriteOnly);
        EXPECT_EQ(member.signalsChange, member.name == "Done");
    }
    EXPECT_THAT(names,
                ElementsAre("PointID", "PointType", "PointName", "LocName", "OprName", "OprID",
                            "SecureOpt", "OpenOpt", "TZOpt", "ArmOpt", "ByPassOpt", "Done"));
    EXPECT_TRUE(described.members.front().setLater);
}

} // namespace
} // namespace kintar
