// A database server of a test program's own: started when first needed, in a temporary folder,
// reached through a socket in that folder, gone with the program.
#pragma once

#include <string>
#include <sys/types.h>

namespace kintar::testing {

class PrivateCluster {
public:
    /// Makes and starts a server. Throws std::runtime_error where that fails.
    PrivateCluster();
    PrivateCluster(const PrivateCluster&) = delete;
    PrivateCluster& operator=(const PrivateCluster&) = delete;
    ~PrivateCluster();

    /// The one that the tests of a program share.
    static PrivateCluster& shared();

    /// A new, empty database, or a copy of another; its connection text.
    std::string makeDatabase(const std::string& copyOf = {});
    /// The connection text of a database.
    [[nodiscard]] std::string textOf(const std::string& database) const;
    void dropDatabase(const std::string& connectionText);

    /// Ends the server the hard way: nothing is written any more.
    void kill();
    /// Ends it as an administrator would, hanging up on everybody.
    void stop();
    /// Makes it answer no more without hanging up, as behind a dead network; and answer again.
    void pause();
    void resume();
    /// Starts it again after either.
    void start();

private:
    void makeCluster();
    void waitUntilReady() const;
    void end(int signal);
    void signalAll(int signal) const;

    std::string folder_;
    pid_t server_ = -1;
    int databases_ = 0;
};

/// Runs statements of the server's own language, as a foreign program would.
void runOnServer(const std::string& connectionText, const std::string& sql);
/// The first value of the first row.
std::string askServer(const std::string& connectionText, const std::string& sql);

} // namespace kintar::testing
