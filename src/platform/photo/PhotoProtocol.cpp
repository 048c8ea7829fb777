#include "platform/photo/PhotoProtocol.h"

#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>

namespace kintar::platform {

namespace {

void put(std::string& bytes, std::uint32_t value) {
    char raw[sizeof value];
    std::memcpy(raw, &value, sizeof value);
    bytes.append(raw, sizeof raw);
}

void put(std::string& bytes, const std::string& text) {
    put(bytes, static_cast<std::uint32_t>(text.size()));
    bytes += text;
}

std::optional<std::uint32_t> takeNumber(std::string_view& bytes) {
    std::uint32_t value = 0;
    if (bytes.size() < sizeof value) {
        return std::nullopt;
    }
    std::memcpy(&value, bytes.data(), sizeof value);
    bytes.remove_prefix(sizeof value);
    return value;
}

std::optional<std::string> takeText(std::string_view& bytes) {
    const std::optional<std::uint32_t> length = takeNumber(bytes);
    if (!length || *length > bytes.size()) {
        return std::nullopt;
    }
    std::string text(bytes.substr(0, *length));
    bytes.remove_prefix(*length);
    return text;
}

std::uint32_t side(std::int32_t pixels) {
    return static_cast<std::uint32_t>(std::clamp(pixels, 1, largestPhotoSide));
}

} // namespace

bool PhotoAnswer::answers(const PhotoQuestion& question) const {
    const bool none = width == 0 && height == 0;
    const bool fits =
        width > 0 && height > 0 && width <= side(question.width) && height <= side(question.height);
    return magic == mark && number == question.number && (none || fits);
}

std::optional<std::string> encodeQuestion(const PhotoQuestion& question) {
    std::string body;
    put(body, question.number);
    put(body, side(question.width));
    put(body, side(question.height));
    put(body, question.folder);
    put(body, question.fileName);
    if (body.size() + sizeof(std::uint32_t) > longestQuestion) {
        return std::nullopt;
    }
    std::string bytes;
    put(bytes, body);
    return bytes;
}

std::optional<PhotoQuestion> decodeQuestion(std::string_view bytes) {
    const std::optional<std::uint32_t> number = takeNumber(bytes);
    const std::optional<std::uint32_t> width = takeNumber(bytes);
    const std::optional<std::uint32_t> height = takeNumber(bytes);
    std::optional<std::string> folder = takeText(bytes);
    std::optional<std::string> fileName = takeText(bytes);
    if (!folder || !fileName || !bytes.empty() || *number == 0) {
        return std::nullopt;
    }
    return PhotoQuestion{*number, static_cast<std::int32_t>(*width),
                         static_cast<std::int32_t>(*height), *std::move(folder),
                         *std::move(fileName)};
}

bool readFully(int descriptor, void* to, std::size_t length) {
    auto* next = static_cast<char*>(to);
    while (length > 0) {
        const ssize_t got = ::read(descriptor, next, length);
        if (got < 0 && errno == EINTR) {
            continue;
        }
        if (got <= 0) {
            return false;
        }
        next += got;
        length -= static_cast<std::size_t>(got);
    }
    return true;
}

bool writeFully(int descriptor, const void* from, std::size_t length) {
    const auto* next = static_cast<const char*>(from);
    while (length > 0) {
        const ssize_t sent = ::send(descriptor, next, length, MSG_NOSIGNAL);
        if (sent < 0 && errno == EINTR) {
            continue;
        }
        if (sent <= 0) {
            return false;
        }
        next += sent;
        length -= static_cast<std::size_t>(sent);
    }
    return true;
}

} // namespace kintar::platform
