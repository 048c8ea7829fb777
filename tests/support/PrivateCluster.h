// A database server of a test program's own: started when first needed, in a temporary folder,
// reached through a socket in that folder, gone with the program.
#pragma once

#include <memory>
#include <string>
#include <sys/types.h>
#include <vector>

struct pg_conn;

namespace kintar::testing {

class PrivateCluster {
public:
    /// Makes and starts a server; `settings`, as `name=value`, take the place of a small server's.
    /// Throws std::runtime_error where that fails.
    explicit PrivateCluster(std::vector<std::string> settings = {});
    PrivateCluster(const PrivateCluster&) = delete;
    PrivateCluster& operator=(const PrivateCluster&) = delete;
    ~PrivateCluster();

    /// Another server that follows `primary` change by change. A change of `primary` ends only when
    /// this one has it.
    static std::unique_ptr<PrivateCluster> standbyOf(PrivateCluster& primary);

    /// The one that the tests of a program share.
    static PrivateCluster& shared();

    /// A new, empty database, or a copy of another; its connection text.
    std::string makeDatabase(const std::string& copyOf = {});
    /// The connection text of a database.
    [[nodiscard]] std::string textOf(const std::string& database) const;
    void dropDatabase(const std::string& connectionText);

    /// Where clients reach it.
    [[nodiscard]] const std::string& folder() const { return folder_; }

    /// Listens on localhost too from now on, there only to encrypted connections with the password
    /// "secret". Its certificate is for the name localhost, and its own root: `certificate`.
    void encrypt();
    [[nodiscard]] std::string certificate() const { return folder_ + "/server.crt"; }
    /// A certificate that nobody trusts the server for.
    [[nodiscard]] std::string otherCertificate() const { return folder_ + "/other.crt"; }
    [[nodiscard]] int port() const { return port_; }

    /// Makes a standby take over.
    void promote();
    /// Ends the server the hard way: nothing is written any more.
    void kill();
    /// The same without any warning, as a power cut.
    void cutPower();
    /// Ends it as an administrator would, hanging up on everybody.
    void stop();
    /// Makes it answer no more without hanging up, as behind a dead network; and answer again.
    void pause();
    void resume();
    /// Starts it again after either.
    void start();

private:
    explicit PrivateCluster(const PrivateCluster* primary);
    void makeFolder();
    void makeCluster();
    void runProgram(const std::string& program, const std::vector<std::string>& arguments) const;
    void makeCertificate(const std::string& name) const;
    void waitUntilReady() const;
    void end(int signal);
    void signalAll(int signal) const;

    std::vector<std::string> settings_;
    std::string folder_;
    pid_t server_ = -1;
    int port_ = 5432;
    std::string listens_;
    int databases_ = 0;
};

/// A connection of a foreign program. Throws std::runtime_error with what the server says.
class ServerConnection {
public:
    explicit ServerConnection(const std::string& connectionText);

    /// Runs statements of the server's own language.
    void run(const std::string& sql);
    /// The first value of the first row; empty where there is none.
    std::string ask(const std::string& sql);

private:
    std::unique_ptr<pg_conn, void (*)(pg_conn*)> connection_;
};

/// Runs statements on a connection for this once.
void runOnServer(const std::string& connectionText, const std::string& sql);
/// The first value of the first row.
std::string askServer(const std::string& connectionText, const std::string& sql);

} // namespace kintar::testing
