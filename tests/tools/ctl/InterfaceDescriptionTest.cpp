#include "tools/ctl/InterfaceDescription.h"
#include "host/Introspection.h"

#include <gtest/gtest.h>

namespace kintar::ctl {

namespace {

class Sample final : public PublicObject {
public:
    void Id(std::int32_t) {}
    std::int16_t Print(std::int16_t, const std::string&) { return 0; }
    void Nothing() {}
};

} // namespace

TEST(InterfaceDescription, ReadsWhatTheHostWrites) {
    const InterfaceDescription interface = parseInterface(
        host::introspectInstance(ClassBuilder<Sample>("objSample", "")
                                     .let("ID", &Sample::Id, "")
                                     .method("Print", &Sample::Print, {"Loc", "Printer"}, "")
                                     .method("Nothing", &Sample::Nothing, {}, "")
                                     .build()));
    EXPECT_EQ(interface.name, "net.tarnholm.Kintar3.objSample");
    ASSERT_EQ(interface.members.size(), 3u);
    EXPECT_EQ(interface.members[0].line(), "property ID i write");
    EXPECT_EQ(interface.members[1].line(), "method Print (n Loc, s Printer) n");
    EXPECT_EQ(interface.members[2].line(), "method Nothing ()");
    EXPECT_EQ(interface.find("Print"), &interface.members[1]);
    EXPECT_EQ(interface.find("print"), nullptr);
}

TEST(InterfaceDescription, TakesNeitherBrokenTextNorOneWithoutAnInterface) {
    EXPECT_THROW(parseInterface("<node><interface name='a'>"), std::runtime_error);
    EXPECT_THROW(parseInterface("no markup"), std::runtime_error);
    EXPECT_THROW(parseInterface(host::introspectFolder({"a"})), std::runtime_error);
    EXPECT_THROW(parseInterface(""), std::runtime_error);
}

} // namespace kintar::ctl
