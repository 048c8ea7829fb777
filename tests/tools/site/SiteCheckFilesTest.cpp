// What the check says about settings, folders and files.
#include "CheckedSite.h"

#include <sys/stat.h>

namespace kintar::site {
namespace {

namespace fs = std::filesystem;
using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::EndsWith;
using ::testing::IsEmpty;
using testing::only;
using testing::onlyFrom;
using testing::ScratchFolder;
using ::testing::StartsWith;
using testing::TestSite;

class SiteCheckFiles : public ::testing::Test {
protected:
    [[nodiscard]] std::vector<std::string> found() const { return checkSite(site.folder); }
    void write(const std::string& name, const std::string& content) const {
        std::ofstream(site.folder / name, std::ios::binary | std::ios::trunc) << content;
    }

    TestSite site;
};

TEST_F(SiteCheckFiles, FindAFolderThatIsNone) {
    EXPECT_THAT(checkSite(site.folder / "nowhere"), ElementsAre(EndsWith("nowhere: is no folder")));
    EXPECT_THAT(checkSite(site.folder / databaseFile), ElementsAre(EndsWith("is no folder")));
}

TEST_F(SiteCheckFiles, FindMissingSettings) {
    fs::remove(site.folder / settingsFile);
    EXPECT_THAT(found(), only("kintar3.ini: is missing"));
}

TEST_F(SiteCheckFiles, FindSettingsThatAreNoFile) {
    fs::remove(site.folder / settingsFile);
    fs::create_directory(site.folder / settingsFile);
    EXPECT_THAT(found(), only("kintar3.ini: is no regular file"));
    fs::remove(site.folder / settingsFile);
    ASSERT_EQ(::mkfifo((site.folder / settingsFile).c_str(), 0600), 0);
    EXPECT_THAT(found(), only("kintar3.ini: is no regular file"));
    fs::remove(site.folder / settingsFile);
    fs::create_symlink("/etc/hostname", site.folder / settingsFile);
    EXPECT_THAT(found(), only("kintar3.ini: is a link"));
}

TEST_F(SiteCheckFiles, FindSettingsThatTheServerWouldRefuse) {
    write(settingsFile, "[Site]\nDatabase=\n");
    EXPECT_THAT(found(), onlyFrom("kintar3.ini: kintar3.ini, line 2: "));
    write(settingsFile, "[Site]\nDatabase=site.db\nData=Data\nwhat is this\n");
    EXPECT_THAT(found(), onlyFrom("kintar3.ini: kintar3.ini, line 4: "));
    write(settingsFile, std::string("[Site]\nData=\0\n", 14));
    EXPECT_THAT(found(), onlyFrom("kintar3.ini: "));
    write(settingsFile, std::string(100000, 'x'));
    EXPECT_THAT(found(), only("kintar3.ini: is larger than 65536 bytes"));
}

TEST_F(SiteCheckFiles, FindAMissingTableOfTexts) {
    write(settingsFile, "[Site]\nTexts=Wording\n");
    EXPECT_THAT(found(),
                only("Wording: is named in kintar3.ini and is no table with Num and Text"));
    site.execute("CREATE TABLE Wording (Num INTEGER PRIMARY KEY, Text TEXT)");
    EXPECT_THAT(found(), IsEmpty());
}

TEST_F(SiteCheckFiles, ReadSettingsInEveryUsualForm) {
    write(settingsFile, "; a remark\r\n[SITE]\r\n database = .\\site.db \r\nDATA=Data\r\n");
    EXPECT_THAT(found(), IsEmpty());
    write(settingsFile, "[Site]\nDatabase=site.db\nData=" + (site.folder / "Data").string() + "\n");
    EXPECT_THAT(found(), IsEmpty());
}

TEST_F(SiteCheckFiles, FindAMissingDatabase) {
    fs::remove(site.folder / databaseFile);
    EXPECT_THAT(found(), ElementsAre(EndsWith("site.db is missing")));
}

TEST_F(SiteCheckFiles, FindADatabaseThatIsNoPlainFile) {
    fs::rename(site.folder / databaseFile, site.folder / "real.db");
    fs::create_symlink("real.db", site.folder / databaseFile);
    EXPECT_THAT(found(), ElementsAre(EndsWith("site.db is no regular file")));
    fs::remove(site.folder / databaseFile);
    ASSERT_EQ(::mkfifo((site.folder / databaseFile).c_str(), 0600), 0);
    EXPECT_THAT(found(), ElementsAre(EndsWith("site.db is no regular file")));
}

TEST_F(SiteCheckFiles, FindMissingFolders) {
    fs::remove_all(site.folder / "Errors");
    EXPECT_THAT(found(), only("Errors: the folder is missing"));
    fs::create_directory(site.folder / "Errors");
    fs::remove_all(site.folder / "Reports");
    write("Reports", "a file");
    EXPECT_THAT(found(), only("Reports: is no folder"));
}

TEST_F(SiteCheckFiles, FindLinksInPlaceOfFolders) {
    fs::rename(site.folder / "Errors", site.folder / "elsewhere");
    fs::create_directory_symlink("elsewhere", site.folder / "Errors");
    EXPECT_THAT(found(), only("Errors: is a link to elsewhere"));
}

TEST_F(SiteCheckFiles, FindAFolderInWhichNoFileCanBeMade) {
    // Not even a superuser can make a file there.
    write(settingsFile, "[Site]\nDatabase=site.db\nData=/proc\n");
    EXPECT_THAT(found(), Contains(StartsWith("Data: no file can be made in it: ")));
}

TEST_F(SiteCheckFiles, LeaveNothingBehind) {
    EXPECT_THAT(found(), IsEmpty());
    EXPECT_TRUE(fs::is_empty(site.folder / "Errors"));
}

TEST_F(SiteCheckFiles, FindMissingPhotosButNotThoseKnownToBeMissing) {
    EXPECT_THAT(found(), IsEmpty());
    const std::string path = Persons(1, 500).person(1).photo.path;
    fs::remove(site.folder / "Data/Images" / path);
    EXPECT_THAT(found(), ElementsAre(::testing::AllOf(StartsWith("Images.FileName: person 1: '"),
                                                      EndsWith("' the file is missing"))));
    fs::remove(site.folder / "Data/MissingPhotos.txt");
    EXPECT_THAT(found(), Contains(StartsWith("Images.FileName: person 5: '")));
}

TEST_F(SiteCheckFiles, FindPhotosThatAreLinks) {
    const fs::path photo = site.folder / "Data/Images" / Persons(1, 500).person(1).photo.path;
    fs::remove(photo);
    fs::create_symlink(site.folder / databaseFile, photo);
    EXPECT_THAT(found(),
                ElementsAre(EndsWith("' is a link, a folder or a device and no plain file")));
}

TEST_F(SiteCheckFiles, TakeASiteWithoutAPrinterMap) {
    fs::remove(site.folder / "Data/InRptByLoc.txt");
    EXPECT_THAT(found(), IsEmpty());
}

TEST_F(SiteCheckFiles, FindMalformedLinesOfThePrinterMap) {
    for (const std::string line : {"0,1,x,;Printer", "0,1;Printer", ",1,;Printer", ";Printer", "",
                                   "Printer", "0, 1,;Printer", "0,99999999999,;Printer"}) {
        write("Data/InRptByLoc.txt", "0,1,;Office\r\n" + line + "\r\n");
        EXPECT_THAT(found(), onlyFrom("InRptByLoc.txt: line 2 is not a location list")) << line;
    }
    write("Data/InRptByLoc.txt", std::string(2'000'000, '0'));
    EXPECT_THAT(found(), only("InRptByLoc.txt: is larger than 1048576 bytes"));
}

TEST_F(SiteCheckFiles, FindUnknownLocationsOfThePrinterMap) {
    write("Data/InRptByLoc.txt", "0,1,77,;Office\n 4 ;Depot\n88\n");
    EXPECT_THAT(found(), ElementsAre("InRptByLoc.txt: line 1 names location 77, which is missing",
                                     "InRptByLoc.txt: line 3 names location 88, which is missing"));
}

TEST_F(SiteCheckFiles, FindMissingReportFiles) {
    fs::remove(site.folder / "Reports/Except.rpt");
    EXPECT_THAT(found(), only("Reports/Except.rpt: is missing"));
}

TEST_F(SiteCheckFiles, FindReportFilesThatCannotBeRead) {
    write("Reports/InRptc.rpt", "<report>\n<unclosed>\n");
    EXPECT_THAT(found(), onlyFrom("Reports/InRptc.rpt: InRptc.rpt, line "));
    write("Reports/InRptc.rpt", testing::contentOf(site.folder / "Reports/Except.rpt"));
    write("Reports/Own.rpt", "<other/>");
    EXPECT_THAT(found(), onlyFrom("Reports/Own.rpt: Own.rpt, line 1"));
}

} // namespace
} // namespace kintar::site
