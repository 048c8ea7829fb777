#include "tools/site/PhotoWriter.h"

#include "tools/site/FacePainter.h"
#include "tools/site/SiteError.h"

#include <QImage>
#include <QImageWriter>
#include <QString>

#include <algorithm>
#include <atomic>
#include <exception>
#include <mutex>
#include <thread>

namespace kintar::site {

namespace {

constexpr int jpegQuality = 88;
constexpr int lzwCompression = 1;

void save(const QImage& image, const std::filesystem::path& path, PhotoFormat format) {
    QImageWriter writer(QString::fromStdString(path.string()));
    switch (format) {
    case PhotoFormat::Jpeg:
        writer.setFormat("jpeg");
        writer.setQuality(jpegQuality);
        break;
    case PhotoFormat::Png:
        writer.setFormat("png");
        break;
    case PhotoFormat::Bmp:
        writer.setFormat("bmp");
        break;
    case PhotoFormat::Tiff:
        writer.setFormat("tiff");
        writer.setCompression(lzwCompression);
        break;
    }
    if (!writer.write(image)) {
        throw SiteError(path.string() + ": " + writer.errorString().toStdString());
    }
}

void writePhoto(const std::filesystem::path& folder, const Person& person, std::uint64_t seed) {
    const QImage image = paintFace(faceOf(person.id, seed), person.id);
    // Bitmaps are not compressed: half the size is enough for them.
    const bool half = person.photo.format == PhotoFormat::Bmp;
    save(half ? image.scaled(faceWidth / 2, faceHeight / 2, Qt::IgnoreAspectRatio,
                             Qt::SmoothTransformation)
              : image,
         folder / person.photo.path, person.photo.format);
    if (!person.photo.otherType.empty()) {
        save(image.convertToFormat(QImage::Format_Grayscale8), folder / person.photo.otherType,
             PhotoFormat::Jpeg);
    }
}

/// Also loads the formats' plugins on the calling thread: their objects belong to the thread that
/// loads them and are destroyed at the program's end, when a painting thread is long gone.
void requireFormats() {
    const QList<QByteArray> supported = QImageWriter::supportedImageFormats();
    for (const char* format : {"jpeg", "png", "bmp", "tiff"}) {
        if (!supported.contains(QByteArray(format))) {
            throw SiteError(
                std::string("photos cannot be written: this system's Qt lacks the format ") +
                format);
        }
    }
}

/// Threads that take the next person until there is none or one of them has failed.
class Painters {
public:
    Painters(const std::filesystem::path& folder, const std::vector<const Person*>& people,
             std::uint64_t seed, const std::function<void()>& checkpoint)
        : folder_(folder), people_(people), seed_(seed), checkpoint_(checkpoint) {}

    void run() {
        std::vector<std::jthread> threads;
        const unsigned count = std::clamp(std::thread::hardware_concurrency(), 1U, 8U);
        for (unsigned i = 0; i < count; ++i) {
            threads.emplace_back([this] { work(); });
        }
        threads.clear();
        if (failure_) {
            std::rethrow_exception(failure_);
        }
    }

private:
    void work() {
        for (std::size_t i = next_++; i < people_.size(); i = next_++) {
            try {
                checkpoint_();
                writePhoto(folder_, *people_[i], seed_);
            } catch (...) {
                const std::scoped_lock lock(mutex_);
                failure_ = std::current_exception();
                next_ = people_.size();
                return;
            }
        }
    }

    const std::filesystem::path& folder_;
    const std::vector<const Person*>& people_;
    std::uint64_t seed_;
    const std::function<void()>& checkpoint_;
    std::atomic<std::size_t> next_ = 0;
    std::mutex mutex_;
    std::exception_ptr failure_;
};

} // namespace

void writePhotos(const std::filesystem::path& folder, const std::vector<Person>& people,
                 std::uint64_t seed, const std::function<void()>& checkpoint) {
    requireFormats();
    std::vector<const Person*> present;
    for (const Person& person : people) {
        if (person.photo.state == PhotoState::Present) {
            std::filesystem::create_directories((folder / person.photo.path).parent_path());
            present.push_back(&person);
        }
    }
    Painters(folder, present, seed, checkpoint).run();
}

} // namespace kintar::site
