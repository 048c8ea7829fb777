#include "platform/qt/PhotoWorker.h"

#include <fcntl.h>
#include <spawn.h>
#include <sys/socket.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <csignal>
#include <string_view>
#include <system_error>
#include <utility>
#include <vector>

namespace kintar::platform {

namespace {

/// What a decoder needs of the environment: where libraries are. No bus, no display.
std::vector<char*> workerEnvironment() {
    constexpr std::array<std::string_view, 7> passed{
        "PATH=",   "LD_LIBRARY_PATH=", "QT_PLUGIN_PATH=", "LANG=",
        "LC_ALL=", "ASAN_OPTIONS=",    "UBSAN_OPTIONS="};
    std::vector<char*> kept;
    for (char** entry = environ; *entry != nullptr; ++entry) {
        for (const std::string_view name : passed) {
            if (std::string_view(*entry).starts_with(name)) {
                kept.push_back(*entry);
            }
        }
    }
    kept.push_back(nullptr);
    return kept;
}

/// The file actions and attributes of a start, freed at its end.
struct SpawnPlan {
    posix_spawn_file_actions_t actions{};
    posix_spawnattr_t attributes{};

    explicit SpawnPlan(int socket) {
        ::posix_spawn_file_actions_init(&actions);
        ::posix_spawn_file_actions_adddup2(&actions, socket, STDIN_FILENO);
        ::posix_spawn_file_actions_addopen(&actions, STDOUT_FILENO, "/dev/null", O_WRONLY, 0);
        ::posix_spawn_file_actions_addopen(&actions, STDERR_FILENO, "/dev/null", O_WRONLY, 0);
        ::posix_spawn_file_actions_addclosefrom_np(&actions, STDERR_FILENO + 1);
        ::posix_spawnattr_init(&attributes);
        sigset_t all;
        sigset_t none;
        sigfillset(&all);
        sigemptyset(&none);
        ::posix_spawnattr_setsigdefault(&attributes, &all);
        ::posix_spawnattr_setsigmask(&attributes, &none);
        ::posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETSIGDEF | POSIX_SPAWN_SETSIGMASK);
    }
    SpawnPlan(const SpawnPlan&) = delete;
    SpawnPlan& operator=(const SpawnPlan&) = delete;
    ~SpawnPlan() {
        ::posix_spawn_file_actions_destroy(&actions);
        ::posix_spawnattr_destroy(&attributes);
    }
};

pid_t start(const std::string& program, int socket) {
    std::string name = program;
    std::string server = std::to_string(::getpid());
    std::array<char*, 3> arguments{name.data(), server.data(), nullptr};
    const SpawnPlan plan(socket);
    pid_t process = -1;
    const int error = ::posix_spawn(&process, program.c_str(), &plan.actions, &plan.attributes,
                                    arguments.data(), workerEnvironment().data());
    if (error != 0) {
        throw std::system_error(error, std::generic_category(), "cannot start " + program);
    }
    return process;
}

} // namespace

PhotoWorker::PhotoWorker(const std::string& program, Handlers handlers)
    : handlers_(std::move(handlers)) {
    std::array<int, 2> ends{};
    if (::socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends.data()) != 0) {
        throw std::system_error(errno, std::generic_category(), "cannot make a socket");
    }
    socket_ = Descriptor(ends[0]);
    const Descriptor other(ends[1]);
    ::fcntl(socket_.get(), F_SETFL, O_NONBLOCK);
    process_ = start(program, other.get());
    readable_ = std::make_unique<QSocketNotifier>(socket_.get(), QSocketNotifier::Read);
    QObject::connect(readable_.get(), &QSocketNotifier::activated, readable_.get(),
                     [this] { readMore(); });
}

void PhotoWorker::kill() {
    if (process_ > 0) {
        readable_->setEnabled(false);
        ::kill(std::exchange(process_, -1), SIGKILL);
    }
}

void PhotoWorker::ask(const PhotoQuestion& question) {
    question_ = question;
    // A question is far smaller than a socket's buffer, and the worker has read all before it: what
    // is not written was not written because the worker has gone, which reading will tell.
    if (const std::optional<std::string> bytes = encodeQuestion(question)) {
        writeFully(socket_.get(), bytes->data(), bytes->size());
    }
}

void PhotoWorker::readMore() {
    const bool hadPhoto = !photo_.isNull();
    const Step step = hadPhoto ? takePixels() : takeHead();
    if (step == Step::Waits) {
        return;
    }
    if (step == Step::Failed) {
        readable_->setEnabled(false);
        const auto failed = handlers_.failed;
        failed(); // may destroy this worker
        return;
    }
    if (!hadPhoto && !photo_.isNull()) {
        readMore(); // the pixels follow their head at once
        return;
    }
    received_ = 0;
    if (std::exchange(head_, {}).number == 0) {
        ready_ = true;
        return;
    }
    question_ = {};
    const QImage photo = std::exchange(photo_, {});
    const auto answered = handlers_.answered;
    answered(photo); // may destroy this worker
}

PhotoWorker::Step PhotoWorker::readSome(void* to, std::size_t length) {
    while (received_ < length) {
        const ssize_t got =
            ::read(socket_.get(), static_cast<char*>(to) + received_, length - received_);
        if (got < 0 && errno == EINTR) {
            continue;
        }
        if (got < 0 && errno == EAGAIN) {
            return Step::Waits;
        }
        if (got <= 0) {
            return Step::Failed;
        }
        received_ += static_cast<std::size_t>(got);
    }
    return Step::Goes;
}

PhotoWorker::Step PhotoWorker::takeHead() {
    const Step step = readSome(&head_, sizeof head_);
    if (step != Step::Goes) {
        return step;
    }
    if (head_.number == 0) {
        const bool first = !ready_ && head_.magic == PhotoAnswer::mark && head_.width == 0;
        return first ? Step::Goes : Step::Failed;
    }
    if (!isBusy() || !head_.answers(question_)) {
        return Step::Failed;
    }
    if (head_.width > 0) {
        photo_ = QImage(static_cast<int>(head_.width), static_cast<int>(head_.height),
                        QImage::Format_ARGB32_Premultiplied);
        received_ = 0;
        return photo_.isNull() ? Step::Failed : Step::Goes;
    }
    return Step::Goes;
}

PhotoWorker::Step PhotoWorker::takePixels() {
    return readSome(photo_.bits(), head_.bytes());
}

} // namespace kintar::platform
