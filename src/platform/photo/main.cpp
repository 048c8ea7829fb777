// kintar3-photo: decodes photo files for the server, one after another, in a process that can be
// stopped. It gets questions and gives answers on its standard input, which is a socket.
#include "platform/photo/Confinement.h"
#include "platform/photo/PhotoDecoder.h"
#include "platform/photo/PhotoFolder.h"
#include "platform/photo/PhotoProtocol.h"

#include <QBuffer>
#include <QCoreApplication>
#include <QImageReader>

#include <sys/socket.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>

#if defined(__SANITIZE_ADDRESS__)
#define KINTAR_ADDRESS_SANITIZER 1
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
#define KINTAR_ADDRESS_SANITIZER 1
#endif
#endif

#ifdef KINTAR_ADDRESS_SANITIZER
// Its shadow memory alone is larger than any limit that could be set here, so it keeps the limit.
// NOLINTNEXTLINE(bugprone-reserved-identifier): the sanitizer looks for this name
extern "C" const char* __asan_default_options() {
    return "hard_rss_limit_mb=512:max_allocation_size_mb=200:allocator_may_return_null=1:"
           "detect_leaks=0";
}
#endif

namespace {

using namespace kintar::platform;

constexpr int channel = STDIN_FILENO;
/// With what the program and its libraries hold anyway, this stays below 256 MB.
#ifdef KINTAR_ADDRESS_SANITIZER
constexpr std::size_t dataBytes = 0;
#else
constexpr std::size_t dataBytes = std::size_t{200} << 20;
#endif
/// An image in memory; less than the data limit, so that a copy of a part of it still fits.
constexpr int imageMegabytes = 128;
/// The server asks for 2 seconds; this ends a worker that the server could not.
constexpr unsigned processorSeconds = 4;

/// Loads the image formats before the first photo is waited for.
void warmUp() {
    QImage small(8, 8, QImage::Format_RGB32);
    small.fill(Qt::gray);
    for (const char* format : {"jpeg", "png", "bmp", "tiff"}) {
        QByteArray bytes;
        QBuffer buffer(&bytes);
        buffer.open(QIODevice::ReadWrite);
        small.save(&buffer, format);
        buffer.seek(0);
        QImageReader reader;
        reader.setDecideFormatFromContent(true);
        reader.setDevice(&buffer);
        reader.read();
    }
}

std::optional<PhotoQuestion> nextQuestion() {
    std::uint32_t length = 0;
    if (!readFully(channel, &length, sizeof length) || length > longestQuestion) {
        return std::nullopt;
    }
    std::string body(length, '\0');
    if (!readFully(channel, body.data(), body.size())) {
        return std::nullopt;
    }
    return decodeQuestion(body);
}

bool answer(PhotoFolder& folder, const PhotoQuestion& question) {
    QImage photo;
    if (const Descriptor file = folder.open(question.folder, question.fileName)) {
        photo = decodePhoto(file.get(), QSize(question.width, question.height));
    }
    PhotoAnswer head;
    head.number = question.number;
    head.width = static_cast<std::uint32_t>(photo.width());
    head.height = static_cast<std::uint32_t>(photo.height());
    return writeFully(channel, &head, sizeof head) &&
           writeFully(channel, photo.constBits(), head.bytes());
}

bool isSocket(int descriptor) {
    int type = 0;
    socklen_t size = sizeof type;
    return ::getsockopt(descriptor, SOL_SOCKET, SO_TYPE, &type, &size) == 0 && type == SOCK_STREAM;
}

} // namespace

int main(int argc, char** argv) {
    if (argc != 2 || !isSocket(channel)) {
        std::fputs("kintar3-photo is started by the server, to decode photos for it.\n", stderr);
        return 2;
    }
    qInstallMessageHandler([](QtMsgType, const QMessageLogContext&, const QString&) {
        // What a reader has to say about a file names no more than the window shows: No Image.
    });
    const QCoreApplication application(argc, argv);
    warmUp();
    QImageReader::setAllocationLimit(imageMegabytes);
    confineProcess(static_cast<pid_t>(std::strtol(argv[1], nullptr, 10)), dataBytes);
    PhotoFolder folder;
    const PhotoAnswer ready;
    bool going = writeFully(channel, &ready, sizeof ready);
    while (going) {
        limitProcessorTime(processorSeconds);
        const std::optional<PhotoQuestion> question = nextQuestion();
        going = question && answer(folder, *question);
    }
    // Neither the toolkit nor a sanitizer has anything to clean up here.
    std::_Exit(0);
}
