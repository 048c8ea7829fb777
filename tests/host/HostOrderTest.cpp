#include "host/ServedTest.h"

namespace kintar::host {

namespace {

// One client drives, another one watches and lets things go on.
class HostOrderTest : public ServedTest {
protected:
    void SetUp() override {
        serve();
        client = std::make_unique<BusClient>(bus.address());
        watcher = std::make_unique<BusClient>(bus.address());
        witness = watcher->create("objWitness");
        watcher->call(witness, "Clear");
    }

    std::shared_ptr<PendingCall> startCreating(const char* publicClass) {
        auto call = client->start(
            client->message(rootPath, serverInterface, "CreateObject", "s", publicClass));
        client->flush();
        return call;
    }

    void waitForBoxes(long count) {
        while (watcher->get(witness, "Boxes").asNumber() != count) {
        }
    }

    [[nodiscard]] std::string log() { return logOf(*watcher, witness); }

    // Until a text is in the log, which other clients' calls write in their own time.
    void waitForLog(const std::string& text) {
        while (log().find(text) == std::string::npos) {
        }
    }

    std::unique_ptr<BusClient> client;
    std::unique_ptr<BusClient> watcher;
    std::string witness;
};

} // namespace

TEST_F(HostOrderTest, OtherClientsAreServedWhileABoxIsOpen) {
    const auto creating = startCreating("objBox");
    waitForBoxes(1);
    BusClient third(bus.address());
    const std::string plain = third.create("objPlain");
    EXPECT_TRUE(third.set(plain, "Number", "i", 3).ok());
    EXPECT_EQ(third.get(plain, "Answer").asNumber(), 3);
    watcher->call(witness, "CloseBox");
    EXPECT_EQ(client->finish(*creating).asText(), "/net/tarnholm/Kintar3/objBox/2");
}

TEST_F(HostOrderTest, FurtherCallsOfTheSameClientWaitForTheBoxInOrder) {
    const std::string plain = client->create("objPlain");
    const auto creating = startCreating("objBox");
    const auto first = client->start(client->setMessage(plain, "Number", 1));
    const auto second = client->start(client->setMessage(plain, "Number", 2));
    client->flush();
    waitForBoxes(1);
    EXPECT_EQ(log(), "+plain1;+box2;");
    watcher->call(witness, "CloseBox");
    client->finish(*second);
    EXPECT_TRUE(creating->done);
    EXPECT_TRUE(first->done);
    EXPECT_EQ(log(), "+plain1;+box2;closed box2;Number=1;Number=2;");
}

TEST_F(HostOrderTest, BoxesOfTwoClientsAreAnsweredEachWhenItsOwnCloses) {
    const auto outer = startCreating("objBox");
    waitForBoxes(1);
    BusClient third(bus.address());
    const auto inner =
        third.start(third.message(rootPath, serverInterface, "CreateObject", "s", "objBox"));
    third.flush();
    waitForBoxes(2);
    watcher->call(witness, "CloseBox");
    EXPECT_TRUE(third.finish(*inner).ok());
    EXPECT_FALSE(outer->done);
    watcher->call(witness, "CloseBox");
    EXPECT_TRUE(client->finish(*outer).ok());
}

TEST_F(HostOrderTest, ALateAnswerHoldsTheClientsFurtherCalls) {
    const std::string later = client->create("objLater");
    const auto slow = client->start(client->setMessage(later, "Slow", 7));
    const auto quick = client->start(client->setMessage(later, "Quick", 8));
    client->flush();
    waitForLog("Slow=7");
    BusClient third(bus.address());
    EXPECT_FALSE(third.create("objPlain").empty());
    EXPECT_EQ(log(), "+later1;Slow=7;+plain2;");
    watcher->call(witness, "Complete");
    EXPECT_TRUE(client->finish(*quick).ok());
    EXPECT_TRUE(slow->done && slow->answer.ok());
    EXPECT_EQ(log(), "+later1;Slow=7;+plain2;Quick=8;");
}

TEST_F(HostOrderTest, ALateAnswerCanBeAnError) {
    const std::string later = client->create("objLater");
    const auto slow = client->start(client->setMessage(later, "Slow", 7));
    client->flush();
    waitForLog("Slow=7");
    watcher->call(witness, "CompleteWithError");
    EXPECT_EQ(client->finish(*slow).text.substr(0, 18), "Run-time error '5'");
    EXPECT_TRUE(client->set(later, "Quick", "i", 1).ok());
}

TEST_F(HostOrderTest, ADroppedCompletionAnswersTheCall) {
    const std::string later = client->create("objLater");
    const auto slow = client->start(client->setMessage(later, "Slow", 7));
    client->flush();
    waitForLog("Slow=7");
    watcher->call(witness, "DropCompletion");
    EXPECT_TRUE(client->finish(*slow).ok());
}

TEST_F(HostOrderTest, ACompletionInsideTheHandlerAnswersAtOnce) {
    const std::string later = client->create("objLater");
    EXPECT_TRUE(client->set(later, "Slow", "i", 0).ok());
    EXPECT_TRUE(client->set(later, "Slow", "i", 2).ok());
    EXPECT_TRUE(client->set(later, "Quick", "i", 3).ok());
}

TEST_F(HostOrderTest, AHandlerThatThrowsAnswersOnceAndWithItsError) {
    const std::string later = client->create("objLater");
    const Answer failed = client->set(later, "Slow", "i", 1);
    EXPECT_EQ(failed.error, errors::runTime);
    EXPECT_EQ(failed.text.substr(0, 19), "Run-time error '13'");
    EXPECT_TRUE(client->set(later, "Quick", "i", 3).ok());
}

TEST_F(HostOrderTest, AClientThatLeavesDuringALateAnswerEndsItsObjectsAtOnce) {
    const std::string later = client->create("objLater");
    client->post(client->setMessage(later, "Slow", 7));
    client->post(client->setMessage(later, "Quick", 8));
    waitForLog("Slow=7");
    client->leave();
    waitForLog("-later1");
    EXPECT_EQ(log(), "+later1;Slow=7;-later1;");
    // The completion that is still kept somewhere has nothing to complete any more.
    EXPECT_TRUE(watcher->call(witness, "Complete").ok());
    EXPECT_EQ(log(), "+later1;Slow=7;-later1;");
}

TEST_F(HostOrderTest, AClientThatDiesWhileItsObjectIsBeingCreatedHasItEnded) {
    client->create("objPlain");
    startCreating("objBox");
    waitForBoxes(1);
    client->leave();
    BusClient third(bus.address());
    EXPECT_FALSE(third.create("objPlain").empty());
    EXPECT_EQ(log(), "+plain1;+box2;+plain3;");
    watcher->call(witness, "CloseBox");
    waitForLog("-plain1");
    EXPECT_EQ(log(), "+plain1;+box2;+plain3;closed box2;-box2;-plain1;");
}

TEST_F(HostOrderTest, CallsBehindTheBoxOfADeadClientAreDropped) {
    const std::string plain = client->create("objPlain");
    startCreating("objBox");
    client->post(client->setMessage(plain, "Number", 1));
    waitForBoxes(1);
    client->leave();
    watcher->call(witness, "CloseBox");
    waitForLog("-plain1");
    EXPECT_EQ(log(), "+plain1;+box2;closed box2;-box2;-plain1;");
}

} // namespace kintar::host
