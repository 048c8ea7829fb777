// The name search, from the press of Search to the painted list, beside bare reading.
#include "Beside.h"
#include "NameSearchWorld.h"

#include "base/Unicode.h"
#include "platform/photo/PhotoDecoder.h"
#include "search/NameListModel.h"
#include "search/NameQuery.h"

#include <QApplication>
#include <QImage>
#include <QKeyEvent>

#include <fcntl.h>
#include <malloc.h>
#include <unistd.h>

namespace {

using namespace kintar;
using namespace kintar::bench;

constexpr int manyNames = 200000;
constexpr int mostNames = 1000000;
constexpr int people = 100;
constexpr int rounds = 7;

const std::string bareColumns =
    "SELECT Names.ID, coalesce(LName, '') || ', ' || coalesce(FName, ''), Visitor, Trace, "
    "Company.Name FROM Names LEFT JOIN Company ON Names.LocGrp = Company.LocGrp AND Names.Company "
    "= Company.Company WHERE Names.LocGrp = 1 ";

void expectEqual(int one, int other) {
    if (one != other || one == 0) {
        throw std::runtime_error("the two found " + std::to_string(one) + " and " +
                                 std::to_string(other) + " names");
    }
}

std::size_t heapInUse() {
    const struct mallinfo2 info = mallinfo2();
    return info.uordblks + info.hblkhd;
}

std::size_t textBytes(QTreeView& list) {
    const auto& names = dynamic_cast<search::NameListModel&>(*list.model()).list();
    std::size_t bytes = 0;
    for (std::size_t row = 0; row < names.count(); ++row) {
        for (std::size_t column = 0; column < 4; ++column) {
            bytes += names.value(row, column).view().size();
        }
    }
    return bytes;
}

void memory(NameDialog& dialog) {
    dialog.search("nobody is called that");
    const std::size_t before = heapInUse();
    const int found = dialog.search("");
    const std::size_t after = heapInUse();
    const double each =
        static_cast<double>(after - before - textBytes(dialog.list())) / static_cast<double>(found);
    std::printf("%-58s %10.1f bytes a name beyond the text     aim <= 120    %s\n",
                "memory of 200,000 names in the list", each, each <= 120 ? "met" : "MISSED");
}

void sorting(NameDialog& dialog) {
    dialog.form().PopulateListView("SELECT [Names].ID, (LName & ', ' & FName) as Name, Visitor, "
                                   "Trace FROM [Names] WHERE LocGrp = 1 ORDER BY [Names].ID");
    NameDialog::runUntil([&] { return !dialog.form().isFilling(); });
    auto& model = dynamic_cast<search::NameListModel&>(*dialog.list().model());
    std::vector<std::string> keys;
    for (std::size_t row = 0; row < model.list().count(); ++row) {
        keys.push_back(unicode::sortKey(model.list().value(row, 0).view()));
    }
    expectEqual(static_cast<int>(keys.size()), manyNames);
    beside(
        "sort by a column, 200,000 names / std::sort over ready keys", rounds,
        [&] {
            model.sortBy(0);
            dialog.list().viewport()->repaint();
        },
        [&] {
            std::vector<std::string_view> sorted(keys.begin(), keys.end());
            std::sort(sorted.begin(), sorted.end());
        },
        3.0);
}

void manyNamesList() {
    const NameSite site(manyNames);
    NameDialog dialog(site.path());
    BareNames bare(site, bareColumns + "ORDER BY kintar_sort(LName), kintar_sort(FName)");
    expectEqual(dialog.search(""), bare.step());
    beside(
        "search to first paint, 200,000 names / bare stepping", rounds, [&] { dialog.search(""); },
        [&] { bare.step(); }, 1.1);
    memory(dialog);
    sorting(dialog);
}

void threeLetters() {
    const NameSite site(mostNames);
    NameDialog dialog(site.path());
    BareNames bare(site, bareColumns + "AND LName COLLATE NOCASE >= 'mok' AND LName COLLATE NOCASE "
                                       "< 'mol' ORDER BY kintar_sort(LName), kintar_sort(FName)");
    const int found = dialog.search("mok");
    expectEqual(found, bare.step());
    beside(
        "three letters among 1,000,000 names (" + std::to_string(found) +
            " found) / bare range query",
        15, [&] { dialog.search("mok"); }, [&] { bare.step(); }, 2.0);
}

/// A picture of two megapixels that compresses about as a photo does, another one for each number.
void writePhoto(const std::string& path, int number) {
    QImage coarse(204, 153, QImage::Format_RGB32);
    std::uint32_t noise = static_cast<std::uint32_t>(number) * 2654435761U + 1;
    for (int y = 0; y < coarse.height(); ++y) {
        for (int x = 0; x < coarse.width(); ++x) {
            noise = noise * 1664525U + 1013904223U;
            coarse.setPixel(x, y, (noise >> 8U) | 0xFF000000U);
        }
    }
    coarse.scaled(1632, 1224, Qt::IgnoreAspectRatio, Qt::SmoothTransformation)
        .save(QString::fromStdString(path), "jpeg", 90);
}

void press(QWidget& widget, int key) {
    QKeyEvent down(QEvent::KeyPress, key, Qt::NoModifier);
    QCoreApplication::sendEvent(&widget, &down);
}

void arrowDown() {
    const NameSite site(people);
    site.run("INSERT INTO Images SELECT ID, 1, ID || '.jpg' FROM Names;"
             "INSERT INTO Cards (ID, NameID, LocGrp, Status) SELECT ID, ID, 1, 1 FROM Names;"
             "INSERT INTO LocCards SELECT ID, ID, 3, '2012-03-14 17:05:00', 7, 'I', 'N', 'N', 'N' "
             "FROM Names; INSERT INTO Dev VALUES (3, 7, 'Front Door')");
    const std::string folder = site.path() + "/Data/Images/";
    for (int id = 1; id <= people; ++id) {
        writePhoto(folder + std::to_string(id) + ".jpg", id);
    }
    NameDialog dialog(site.path());
    dialog.search("");
    NameDialog::runUntil([&] { return dialog.photos().isWarm(); });
    NameDialog::PaintCount paints(dialog.photo());
    const QSize box = dialog.photo().parentWidget()->size();
    beside(
        "arrow-down through 100 names with photos / decoding them", 5,
        [&] {
            press(dialog.list(), Qt::Key_Home);
            for (int row = 1; row < people; ++row) {
                press(dialog.list(), Qt::Key_Down);
                NameDialog::runUntil(
                    [&] { return dialog.photo().state() == platform::PhotoBox::State::Photo; });
                const int before = paints.count;
                NameDialog::runUntil([&] { return paints.count > before; });
            }
        },
        [&] {
            for (int id = 1; id < people; ++id) {
                const int file = open((folder + std::to_string(id) + ".jpg").c_str(), O_RDONLY);
                const QImage photo = platform::decodePhoto(file, box);
                close(file);
                if (photo.isNull()) {
                    throw std::runtime_error("a photo was not decoded");
                }
            }
        },
        1.5);
}

} // namespace

int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication application(argc, argv);
    QApplication::setQuitOnLastWindowClosed(false);
    try {
        manyNamesList();
        threeLetters();
        arrowDown();
    } catch (const std::exception& error) {
        std::fprintf(stderr, "bench_name_search: %s\n", error.what());
        return 1;
    }
    return 0;
}
