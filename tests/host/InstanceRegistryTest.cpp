#include "host/InstanceRegistry.h"

#include <gtest/gtest.h>

namespace kintar::host {

namespace {

class Nothing final : public PublicObject {};

class InstanceRegistryTest : public testing::Test {
protected:
    InstanceRegistryTest() { publicClass.name = "objPlain"; }

    Instance* make(const std::string& owner) {
        Instance* instance = registry.reserve(publicClass, owner);
        if (instance) {
            instance->object = std::make_unique<Nothing>();
            registry.publish(*instance);
        }
        return instance;
    }

    PublicClass publicClass;
    InstanceRegistry registry{3};
};

TEST_F(InstanceRegistryTest, AnInstanceIsFoundUnderItsPathOncePublished) {
    Instance* reserved = registry.reserve(publicClass, ":1.1");
    EXPECT_EQ(reserved->path, "/net/tarnholm/Kintar3/objPlain/1");
    EXPECT_EQ(reserved->interface, "net.tarnholm.Kintar3.objPlain");
    EXPECT_EQ(registry.find(reserved->path), nullptr);
    registry.publish(*reserved);
    EXPECT_EQ(registry.find("/net/tarnholm/Kintar3/objPlain/1"), reserved);
    EXPECT_EQ(registry.find("/net/tarnholm/Kintar3/objPlain/2"), nullptr);
}

TEST_F(InstanceRegistryTest, NumbersAreNeverUsedAgain) {
    registry.take(*make(":1.1"));
    registry.take(*registry.reserve(publicClass, ":1.1"));
    EXPECT_EQ(make(":1.1")->number, 3u);
}

TEST_F(InstanceRegistryTest, AClientHasItsLimitAndReservedInstancesCount) {
    make(":1.1");
    make(":1.1");
    Instance* reserved = registry.reserve(publicClass, ":1.1");
    ASSERT_NE(reserved, nullptr);
    EXPECT_EQ(make(":1.1"), nullptr);
    EXPECT_NE(make(":1.2"), nullptr);
    registry.take(*reserved);
    EXPECT_NE(make(":1.1"), nullptr);
}

TEST_F(InstanceRegistryTest, TheYoungestComesFirstAtTheEnd) {
    const Instance* first = make(":1.1");
    const Instance* second = make(":1.2");
    const Instance* third = make(":1.1");
    EXPECT_EQ(registry.youngestOf(":1.1"), third);
    EXPECT_EQ(registry.youngest(), third);
    registry.take(*third);
    EXPECT_EQ(registry.youngestOf(":1.1"), first);
    EXPECT_EQ(registry.youngest(), second);
    EXPECT_EQ(registry.youngestOf(":1.3"), nullptr);
}

TEST_F(InstanceRegistryTest, AnInstanceBeingCreatedIsNobodysYoungest) {
    registry.reserve(publicClass, ":1.1");
    EXPECT_EQ(registry.youngestOf(":1.1"), nullptr);
    EXPECT_EQ(registry.youngest(), nullptr);
    EXPECT_EQ(registry.countOf(":1.1"), 1u);
}

TEST_F(InstanceRegistryTest, AClientsInstancesAreListedOldestFirst) {
    const Instance* first = make(":1.1");
    make(":1.2");
    const Instance* third = make(":1.1");
    EXPECT_EQ(registry.instancesOf(":1.1"), (std::vector<const Instance*>{first, third}));
    EXPECT_EQ(registry.count(), 3u);
}

TEST_F(InstanceRegistryTest, TakingTwiceGivesNothing) {
    Instance copy;
    copy.number = 77;
    EXPECT_EQ(registry.take(copy), nullptr);
}

} // namespace
} // namespace kintar::host
