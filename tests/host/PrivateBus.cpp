#include "host/PrivateBus.h"

#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <sys/wait.h>
#include <system_error>
#include <unistd.h>

namespace kintar::host {

namespace {

int statusOf(int waited) {
    return WIFEXITED(waited) ? WEXITSTATUS(waited) : 128 + WTERMSIG(waited);
}

std::string readLine(int descriptor) {
    std::string line;
    char c = 0;
    while (read(descriptor, &c, 1) == 1 && c != '\n') {
        line += c;
    }
    return line;
}

std::string makeFolder() {
    std::string pattern = (std::filesystem::temp_directory_path() / "kintar-bus-XXXXXX").string();
    if (!mkdtemp(pattern.data())) {
        throw std::system_error(errno, std::generic_category(), pattern);
    }
    return pattern;
}

} // namespace

ChildProcess::ChildProcess(const std::vector<std::string>& command,
                           const std::vector<std::pair<std::string, std::string>>& environment,
                           int output, int errors) {
    pid_ = fork();
    if (pid_ != 0) {
        return;
    }
    for (const auto& [name, value] : environment) {
        setenv(name.c_str(), value.c_str(), 1);
    }
    if (output >= 0) {
        dup2(output, STDOUT_FILENO);
    }
    if (errors >= 0) {
        dup2(errors, STDERR_FILENO);
    }
    std::vector<char*> arguments;
    for (const std::string& argument : command) {
        arguments.push_back(const_cast<char*>(argument.c_str()));
    }
    arguments.push_back(nullptr);
    execvp(arguments[0], arguments.data());
    _exit(127);
}

ChildProcess::~ChildProcess() {
    if (isRunning()) {
        signal(SIGKILL);
        wait();
    }
}

void ChildProcess::signal(int number) const {
    if (pid_ > 0) {
        kill(pid_, number);
    }
}

int ChildProcess::wait() {
    if (pid_ > 0) {
        int waited = 0;
        waitpid(pid_, &waited, 0);
        status_ = statusOf(waited);
        pid_ = -1;
    }
    return status_;
}

bool ChildProcess::isRunning() {
    int waited = 0;
    if (pid_ > 0 && waitpid(pid_, &waited, WNOHANG) == pid_) {
        status_ = statusOf(waited);
        pid_ = -1;
    }
    return pid_ > 0;
}

PrivateBus::PrivateBus() : folder_(makeFolder()) {
    std::filesystem::create_directory(folder_ + "/services");
    const std::string configuration = folder_ + "/bus.conf";
    std::ofstream(configuration)
        << "<!DOCTYPE busconfig PUBLIC \"-//freedesktop//DTD D-Bus Bus Configuration 1.0//EN\" "
           "\"http://www.freedesktop.org/standards/dbus/1.0/busconfig.dtd\">\n"
           "<busconfig><type>session</type><listen>unix:path="
        << folder_ << "/bus</listen><servicedir>" << folder_ << "/services</servicedir>"
        << "<policy context=\"default\"><allow send_destination=\"*\" eavesdrop=\"true\"/>"
           "<allow eavesdrop=\"true\"/><allow own=\"*\"/></policy></busconfig>\n";
    int ends[2];
    if (pipe(ends) != 0) {
        throw std::system_error(errno, std::generic_category(), "pipe");
    }
    const int log = open((folder_ + "/daemon.log").c_str(), O_WRONLY | O_CREAT | O_CLOEXEC, 0600);
    daemon_ = new ChildProcess(
        {"dbus-daemon", "--config-file=" + configuration, "--nofork", "--print-address=1"}, {},
        ends[1], log);
    close(log);
    close(ends[1]);
    address_ = readLine(ends[0]);
    close(ends[0]);
    if (address_.empty()) {
        throw std::runtime_error("dbus-daemon did not start");
    }
}

PrivateBus::~PrivateBus() {
    delete daemon_;
    std::error_code ignored;
    std::filesystem::remove_all(folder_, ignored);
}

void PrivateBus::makeActivatable(const std::string& name, const std::string& command) {
    std::ofstream(folder_ + "/services/" + name + ".service")
        << "[D-BUS Service]\nName=" << name << "\nExec=" << command << "\n";
}

} // namespace kintar::host
