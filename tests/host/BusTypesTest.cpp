#include "host/BusTypes.h"
#include "host/BusNames.h"

#include <gtest/gtest.h>

namespace kintar::host {

namespace {

Member method(std::vector<Parameter> parameters) {
    Member made;
    made.name = "M";
    made.kind = MemberKind::Method;
    made.parameters = std::move(parameters);
    return made;
}

} // namespace

TEST(BusTypes, EachTypeHasTheSignatureOfTheContract) {
    EXPECT_STREQ(signatureOf(ValueType::Int32), "i");
    EXPECT_STREQ(signatureOf(ValueType::Int16), "n");
    EXPECT_STREQ(signatureOf(ValueType::Boolean), "b");
    EXPECT_STREQ(signatureOf(ValueType::String), "s");
    EXPECT_STREQ(signatureOf(ValueType::DateTime), "s");
    EXPECT_STREQ(signatureOf(ValueType::None), "");
}

TEST(BusTypes, ArgumentsAreDescribedWithTheirNames) {
    const Member add =
        method({{"a", ValueType::Int32, false}, {"when", ValueType::DateTime, true}});
    EXPECT_EQ(describeArguments(add), "(i a, [s when])");
    EXPECT_EQ(describeArguments(method({})), "()");
}

TEST(BusTypes, OnlyOptionalArgumentsMayBeLeftOut) {
    const Member some = method({{"a", ValueType::Int32, false},
                                {"b", ValueType::Int16, true},
                                {"c", ValueType::String, true}});
    EXPECT_EQ(countArguments(some, "i"), 1);
    EXPECT_EQ(countArguments(some, "in"), 2);
    EXPECT_EQ(countArguments(some, "ins"), 3);
    EXPECT_EQ(countArguments(some, ""), -1);
    EXPECT_EQ(countArguments(some, "is"), -1);
    EXPECT_EQ(countArguments(some, "insi"), -1);
    EXPECT_EQ(countArguments(method({}), ""), 0);
    EXPECT_EQ(countArguments(method({}), "i"), -1);
}

TEST(BusNames, AnInstanceHasItsClassInItsPathAndInterface) {
    EXPECT_EQ(classInterface("objKintar"), "net.tarnholm.Kintar3.objKintar");
    EXPECT_EQ(instancePath("objKintar", 7), "/net/tarnholm/Kintar3/objKintar/7");
}

} // namespace kintar::host
