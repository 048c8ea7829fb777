#include "server/ClassTable.h"

#include <gtest/gtest.h>

namespace kintar {

namespace {

class Sample final : public PublicObject {
public:
    void setNumber(std::int32_t value) { number = value; }
    [[nodiscard]] std::int32_t getNumber() const { return number; }
    void setText(const std::string& value) { text = value; }
    std::int16_t Add(std::int16_t a, const std::string& b) {
        return static_cast<std::int16_t>(a + std::stoi(b));
    }
    void Clear() { number = 0; }
    void Count(std::int32_t value, const Completion& completion) {
        number = value;
        completion(std::nullopt);
    }

    std::int32_t number = 0;
    std::string text;
};

ClassBuilder<Sample> sample(const std::string& name = "objSample") {
    ClassBuilder<Sample> builder(name, "A sample.");
    builder.creates([](ObjectSignals&) { return std::make_unique<Sample>(); });
    return builder;
}

} // namespace

TEST(ClassTable, FindsClassesAndMembersByTheirExactNames) {
    ClassTable table;
    table.add(sample().let("Number", &Sample::setNumber, "A number.").build());
    ASSERT_NE(table.find("objSample"), nullptr);
    EXPECT_EQ(table.find("objsample"), nullptr);
    EXPECT_NE(table.find("objSample")->find("Number"), nullptr);
    EXPECT_EQ(table.find("objSample")->find("number"), nullptr);
}

TEST(ClassTable, KeepsClassesAndMembersInTheirOrder) {
    ClassTable table;
    table.add(
        sample("objB").let("Z", &Sample::setNumber, "").let("A", &Sample::setText, "").build());
    table.add(sample("objA").build());
    EXPECT_EQ(table.classes()[0].name, "objB");
    EXPECT_EQ(table.classes()[1].name, "objA");
    EXPECT_EQ(table.classes()[0].members[0].name, "Z");
    EXPECT_EQ(table.classes()[0].members[1].name, "A");
}

TEST(ClassTable, RefusesNamesThatAreThereTwiceWithoutRegardToCase) {
    ClassTable table;
    table.add(sample().build());
    EXPECT_THROW(table.add(sample("OBJSAMPLE").build()), std::logic_error);
    EXPECT_THROW(table.add(sample("objOther")
                               .let("ID", &Sample::setNumber, "")
                               .let("Id", &Sample::setText, "")
                               .build()),
                 std::logic_error);
    EXPECT_EQ(table.classes().size(), 1u);
}

TEST(ClassTable, RefusesWhatIsNoName) {
    ClassTable table;
    for (const char* name : {"", "1st", "a.b", "a b", "\xC3\xBC"}) {
        EXPECT_THROW(table.add(sample(name).build()), std::logic_error) << name;
        EXPECT_THROW(table.add(sample().let(name, &Sample::setNumber, "").build()),
                     std::logic_error)
            << name;
    }
}

TEST(ClassTable, RefusesMembersWithoutTheHandlersOfTheirKind) {
    const auto add = [](const auto& spoil) {
        PublicClass described = sample().let("Number", &Sample::setNumber, "").build();
        spoil(described.members.front());
        ClassTable().add(std::move(described));
    };
    EXPECT_NO_THROW(add([](Member&) {}));
    EXPECT_THROW(add([](Member& member) { member.set = nullptr; }), std::logic_error);
    EXPECT_THROW(add([](Member& member) { member.kind = MemberKind::ReadOnly; }), std::logic_error);
    EXPECT_THROW(add([](Member& member) { member.kind = MemberKind::Method; }), std::logic_error);
    EXPECT_THROW(add([](Member& member) { member.type = ValueType::None; }), std::logic_error);
    EXPECT_THROW(add([](Member& member) { member.signalsChange = true; }), std::logic_error);
}

TEST(ClassTable, RefusesARequiredParameterBehindAnOptionalOne) {
    PublicClass described = sample().method("Add", &Sample::Add, {"a", "b"}, "").build();
    described.members.front().parameters.front().optional = true;
    EXPECT_THROW(ClassTable().add(std::move(described)), std::logic_error);
}

TEST(ClassTable, RefusesAClassThatCannotBeCreated) {
    EXPECT_THROW(ClassTable().add(ClassBuilder<Sample>("objSample", "").build()), std::logic_error);
}

TEST(ClassBuilder, TypesComeFromTheMemberFunctions) {
    const PublicClass described = sample()
                                      .getLet("Number", &Sample::getNumber, &Sample::setNumber, "")
                                      .method("Add", &Sample::Add, {"a", "b"}, "")
                                      .method("Clear", &Sample::Clear, {}, "")
                                      .build();
    EXPECT_EQ(described.members[0].kind, MemberKind::ReadWrite);
    EXPECT_EQ(described.members[0].type, ValueType::Int32);
    EXPECT_EQ(described.members[1].type, ValueType::Int16);
    EXPECT_EQ(described.members[1].parameters[1].type, ValueType::String);
    EXPECT_EQ(described.members[1].parameters[1].name, "b");
    EXPECT_EQ(described.members[2].type, ValueType::None);
}

TEST(ClassBuilder, AMethodMayAnswerLaterButHasNoResultThen) {
    PublicClass described =
        sample().methodLater("Count", &Sample::Count, "Value", "Counts.").build();
    Member& member = described.members.front();
    EXPECT_EQ(member.kind, MemberKind::Method);
    EXPECT_EQ(member.parameters.at(0).type, ValueType::Int32);
    Sample object;
    int answers = 0;
    member.callLater(object, {std::int32_t{7}},
                     [&answers](const std::optional<RunTimeError>&) { ++answers; });
    EXPECT_EQ(object.number, 7);
    EXPECT_EQ(answers, 1);
    member.type = ValueType::Int32;
    ClassTable table;
    EXPECT_THROW(table.add(described), std::logic_error);
}

TEST(ClassBuilder, HandlersReachTheObject) {
    const PublicClass described = sample()
                                      .getLet("Number", &Sample::getNumber, &Sample::setNumber, "")
                                      .method("Add", &Sample::Add, {"a", "b"}, "")
                                      .build();
    Sample object;
    described.members[0].set(object, std::int32_t{41});
    EXPECT_EQ(std::get<std::int32_t>(described.members[0].get(object)), 41);
    EXPECT_EQ(std::get<std::int16_t>(
                  described.members[1].call(object, {std::int16_t{40}, std::string("2")})),
              42);
}

} // namespace kintar
