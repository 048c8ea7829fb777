#include "host/ServedTest.h"

#include <gmock/gmock.h>

namespace kintar::host {

using testing::HasSubstr;
using testing::Not;

namespace {

class BusHostTest : public ServedTest {
protected:
    void SetUp() override {
        serve();
        client = std::make_unique<BusClient>(bus.address());
        plain = client->create("objPlain");
    }

    std::unique_ptr<BusClient> client;
    std::string plain;
};

} // namespace

TEST_F(BusHostTest, CreatesObjectsUnderNumbersThatCountUp) {
    EXPECT_EQ(plain, "/net/tarnholm/Kintar3/objPlain/1");
    EXPECT_TRUE(client->release(plain).ok());
    EXPECT_EQ(client->create("objWitness"), "/net/tarnholm/Kintar3/objWitness/2");
}

TEST_F(BusHostTest, SetsAndReadsEveryType) {
    EXPECT_TRUE(client->set(plain, "Number", "i", -2147483647).ok());
    EXPECT_EQ(client->get(plain, "Answer").asNumber(), -2147483647);
    EXPECT_TRUE(client->set(plain, "Short", "n", -32768).ok());
    EXPECT_EQ(client->get(plain, "Short").asNumber(), -32768);
    EXPECT_TRUE(client->set(plain, "Flag", "b", 1).ok());
    EXPECT_EQ(client->get(plain, "Flag").asNumber(), 1);
    EXPECT_TRUE(client->set(plain, "Text", "s", "M\xC3\xBCller \xD7\x90").ok());
    EXPECT_EQ(client->get(plain, "Text").asText(), "M\xC3\xBCller \xD7\x90");
    EXPECT_TRUE(client->set(plain, "Moment", "s", "2012-03-14T17:05:00").ok());
    EXPECT_EQ(client->get(plain, "Moment").asText(), "2012-03-14T17:05:00");
}

TEST_F(BusHostTest, ADateTimeNeverSetIsDayZero) {
    EXPECT_EQ(client->get(plain, "Moment").asText(), "1899-12-30T00:00:00");
}

TEST_F(BusHostTest, AValueOfAnotherTypeIsRefusedAndChangesNothing) {
    client->set(plain, "Number", "i", 5);
    const Answer wide = client->set(plain, "Number", "n", 6);
    EXPECT_EQ(wide.error, errors::invalidArgs);
    EXPECT_EQ(wide.text, "objPlain.Number expects a 32-bit integer (i), got n");
    EXPECT_EQ(client->set(plain, "Number", "s", "6").error, errors::invalidArgs);
    EXPECT_EQ(client->set(plain, "Number", "ai", 1, 6).error, errors::invalidArgs);
    EXPECT_EQ(client->set(plain, "Number", "v", "i", 6).error, errors::invalidArgs);
    EXPECT_EQ(client->set(plain, "Short", "i", 6).error, errors::invalidArgs);
    EXPECT_EQ(client->set(plain, "Flag", "i", 1).error, errors::invalidArgs);
    EXPECT_EQ(client->set(plain, "Text", "o", "/a").error, errors::invalidArgs);
    EXPECT_EQ(client->get(plain, "Answer").asNumber(), 5);
}

TEST_F(BusHostTest, ADateTimeHasOneFormOnly) {
    for (const char* text : {"2012-03-14", "2012-03-14 17:05:00", "2012-02-30T00:00:00", "",
                             "2012-03-14T17:05:00Z", "2012-03-14T24:00:00"}) {
        const Answer answer = client->set(plain, "Moment", "s", text);
        EXPECT_EQ(answer.error, errors::invalidArgs) << text;
        EXPECT_THAT(answer.text, HasSubstr("2012-03-14T17:05:00"));
    }
    EXPECT_EQ(client->get(plain, "Moment").asText(), "1899-12-30T00:00:00");
}

TEST_F(BusHostTest, CallsMethodsWithTheirResult) {
    const Answer sum = client->send(client->message(plain, interfaceAt(plain), "Add", "in", 40, 2));
    EXPECT_EQ(sum.asNumber(), 42);
    EXPECT_STREQ(client->call(plain, "Touch").message.signature(), "");
}

TEST_F(BusHostTest, ArgumentsOfAnotherShapeAreRefused) {
    for (const char* types : {"", "i", "ii", "ss"}) {
        const BusMessage call = client->message(plain, interfaceAt(plain), "Add");
        for (const char* type = types; *type; ++type) {
            *type == 'i' ? sd_bus_message_append(call.get(), "i", 1)
                         : sd_bus_message_append(call.get(), "s", "1");
        }
        const Answer answer = client->send(call);
        EXPECT_EQ(answer.error, errors::invalidArgs);
        EXPECT_EQ(answer.text, std::string("objPlain.Add expects (i a, n b), got (") + types + ")");
    }
    EXPECT_EQ(client->send(client->message(plain, interfaceAt(plain), "Touch", "i", 1)).error,
              errors::invalidArgs);
}

TEST_F(BusHostTest, AnOptionalArgumentMayBeLeftOut) {
    const std::string interface = interfaceAt(plain);
    EXPECT_EQ(client->send(client->message(plain, interface, "Greet", "s", "a")).asText(), "a-");
    EXPECT_EQ(client->send(client->message(plain, interface, "Greet", "sn", "a", 3)).asText(),
              "a3");
    EXPECT_EQ(client->send(client->message(plain, interface, "Greet")).error, errors::invalidArgs);
}

TEST_F(BusHostTest, AMethodIsFoundWithoutItsInterface) {
    EXPECT_EQ(client->send(client->message(plain, "", "Add", "in", 1, 1)).asNumber(), 2);
    EXPECT_EQ(client->send(client->message(plain, "", "Get", "ss", "", "Answer")).asNumber(), 0);
    EXPECT_EQ(
        client->send(client->message(rootPath, "", "CreateObject", "s", "objWitness")).asText(),
        "/net/tarnholm/Kintar3/objWitness/2");
    EXPECT_EQ(client->send(client->message(plain, "", "Missing")).error, errors::unknownMethod);
    EXPECT_THAT(client->send(client->message(plain, "", "Introspect")).asText(),
                HasSubstr("objPlain"));
}

TEST_F(BusHostTest, UnknownThingsHaveTheStandardErrorsAndAreNamed) {
    const Answer noClass = client->createAnswer("objMissing");
    EXPECT_EQ(noClass.error, errors::unknownObject);
    EXPECT_THAT(noClass.text, HasSubstr("objMissing"));
    EXPECT_EQ(client->createAnswer("objplain").error, errors::unknownObject);

    const Answer noObject = client->call("/net/tarnholm/Kintar3/objPlain/99", "Touch");
    EXPECT_EQ(noObject.error, errors::unknownObject);
    EXPECT_THAT(noObject.text, HasSubstr("objPlain/99"));
    EXPECT_EQ(client->release("/net/tarnholm/Kintar3/objPlain/99").error, errors::unknownObject);
    EXPECT_EQ(client->release(rootPath).error, errors::unknownObject);

    const Answer noInterface = client->send(client->message(plain, "a.b", "Touch"));
    EXPECT_EQ(noInterface.error, errors::unknownInterface);
    EXPECT_THAT(noInterface.text, HasSubstr("a.b"));

    const Answer noMethod = client->call(plain, "Missing");
    EXPECT_EQ(noMethod.error, errors::unknownMethod);
    EXPECT_THAT(noMethod.text, HasSubstr("Missing"));
    EXPECT_EQ(client->call(plain, "Number").error, errors::unknownMethod);

    const Answer noProperty = client->get(plain, "Missing");
    EXPECT_EQ(noProperty.error, errors::unknownProperty);
    EXPECT_THAT(noProperty.text, HasSubstr("Missing"));
    EXPECT_EQ(client->set(plain, "Missing", "i", 1).error, errors::unknownProperty);
    EXPECT_EQ(client->get(plain, "Touch").error, errors::unknownProperty);
}

TEST_F(BusHostTest, AReadOnlyPropertyIsNotWrittenAndAWriteOnlyOneNotRead) {
    EXPECT_EQ(client->set(plain, "Answer", "i", 1).error, errors::propertyReadOnly);
    EXPECT_EQ(client->set(plain, "Answer", "s", "1").error, errors::propertyReadOnly);
    EXPECT_EQ(client->get(plain, "Number").error, errors::accessDenied);
}

TEST_F(BusHostTest, TheInterfaceOfAPropertyMayBeEmptyButNotForeign) {
    const auto get = [&](const char* interface, const char* property) {
        return client->send(
            client->message(plain, propertiesInterface, "Get", "ss", interface, property));
    };
    EXPECT_TRUE(get("", "Answer").ok());
    EXPECT_EQ(get("net.tarnholm.Kintar3.objWitness", "Answer").error, errors::unknownInterface);
    EXPECT_EQ(get(propertiesInterface, "Answer").error, errors::unknownProperty);
    EXPECT_EQ(client->send(client->message(plain, propertiesInterface, "Get", "s", "")).error,
              errors::invalidArgs);
    EXPECT_EQ(client->send(client->message(plain, propertiesInterface, "Other")).error,
              errors::unknownMethod);
}

TEST_F(BusHostTest, GetAllGivesTheReadableProperties) {
    const Answer all = client->send(
        client->message(plain, propertiesInterface, "GetAll", "s", interfaceAt(plain).c_str()));
    ASSERT_TRUE(all.ok()) << all.text;
    std::string names;
    sd_bus_message_enter_container(all.message.get(), 'a', "{sv}");
    while (sd_bus_message_enter_container(all.message.get(), 'e', "sv") > 0) {
        const char* name = nullptr;
        sd_bus_message_read_basic(all.message.get(), 's', &name);
        names += std::string(name) + " ";
        sd_bus_message_skip(all.message.get(), "v");
        sd_bus_message_exit_container(all.message.get());
    }
    EXPECT_EQ(names, "Answer Short Flag Text Moment ");
}

TEST_F(BusHostTest, TheRootHasVersionAndClassesInTheOrderOfTheTable) {
    const std::string root = rootPath;
    EXPECT_EQ(client->get(root, "Version").asText(), "1.2.3");
    const Answer classes = client->get(root, "Classes");
    sd_bus_message_enter_container(classes.message.get(), 'v', "as");
    char** names = nullptr;
    ASSERT_GE(sd_bus_message_read_strv(classes.message.get(), &names), 0);
    std::string all;
    for (char** name = names; *name; ++name) {
        all += std::string(*name) + " ";
        free(*name);
    }
    free(names);
    EXPECT_EQ(all, "objPlain objWitness objLater objBox objBroken objKintar ");
    EXPECT_EQ(client->set(root, "Version", "s", "9").error, errors::propertyReadOnly);
    EXPECT_EQ(client->set(root, "Other", "s", "9").error, errors::unknownProperty);
    EXPECT_TRUE(client->send(client->message(root, propertiesInterface, "GetAll", "s", "")).ok());
    EXPECT_EQ(client->send(client->message(root, serverInterface, "Other")).error,
              errors::unknownMethod);
    EXPECT_EQ(client->send(client->message(root, serverInterface, "CreateObject", "i", 1)).error,
              errors::invalidArgs);
    EXPECT_EQ(client->send(client->message(root, serverInterface, "ReleaseObject", "s", "/")).error,
              errors::invalidArgs);
}

TEST_F(BusHostTest, ARunTimeErrorReachesTheClientWithItsNumber) {
    const Answer overflow = client->call(plain, "Overflow");
    EXPECT_EQ(overflow.error, "net.tarnholm.Kintar3.Error.RunTime");
    EXPECT_EQ(overflow.text, "Run-time error '6': Overflow");
    const Answer broken = client->createAnswer("objBroken");
    EXPECT_EQ(broken.error, errors::runTime);
    EXPECT_THAT(broken.text, HasSubstr("Run-time error '457'"));
}

TEST_F(BusHostTest, NoOtherExceptionEndsTheServer) {
    EXPECT_EQ(client->call(plain, "Break").error, errors::failed);
    EXPECT_EQ(client->call(plain, "BreakOddly").error, errors::failed);
    EXPECT_TRUE(client->get(plain, "Answer").ok());
}

TEST_F(BusHostTest, TextThatTheBusDoesNotTakeIsMadeValid) {
    EXPECT_EQ(client->call(plain, "Odd").asText(), "a\xEF\xBF\xBD"
                                                   "b\xEF\xBF\xBD\xEF\xBF\xBD");
}

TEST_F(BusHostTest, OnlyItsCreatorReachesAnObject) {
    BusClient other(bus.address());
    EXPECT_EQ(other.get(plain, "Answer").error, errors::accessDenied);
    EXPECT_EQ(other.set(plain, "Number", "i", 9).error, errors::accessDenied);
    EXPECT_EQ(other.call(plain, "Touch").error, errors::accessDenied);
    EXPECT_EQ(other.call(plain, "Missing").error, errors::accessDenied);
    EXPECT_EQ(other.release(plain).error, errors::accessDenied);
    EXPECT_EQ(other.send(other.message(plain, propertiesInterface, "GetAll", "s", "")).error,
              errors::accessDenied);
    EXPECT_EQ(client->get(plain, "Answer").asNumber(), 0);
}

TEST_F(BusHostTest, EveryPathThatLeadsToAnObjectCanBeIntrospected) {
    EXPECT_THAT(client->introspect("/"), HasSubstr("<node name=\"net\"/>"));
    EXPECT_THAT(client->introspect("/net"), HasSubstr("<node name=\"tarnholm\"/>"));
    EXPECT_THAT(client->introspect("/net/tarnholm"), HasSubstr("<node name=\"Kintar3\"/>"));
    EXPECT_THAT(client->introspect(rootPath), HasSubstr("<node name=\"objPlain\"/>"));
    EXPECT_THAT(client->introspect(rootPath), Not(HasSubstr("<node name=\"objBox\"/>")));
    EXPECT_THAT(client->introspect("/net/tarnholm/Kintar3/objPlain"),
                HasSubstr("<node name=\"1\"/>"));
    EXPECT_THAT(client->introspect(plain),
                HasSubstr("<property name=\"Short\" type=\"n\" access=\"readwrite\">"));
    EXPECT_EQ(client->introspect("/net/tarn"), errors::unknownObject);
    EXPECT_EQ(client->introspect("/net/tarnholm/Kintar3/objMissing"), errors::unknownObject);
    EXPECT_EQ(client->send(client->message("/net", "a.b", "C")).error, errors::unknownInterface);
}

TEST_F(BusHostTest, OthersSeeNoNumbersButMayAskAnObjectForItsInterface) {
    BusClient other(bus.address());
    EXPECT_THAT(other.introspect(rootPath), Not(HasSubstr("objPlain")));
    EXPECT_THAT(other.introspect("/net/tarnholm/Kintar3/objPlain"), Not(HasSubstr("name=\"1\"")));
    EXPECT_THAT(other.introspect(plain), HasSubstr("net.tarnholm.Kintar3.objPlain"));
}

TEST_F(BusHostTest, AChangeIsSignalledToTheCreatorAlone) {
    BusClient other(bus.address());
    const std::string own = other.create("objPlain");
    client->call(plain, "Touch");
    client->call(plain, "TouchSilent");
    client->call(plain, "Touch");
    client->waitForSignals(2);
    const std::string expected = plain + " net.tarnholm.Kintar3.objPlain Answer";
    EXPECT_EQ(client->signals(), (std::vector<std::string>{expected, expected}));
    other.call(own, "Touch");
    other.waitForSignals(1);
    EXPECT_EQ(other.signals().size(), 1u);
    EXPECT_THAT(other.signals().front(), HasSubstr(own));
}

TEST_F(BusHostTest, ADeclaredSignalGoesToTheCreatorAloneAndOthersAreNotSent) {
    BusClient other(bus.address());
    const std::string own = other.create("objPlain");
    client->call(plain, "Tell");
    client->call(plain, "Touch");
    client->waitForSignals(2);
    EXPECT_EQ(client->signals(),
              (std::vector<std::string>{plain + " net.tarnholm.Kintar3.objPlain Told 7 why",
                                        plain + " net.tarnholm.Kintar3.objPlain Answer"}));
    other.call(own, "Touch");
    other.waitForSignals(1);
    EXPECT_THAT(other.signals().front(), HasSubstr(own));
    EXPECT_THAT(client->introspect(plain),
                HasSubstr("<signal name=\"Told\">\n"
                          "   <arg type=\"n\" name=\"number\"/>\n"
                          "   <arg type=\"s\" name=\"text\"/>\n  </signal>"));
}

TEST_F(BusHostTest, ACallThatWantsNoAnswerGetsNone) {
    client->post(client->setMessage(plain, "Number", 8));
    client->post(client->message(plain, interfaceAt(plain), "Overflow"));
    client->post(client->message(plain, interfaceAt(plain), "Missing"));
    EXPECT_EQ(client->get(plain, "Answer").asNumber(), 8);
    std::uint64_t waiting = 1;
    sd_bus_get_n_queued_read(client->bus(), &waiting);
    EXPECT_EQ(waiting, 0u);
}

TEST_F(BusHostTest, APingIsAnsweredAtAnyPath) {
    EXPECT_TRUE(client->send(client->message(rootPath, peerInterface, "Ping")).ok());
    EXPECT_TRUE(client->send(client->message(plain, peerInterface, "Ping")).ok());
}

} // namespace kintar::host
