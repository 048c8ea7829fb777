// Encrypted connections, and where passwords come from.
#include "companion/DatabaseError.h"
#include "companion/OpenDatabase.h"
#include "companion/SiteFolder.h"
#include "support/PrivateCluster.h"

#include <cstdlib>
#include <filesystem>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace kintar::companion::postgres {
namespace {

using ::testing::AllOf;
using ::testing::HasSubstr;
using ::testing::Not;

testing::PrivateCluster& cluster() {
    static testing::PrivateCluster own;
    static const bool encrypted = [] {
        own.encrypt();
        return true;
    }();
    static_cast<void>(encrypted);
    return own;
}

class Encryption : public ::testing::Test {
protected:
    Encryption() { writePasswordFile("secret"); }

    void writePasswordFile(const std::string& password) const {
        site.write("passwords", "*:*:*:kintar:" + password + "\n");
        std::filesystem::permissions(passwordFile(), std::filesystem::perms(0600));
    }
    [[nodiscard]] std::string passwordFile() const { return site.path() + "/passwords"; }
    /// The site's database over the network.
    [[nodiscard]] std::string text(const std::string& host, const std::string& options) const {
        const std::string& name = site.database();
        const std::size_t begin = name.find("@/") + 2;
        return "postgresql://kintar@" + host + ":" + std::to_string(cluster().port()) + "/" +
               name.substr(begin, name.find('?') - begin) + "?passfile=" + passwordFile() + "&" +
               options;
    }
    [[nodiscard]] static std::string rooted(const std::string& root) {
        return "sslmode=verify-full&sslrootcert=" + root;
    }
    /// Why the database cannot be opened; empty where it can.
    static std::string refusal(const std::string& text) {
        try {
            openDatabase(text, DatabaseAccess::ReadWrite)->open("SELECT ID FROM IO");
            return {};
        } catch (const DatabaseError& error) {
            return error.what();
        }
    }

    SiteFolder site{cluster()};
};

TEST_F(Encryption, IsVerifiedWithTheRightRootAndName) {
    EXPECT_EQ(refusal(text("localhost", rooted(cluster().certificate()))), "");
}

TEST_F(Encryption, IsRefusedWithAnotherRoot) {
    EXPECT_THAT(refusal(text("localhost", rooted(cluster().otherCertificate()))),
                AllOf(HasSubstr("cannot be reached"), HasSubstr("certificate verify failed")));
}

TEST_F(Encryption, IsRefusedWithoutARoot) {
    EXPECT_THAT(refusal(text("localhost", rooted("/nowhere/root.crt"))),
                HasSubstr("root certificate file \"/nowhere/root.crt\" does not exist"));
}

TEST_F(Encryption, IsRefusedByAnotherName) {
    EXPECT_THAT(refusal(text("127.0.0.1", rooted(cluster().certificate()))),
                AllOf(HasSubstr("certificate for \"localhost\""),
                      HasSubstr("does not match host name \"127.0.0.1\"")));
}

TEST_F(Encryption, CannotBeLeftOutWhereTheServerWantsIt) {
    EXPECT_THAT(refusal(text("localhost", "sslmode=disable")), HasSubstr("no encryption"));
}

TEST_F(Encryption, ComesWithThePasswordOfThePasswordFile) {
    writePasswordFile("another");
    EXPECT_THAT(refusal(text("localhost", rooted(cluster().certificate()))),
                AllOf(HasSubstr("password authentication failed"), Not(HasSubstr("another"))));
    std::filesystem::remove(passwordFile());
    EXPECT_THAT(refusal(text("localhost", rooted(cluster().certificate()))),
                HasSubstr("no password supplied"));
}

TEST_F(Encryption, TakesNoPasswordFileThatOthersMayRead) {
    std::filesystem::permissions(passwordFile(), std::filesystem::perms(0644));
    EXPECT_THAT(refusal(text("localhost", rooted(cluster().certificate()))),
                HasSubstr("no password supplied"));
}

TEST_F(Encryption, TakesNoPasswordOfTheEnvironment) {
    setenv("PGPASSWORD", "secret", 1);
    EXPECT_THAT(refusal(text("localhost", rooted(cluster().certificate()))),
                AllOf(HasSubstr("password file"), Not(HasSubstr("secret"))));
    unsetenv("PGPASSWORD");
}

TEST_F(Encryption, TakesNoPasswordOfTheSitesFile) {
    EXPECT_THAT(refusal(text("localhost", "password=secret")),
                AllOf(HasSubstr("password file"), Not(HasSubstr("secret"))));
}

} // namespace
} // namespace kintar::companion::postgres
