// A bus daemon of one test, in a folder of its own.
#pragma once

#include <string>
#include <sys/types.h>
#include <vector>

namespace kintar::host {

/// A child process; ended and awaited when it goes out of scope.
class ChildProcess {
public:
    ChildProcess() = default;
    /// `output` and `errors` are the descriptors that become its standard output and error; -1
    /// leaves them as they are.
    ChildProcess(const std::vector<std::string>& command,
                 const std::vector<std::pair<std::string, std::string>>& environment,
                 int output = -1, int errors = -1);
    ChildProcess(const ChildProcess&) = delete;
    ChildProcess& operator=(const ChildProcess&) = delete;
    ~ChildProcess();

    void signal(int number) const;
    /// Waits for its end; its exit status, or 128 and the number of the signal that ended it.
    int wait();
    [[nodiscard]] bool isRunning();

private:
    pid_t pid_ = -1;
    int status_ = -1;
};

/// A private session bus. What its daemon says, and what servers say that it starts, goes to
/// `daemon.log` in its folder.
class PrivateBus {
public:
    PrivateBus();
    PrivateBus(const PrivateBus&) = delete;
    PrivateBus& operator=(const PrivateBus&) = delete;
    ~PrivateBus();

    [[nodiscard]] const std::string& address() const { return address_; }
    [[nodiscard]] const std::string& folder() const { return folder_; }
    /// Makes `name` start `command` when it is called.
    void makeActivatable(const std::string& name, const std::string& command);
    /// Ends the daemon: everybody on the bus loses it.
    void stop() const { daemon_->signal(15); }

private:
    std::string folder_;
    std::string address_;
    ChildProcess* daemon_ = nullptr;
};

} // namespace kintar::host
