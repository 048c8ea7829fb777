#include "host/Introspection.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace kintar::host {

using testing::HasSubstr;
using testing::Not;

namespace {

class Sample final : public PublicObject {
public:
    void Id(std::int32_t) {}
    [[nodiscard]] bool Done() const { return true; }
    [[nodiscard]] std::string Text() const { return {}; }
    void setText(const std::string&) {}
    std::int16_t Print(std::int16_t, const std::string&) { return 0; }
    void Nothing() {}
};

PublicClass sample() {
    return ClassBuilder<Sample>("objSample", "A sample.")
        .let("ID", &Sample::Id, "Shows.")
        .get("Done", &Sample::Done, "Whether done.", true)
        .getLet("Text", &Sample::Text, &Sample::setText, "A text.")
        .method("Print", &Sample::Print, {"Loc", "Printer"}, "Prints.")
        .method("Nothing", &Sample::Nothing, {}, "Does nothing.")
        .build();
}

} // namespace

TEST(Introspection, AnInstanceShowsItsMembersInSlotOrder) {
    const std::string xml = introspectInstance(sample());
    EXPECT_THAT(xml, HasSubstr("<interface name=\"net.tarnholm.Kintar3.objSample\">"));
    EXPECT_LT(xml.find("\"ID\""), xml.find("\"Done\""));
    EXPECT_LT(xml.find("\"Text\""), xml.find("\"Print\""));
}

TEST(Introspection, APropertyShowsItsTypeItsAccessAndWhetherItSignals) {
    const std::string xml = introspectInstance(sample());
    const std::string annotation =
        "   <annotation name=\"org.freedesktop.DBus.Property.EmitsChangedSignal\" value=";
    EXPECT_THAT(xml, HasSubstr("<property name=\"ID\" type=\"i\" access=\"write\">\n" + annotation +
                               "\"false\"/>"));
    EXPECT_THAT(xml, HasSubstr("<property name=\"Done\" type=\"b\" access=\"read\">\n" +
                               annotation + "\"true\"/>"));
    EXPECT_THAT(xml, HasSubstr("<property name=\"Text\" type=\"s\" access=\"readwrite\">\n" +
                               annotation + "\"false\"/>"));
}

TEST(Introspection, AMethodShowsTheNamesOfItsArguments) {
    EXPECT_THAT(introspectInstance(sample()),
                HasSubstr("  <method name=\"Print\">\n"
                          "   <arg type=\"n\" name=\"Loc\" direction=\"in\"/>\n"
                          "   <arg type=\"s\" name=\"Printer\" direction=\"in\"/>\n"
                          "   <arg type=\"n\" name=\"result\" direction=\"out\"/>\n"
                          "  </method>\n"
                          "  <method name=\"Nothing\">\n"
                          "  </method>\n"));
}

TEST(Introspection, TheRootShowsItsMembersAndTheNodesBelow) {
    const std::string xml = introspectServer({"objA", "objB"});
    EXPECT_THAT(xml, HasSubstr("<interface name=\"net.tarnholm.Kintar3.Server\">"));
    EXPECT_THAT(xml, HasSubstr("<arg type=\"o\" name=\"object\" direction=\"out\"/>"));
    EXPECT_THAT(xml, HasSubstr("<property name=\"Classes\" type=\"as\" access=\"read\">"));
    EXPECT_THAT(xml, HasSubstr(" <node name=\"objA\"/>\n <node name=\"objB\"/>\n</node>"));
}

TEST(Introspection, AFolderHasNoPropertiesInterface) {
    const std::string xml = introspectFolder({"net"});
    EXPECT_THAT(xml, HasSubstr("<node name=\"net\"/>"));
    EXPECT_THAT(xml, HasSubstr("org.freedesktop.DBus.Introspectable"));
    EXPECT_THAT(xml, Not(HasSubstr("org.freedesktop.DBus.Properties")));
}

TEST(Introspection, MarkupInTextIsEscaped) {
    EXPECT_EQ(xmlEscaped("a<b>&\"c'"), "a&lt;b&gt;&amp;&quot;c'");
}

} // namespace kintar::host
