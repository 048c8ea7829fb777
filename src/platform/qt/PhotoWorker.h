// One process that decodes photos.
#pragma once

#include "platform/Descriptor.h"
#include "platform/photo/PhotoProtocol.h"

#include <QImage>
#include <QSocketNotifier>

#include <functional>
#include <memory>
#include <string>

#include <sys/types.h>

namespace kintar::platform {

/// A running worker process and the socket to it. It answers one question at a time.
class PhotoWorker {
public:
    struct Handlers {
        /// The answer to the question asked; a null image: there is no such photo.
        std::function<void(const QImage&)> answered;
        /// The process ended, or broke the protocol. Nothing else is called after this.
        std::function<void()> failed;
    };

    /// Starts the program; throws std::system_error where that cannot be done.
    PhotoWorker(const std::string& program, Handlers handlers);
    PhotoWorker(const PhotoWorker&) = delete;
    PhotoWorker& operator=(const PhotoWorker&) = delete;
    /// Kills the process without waiting for its end; `waitpid` is the owner's matter.
    ~PhotoWorker() { kill(); }

    /// Kills the process; no handler is called any more.
    void kill();
    [[nodiscard]] pid_t process() const { return process_; }
    /// Whether it has loaded everything and waits for a question.
    [[nodiscard]] bool isReady() const { return ready_; }
    [[nodiscard]] bool isBusy() const { return question_.number != 0; }
    /// Asks; the worker must not be busy. Where it has died, `failed` is called later.
    void ask(const PhotoQuestion& question);

private:
    /// How far reading came.
    enum class Step { Goes, Waits, Failed };

    void readMore();
    Step readSome(void* to, std::size_t length);
    Step takeHead();
    Step takePixels();

    Handlers handlers_;
    Descriptor socket_;
    pid_t process_ = -1;
    std::unique_ptr<QSocketNotifier> readable_;
    bool ready_ = false;
    PhotoQuestion question_; ///< number 0: not busy
    PhotoAnswer head_;
    QImage photo_;
    std::size_t received_ = 0; ///< of the head, or of the pixels once the photo is there
};

} // namespace kintar::platform
