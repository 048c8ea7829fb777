#include "support/PrivateCluster.h"

#include <arpa/inet.h>
#include <csignal>
#include <cstdlib>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <libpq-fe.h>
#include <memory>
#include <netinet/in.h>
#include <poll.h>
#include <pwd.h>
#include <stdexcept>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>
#include <utility>
#include <vector>

namespace kintar::testing {

namespace {

constexpr const char* unprivileged = "nobody";
constexpr const char* owner = "kintar";

/// The server refuses to run as root. The signal at our own death leaves no server behind a test
/// that crashed.
std::vector<std::string> asServer(const std::string& program, std::vector<std::string> arguments) {
    std::vector<std::string> command{"setpriv", "--pdeathsig=QUIT"};
    if (geteuid() == 0) {
        command.insert(command.end(), {std::string("--reuid=") + unprivileged, "--regid=nogroup",
                                       "--clear-groups"});
    }
    const bool own = program.starts_with("pg_") || program == "initdb" || program == "postgres";
    command.push_back((own ? std::string(KINTAR_POSTGRES_PROGRAMS) + "/" : "") + program);
    command.insert(command.end(), arguments.begin(), arguments.end());
    return command;
}

/// A port that nobody listens on at the moment.
int freePort() {
    const int probe = socket(AF_INET, SOCK_STREAM, 0);
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t size = sizeof address;
    const bool bound = bind(probe, reinterpret_cast<sockaddr*>(&address), size) == 0 &&
                       getsockname(probe, reinterpret_cast<sockaddr*>(&address), &size) == 0;
    close(probe);
    return bound ? ntohs(address.sin_port) : throw std::runtime_error("no free port");
}

pid_t spawn(const std::vector<std::string>& command, const std::string& log) {
    const pid_t child = fork();
    if (child == 0) {
        const int out = open(log.c_str(), O_WRONLY | O_CREAT | O_APPEND, 0666);
        dup2(out, STDOUT_FILENO);
        dup2(out, STDERR_FILENO);
        std::vector<char*> words;
        for (const std::string& word : command) {
            words.push_back(const_cast<char*>(word.c_str()));
        }
        words.push_back(nullptr);
        execvp(words.front(), words.data());
        _exit(127);
    }
    return child;
}

using Result = std::unique_ptr<PGresult, void (*)(PGresult*)>;

Result resultOf(PGconn* connection, const std::string& sql) {
    Result result(PQexec(connection, sql.c_str()), PQclear);
    const ExecStatusType status = PQresultStatus(result.get());
    if (status != PGRES_COMMAND_OK && status != PGRES_TUPLES_OK) {
        throw std::runtime_error(PQerrorMessage(connection));
    }
    return result;
}

} // namespace

ServerConnection::ServerConnection(const std::string& connectionText)
    : connection_(PQconnectdb(connectionText.c_str()), PQfinish) {
    if (PQstatus(connection_.get()) != CONNECTION_OK) {
        throw std::runtime_error(PQerrorMessage(connection_.get()));
    }
}

void ServerConnection::run(const std::string& sql) {
    resultOf(connection_.get(), sql);
}

std::string ServerConnection::ask(const std::string& sql) {
    const Result result = resultOf(connection_.get(), sql);
    return PQntuples(result.get()) > 0 ? PQgetvalue(result.get(), 0, 0) : "";
}

void runOnServer(const std::string& connectionText, const std::string& sql) {
    ServerConnection(connectionText).run(sql);
}

std::string askServer(const std::string& connectionText, const std::string& sql) {
    return ServerConnection(connectionText).ask(sql);
}

PrivateCluster::PrivateCluster(std::vector<std::string> settings) : settings_(std::move(settings)) {
    makeFolder();
    makeCluster();
    start();
}

PrivateCluster::PrivateCluster(const PrivateCluster* primary) {
    makeFolder();
    runProgram("pg_basebackup",
               {"-D", folder_ + "/data", "-h", primary->folder_, "-U", owner, "--wal-method=stream",
                "--checkpoint=fast", "--write-recovery-conf", "--no-sync"});
    start();
}

std::unique_ptr<PrivateCluster> PrivateCluster::standbyOf(PrivateCluster& primary) {
    std::unique_ptr<PrivateCluster> standby(new PrivateCluster(&primary));
    // Not before: the standby would inherit it, and wait for a standby of its own one day.
    ServerConnection administrator(primary.textOf("postgres"));
    administrator.run("ALTER SYSTEM SET synchronous_standby_names = '*'");
    administrator.run("SELECT pg_reload_conf()");
    while (administrator.ask(
               "SELECT count(*) FROM pg_stat_replication WHERE sync_state = 'sync'") != "1") {
        poll(nullptr, 0, 10);
    }
    return standby;
}

void PrivateCluster::makeFolder() {
    std::string pattern = (std::filesystem::temp_directory_path() / "kintar-pg-XXXXXX").string();
    if (mkdtemp(pattern.data()) == nullptr) {
        throw std::runtime_error("no temporary folder");
    }
    folder_ = pattern;
    std::filesystem::permissions(folder_, std::filesystem::perms(0755));
    if (geteuid() == 0) {
        const passwd* user = getpwnam(unprivileged);
        if (user == nullptr || chown(folder_.c_str(), user->pw_uid, user->pw_gid) != 0) {
            throw std::runtime_error("no user to run a database server as");
        }
    }
}

PrivateCluster::~PrivateCluster() {
    end(SIGQUIT);
    std::error_code ignored;
    std::filesystem::remove_all(folder_, ignored);
}

PrivateCluster& PrivateCluster::shared() {
    static PrivateCluster cluster;
    return cluster;
}

void PrivateCluster::makeCluster() {
    runProgram("initdb", {"-D", folder_ + "/data", "-U", owner, "-E", "UTF8", "-A", "trust",
                          "--locale=C", "--no-sync"});
}

void PrivateCluster::runProgram(const std::string& program,
                                const std::vector<std::string>& arguments) const {
    const std::string log = folder_ + "/" + program + ".log";
    const pid_t child = spawn(asServer(program, arguments), log);
    int status = 0;
    if (waitpid(child, &status, 0) != child || status != 0) {
        throw std::runtime_error(program + " failed; see " + log);
    }
}

void PrivateCluster::makeCertificate(const std::string& name) const {
    const std::string path = folder_ + "/" + name;
    runProgram("openssl", {"req", "-x509", "-newkey", "rsa:2048", "-nodes", "-days", "2", "-subj",
                           "/CN=localhost", "-addext", "subjectAltName=DNS:localhost", "-keyout",
                           path + ".key", "-out", path + ".crt"});
}

void PrivateCluster::encrypt() {
    makeCertificate("server");
    makeCertificate("other");
    ServerConnection administrator(textOf("postgres"));
    administrator.run("ALTER ROLE kintar PASSWORD 'secret'");
    administrator.run("ALTER SYSTEM SET ssl = on");
    administrator.run("ALTER SYSTEM SET ssl_cert_file = '" + certificate() + "'");
    administrator.run("ALTER SYSTEM SET ssl_key_file = '" + folder_ + "/server.key'");
    stop();
    std::ofstream(folder_ + "/data/pg_hba.conf")
        << "local all all trust\nhostssl all all 127.0.0.1/32 scram-sha-256\n";
    listens_ = "127.0.0.1";
    port_ = freePort();
    start();
}

void PrivateCluster::promote() {
    runOnServer(textOf("postgres"), "SELECT pg_promote()");
}

void PrivateCluster::start() {
    std::vector<std::string> arguments{"-D", folder_ + "/data",    "-k", folder_,
                                       "-p", std::to_string(port_)};
    std::vector<std::string> settings{"listen_addresses=" + listens_, "fsync=off",
                                      "shared_buffers=64MB", "max_connections=100"};
    settings.insert(settings.end(), settings_.begin(), settings_.end());
    for (std::string& setting : settings) {
        arguments.insert(arguments.end(), {"-c", std::move(setting)});
    }
    server_ = spawn(asServer("postgres", std::move(arguments)), folder_ + "/server.log");
    waitUntilReady();
}

void PrivateCluster::waitUntilReady() const {
    const std::string text = textOf("postgres");
    for (int attempt = 0; attempt < 1500; ++attempt) {
        if (PQping(text.c_str()) == PQPING_OK) {
            return;
        }
        int status = 0;
        if (waitpid(server_, &status, WNOHANG) == server_) {
            break;
        }
        poll(nullptr, 0, 20);
    }
    throw std::runtime_error("the database server does not start; see " + folder_ + "/server.log");
}

void PrivateCluster::end(int signal) {
    if (server_ > 0) {
        ::kill(server_, signal);
        waitpid(server_, nullptr, 0);
        server_ = -1;
    }
}

void PrivateCluster::kill() {
    end(SIGQUIT);
}

void PrivateCluster::cutPower() {
    signalAll(SIGKILL);
    end(SIGKILL);
}

void PrivateCluster::stop() {
    end(SIGINT);
}

void PrivateCluster::pause() {
    signalAll(SIGSTOP);
}

void PrivateCluster::resume() {
    signalAll(SIGCONT);
}

/// To the server and its children: each connection is a process.
void PrivateCluster::signalAll(int signal) const {
    std::ifstream children("/proc/" + std::to_string(server_) + "/task/" + std::to_string(server_) +
                           "/children");
    ::kill(server_, signal);
    for (pid_t child = 0; children >> child;) {
        ::kill(child, signal);
    }
}

std::string PrivateCluster::textOf(const std::string& database) const {
    return "postgresql://" + std::string(owner) + "@/" + database + "?host=" + folder_ +
           (listens_.empty() ? "" : "&port=" + std::to_string(port_));
}

std::string PrivateCluster::makeDatabase(const std::string& copyOf) {
    const std::string name = "test" + std::to_string(++databases_);
    runOnServer(textOf("postgres"),
                "CREATE DATABASE " + name + " TEMPLATE " + (copyOf.empty() ? "template0" : copyOf));
    return textOf(name);
}

void PrivateCluster::dropDatabase(const std::string& connectionText) {
    const std::size_t begin = connectionText.find("@/") + 2;
    const std::string name = connectionText.substr(begin, connectionText.find('?') - begin);
    runOnServer(textOf("postgres"), "DROP DATABASE IF EXISTS " + name + " WITH (FORCE)");
}

} // namespace kintar::testing
