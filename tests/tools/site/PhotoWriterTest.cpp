#include "tools/site/PhotoWriter.h"

#include "TestSite.h"
#include "tools/site/FacePainter.h"
#include "tools/site/SiteError.h"

#include <QImage>
#include <QImageReader>
#include <gtest/gtest.h>

namespace kintar::site {
namespace {

namespace fs = std::filesystem;
using testing::contentOf;
using testing::ScratchFolder;

std::vector<Person> people(int count) {
    const Persons persons(1, count);
    std::vector<Person> result;
    for (int id = 1; id <= count; ++id) {
        result.push_back(persons.person(id));
    }
    return result;
}

QByteArray formatName(PhotoFormat format) {
    switch (format) {
    case PhotoFormat::Png:
        return "png";
    case PhotoFormat::Bmp:
        return "bmp";
    case PhotoFormat::Tiff:
        return "tiff";
    case PhotoFormat::Jpeg:
        break;
    }
    return "jpeg";
}

TEST(PhotoWriter, WritesEveryPhotoInTheFormatThatItsPersonHas) {
    const ScratchFolder scratch;
    const std::vector<Person> all = people(60);
    writePhotos(scratch.path(), all, 1);
    for (const Person& person : all) {
        const fs::path file = fs::path(scratch.path()) / person.photo.path;
        if (person.photo.state != PhotoState::Present) {
            EXPECT_FALSE(fs::is_regular_file(file)) << person.id;
            continue;
        }
        QImageReader reader(QString::fromStdString(file.string()));
        reader.setDecideFormatFromContent(true);
        EXPECT_EQ(reader.format(), formatName(person.photo.format)) << person.id;
        EXPECT_FALSE(reader.read().isNull()) << person.id;
    }
}

TEST(PhotoWriter, WritesTheSameBytesAgain) {
    const ScratchFolder one;
    const ScratchFolder two;
    const std::vector<Person> all = people(40);
    writePhotos(one.path(), all, 1);
    writePhotos(two.path(), all, 1);
    int files = 0;
    for (const fs::directory_entry& entry : fs::recursive_directory_iterator(one.path())) {
        if (entry.is_regular_file()) {
            ++files;
            EXPECT_EQ(contentOf(entry.path()),
                      contentOf(fs::path(two.path()) / fs::relative(entry.path(), one.path())));
        }
    }
    EXPECT_GT(files, 30);
}

TEST(PhotoWriter, ShowsThePersonWhoseFileItIs) {
    const ScratchFolder scratch;
    std::vector<Person> all = people(2);
    all[0].photo.format = PhotoFormat::Png;
    writePhotos(scratch.path(), all, 1);
    const QImage read(QString::fromStdString(scratch / all[0].photo.path));
    EXPECT_EQ(read.convertToFormat(QImage::Format_RGB32), paintFace(faceOf(1, 1), 1));
}

TEST(PhotoWriter, SaysWhichFileItCouldNotWrite) {
    const ScratchFolder scratch;
    const std::vector<Person> all = people(1);
    fs::create_directory(scratch / all[0].photo.path);
    try {
        writePhotos(scratch.path(), all, 1);
        FAIL() << "wrote over a folder";
    } catch (const SiteError& error) {
        EXPECT_NE(std::string(error.what()).find(all[0].photo.path), std::string::npos);
    }
}

} // namespace
} // namespace kintar::site
