#include "tools/docs/BusReference.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace kintar::docs {

using testing::HasSubstr;

namespace {

class Sample final : public PublicObject {
public:
    void Id(std::int32_t) {}
    [[nodiscard]] bool Done() const { return true; }
    [[nodiscard]] DateTime Start() const { return {}; }
    void setStart(DateTime) {}
    std::int16_t Print(std::int16_t, const std::string&) { return 0; }
};

PublicClass sample() {
    return ClassBuilder<Sample>("objSample", "A sample.")
        .let("ID", &Sample::Id, "A | B.")
        .get("Done", &Sample::Done, "Whether done.", true)
        .getLet("Start", &Sample::Start, &Sample::setStart, "When.")
        .signal("Ended",
                {{"request", ValueType::Int16, false}, {"error", ValueType::String, false}},
                "It has ended.")
        .method("Print", &Sample::Print, {"Loc", "Printer"}, "Prints.")
        .creates([](ObjectSignals&) { return std::make_unique<Sample>(); })
        .build();
}

} // namespace

TEST(BusReference, SignalsAreToldWithTheirArguments) {
    EXPECT_THAT(classReference(sample()),
                HasSubstr("Signal `Ended(n request, s error)`, to the object's creator: It has "
                          "ended.\n"));
}

TEST(BusReference, EveryMemberHasARowInItsOrder) {
    EXPECT_THAT(classReference(sample()),
                HasSubstr("| `ID` | write | `i` | no | A \\| B. |\n"
                          "| `Done` | read | `b` | yes | Whether done. |\n"
                          "| `Start` | read, write | `s` date-time | no | When. |\n"
                          "| `Print` | call | `(n Loc, s Printer)` gives `n` | no | Prints. |\n"));
}

TEST(BusReference, AClassWithoutMembersSaysSo) {
    EXPECT_THAT(classReference(ClassBuilder<Sample>("objEmpty", "Holds nothing.").build()),
                HasSubstr("Holds nothing.\n\nInterface `net.tarnholm.Kintar3.objEmpty`, objects "
                          "`/net/tarnholm/Kintar3/objEmpty/<n>`.\n\nNo members.\n"));
}

TEST(BusReference, TheExampleNamesTheWidthOfItsNumber) {
    EXPECT_THAT(classReference(sample()),
                HasSubstr("object.Set(\"net.tarnholm.Kintar3.objSample\", \"ID\", dbus.Int32(3),"));
}

TEST(BusReference, TheWholeHoldsTheContractTheRawLanguageAndEveryClass) {
    ClassTable table;
    table.add(sample());
    const std::string text = busReference(table, "9.8.7");
    EXPECT_THAT(text, HasSubstr("Kintar3 9.8.7."));
    EXPECT_THAT(text, HasSubstr("org.freedesktop.DBus.Error.PropertyReadOnly"));
    EXPECT_THAT(text, HasSubstr("create CLASS [as NAME]"));
    EXPECT_THAT(text, HasSubstr("### objSample"));
    EXPECT_TRUE(text.ends_with("```\n") && !text.ends_with("\n\n"));
}

} // namespace kintar::docs
