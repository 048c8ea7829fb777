// What the check says about databases.
#include "CheckedSite.h"

namespace kintar::site {
namespace {

using ::testing::Contains;
using ::testing::Each;
using ::testing::ElementsAre;
using testing::foundAfter;
using ::testing::IsEmpty;
using ::testing::Not;
using testing::only;
using testing::onlyFrom;
using ::testing::SizeIs;
using ::testing::StartsWith;
using testing::TestSite;

TEST(SiteCheck, FindsNothingInAFreshSite) {
    const TestSite site(500);
    EXPECT_THAT(checkSite(site.folder), IsEmpty());
}

TEST(SiteCheck, FindsNothingInWhatTheOriginalWritesToo) {
    EXPECT_THAT(foundAfter("INSERT INTO Names (ID, LName) VALUES (9999, NULL);"
                           "CREATE TABLE Other (a); ALTER TABLE Names ADD COLUMN Note TEXT;"
                           "CREATE INDEX More ON Names (Note);"),
                IsEmpty());
}

TEST(SiteCheck, FindsAMissingTable) {
    EXPECT_THAT(foundAfter("DROP TABLE Skills"), only("Skills: the table is missing"));
}

TEST(SiteCheck, FindsAViewInPlaceOfATable) {
    EXPECT_THAT(foundAfter("DROP TABLE Skills; CREATE VIEW Skills AS SELECT 1 AS NameID"),
                only("Skills: is a view and no table"));
}

TEST(SiteCheck, FindsAMissingColumn) {
    EXPECT_THAT(foundAfter("ALTER TABLE Loc DROP COLUMN DST"),
                only("Loc.DST: the column is missing"));
}

TEST(SiteCheck, FindsAColumnDeclaredOtherwise) {
    EXPECT_THAT(
        foundAfter("ALTER TABLE Loc DROP COLUMN DST; ALTER TABLE Loc ADD COLUMN DST BOOLEAN"),
        only("Loc.DST: is declared 'boolean' instead of YESNO"));
}

TEST(SiteCheck, FindsATableWithoutItsKey) {
    EXPECT_THAT(
        foundAfter("CREATE TABLE i2 (ID INTEGER, Loc INTEGER); INSERT INTO i2 SELECT * FROM IO;"
                   "DROP TABLE IO; ALTER TABLE i2 RENAME TO IO"),
        only("IO.ID: is not the key of its table"));
}

TEST(SiteCheck, FindsAMissingIndex) {
    EXPECT_THAT(foundAfter("DROP INDEX ImagesIndex1"),
                only("Images: has no index on (NameID, ImgType)"));
}

TEST(SiteCheck, FindsAMissingIndexOfAnExpression) {
    EXPECT_THAT(foundAfter("DROP INDEX CardsIndex2"),
                only("Cards: has no index on (LocGrp, CAST(Code AS REAL))"));
}

TEST(SiteCheck, TakesAnIndexOfAnotherNameOrWithMoreColumns) {
    EXPECT_THAT(foundAfter("DROP INDEX ImagesIndex1;"
                           "CREATE INDEX Mine ON Images (nameid, IMGTYPE, FileName)"),
                IsEmpty());
}

TEST(SiteCheck, DoesNotTakeAnIndexOfAnotherCollationOrOfSomeRows) {
    EXPECT_THAT(foundAfter("DROP INDEX NamesIndex4; CREATE INDEX Mine ON Names (FName)"),
                only("Names: has no index on (FName COLLATE NOCASE)"));
    EXPECT_THAT(foundAfter("DROP INDEX ImagesIndex1;"
                           "CREATE INDEX Mine ON Images (NameID, ImgType) WHERE ImgType = 1"),
                only("Images: has no index on (NameID, ImgType)"));
}

TEST(SiteCheck, FindsAYesNoThatIsNeither) {
    EXPECT_THAT(foundAfter("UPDATE Names SET Visitor = 1 WHERE ID = 4"),
                only("Names.Visitor: 1 row holds neither -1 nor 0 nor Null (first: row 4)"));
    EXPECT_THAT(foundAfter("UPDATE Names SET Trace = 'True' WHERE ID IN (6, 8)"),
                only("Names.Trace: 2 rows hold neither -1 nor 0 nor Null (first: row 6)"));
}

TEST(SiteCheck, FindsADateInAnotherForm) {
    for (const char* date : {"'3/14/2012'", "'2012-03-14'", "'2012-03-14T17:05:00'", "41000",
                             "'2012-02-30 00:00:00'", "'2012-03-14 25:00:00'", "''"}) {
        EXPECT_THAT(
            foundAfter(std::string("UPDATE Cards SET StartDate = ") + date + " WHERE ID = 3"),
            onlyFrom("Cards.StartDate: 1 row holds no date-time such as"))
            << date;
    }
}

TEST(SiteCheck, FindsANumberThatIsNone) {
    EXPECT_THAT(foundAfter("UPDATE Loc SET LocGrp = 4000000000 WHERE Loc = 42"),
                ElementsAre("Loc.LocGrp: 1 row holds no whole number of 32 bits (first: row 42)",
                            "Loc: the group of location 42 is missing from LocGrp"));
    EXPECT_THAT(foundAfter("UPDATE FormData SET Width = 'wide' WHERE Caption = 'Name'"),
                onlyFrom("FormData.Width: 1 row holds no whole number"));
}

TEST(SiteCheck, FindsBytesInPlaceOfText) {
    EXPECT_THAT(foundAfter("UPDATE Names SET LName = x'00ff' WHERE ID = 2"),
                only("Names.LName: 1 row holds no text (first: row 2)"));
}

TEST(SiteCheck, FindsTwoDefaultImageTypesOfAGroup) {
    EXPECT_THAT(foundAfter("UPDATE ImageType SET DefaultImage = -1 WHERE LocGrp = 2"),
                only("ImageType: group 2 has more than one default image type"));
}

TEST(SiteCheck, FindsAnOperatorWhoseProfileIsMissing) {
    EXPECT_THAT(foundAfter("DELETE FROM PwProfile WHERE ID = 6"),
                only("OPR: the profile of operator 6 is missing"));
    EXPECT_THAT(foundAfter("DELETE FROM OPR WHERE ID = 7"),
                only("OprCompany: has rows of operator 7, who is missing"));
    EXPECT_THAT(foundAfter("INSERT INTO MenuProfile VALUES (77, 2, 0, -1)"),
                only("MenuProfile: has rows of profile 77, which is missing"));
}

TEST(SiteCheck, FindsRowsWithoutTheRowTheyBelongTo) {
    EXPECT_THAT(foundAfter("DELETE FROM LocGrp WHERE LocGrp = 4"),
                Contains("Loc: the group of location 41 is missing from LocGrp"));
    EXPECT_THAT(foundAfter("INSERT INTO Dev VALUES (77, 1, 'Door')"),
                only("Dev: has devices of location 77, which is missing"));
    EXPECT_THAT(foundAfter("INSERT INTO Dev VALUES (1, 1, 'Door')"),
                only("Dev: location and device 1/1 have more than one row"));
    EXPECT_THAT(foundAfter("INSERT INTO Cards (ID, NameID) VALUES (7777, 8888)"),
                only("Cards: the person of card 7777 is missing"));
    EXPECT_THAT(foundAfter("INSERT INTO LocCards (ID, CardID) VALUES (7777, 8888)"),
                only("LocCards: the card of row 7777 is missing"));
}

TEST(SiteCheck, FindsAPhotoWithoutItsPerson) {
    EXPECT_THAT(foundAfter("UPDATE Images SET NameID = 7777 WHERE NameID = 1 AND ImgType = 1"),
                only("Images: has photos of person 7777, who is missing"));
}

TEST(SiteCheck, FindsPhotosThatLeadOutside) {
    EXPECT_THAT(
        foundAfter("UPDATE Images SET FileName = '..\\..\\kintar3.ini' WHERE NameID = 1"),
        only("Images.FileName: person 1: '..\\..\\kintar3.ini' leads out of the photo folder"));
    EXPECT_THAT(foundAfter("UPDATE Images SET FileName = '/etc/passwd' WHERE NameID = 1"),
                only("Images.FileName: person 1: '/etc/passwd' leads out of the photo folder"));
    EXPECT_THAT(foundAfter("UPDATE Images SET FileName = NULL WHERE NameID = 1"),
                only("Images.FileName: person 1: '' leads out of the photo folder"));
}

TEST(SiteCheck, FindsADatabaseThatIsNone) {
    const TestSite site;
    std::ofstream(site.folder / databaseFile, std::ios::trunc) << std::string(5000, 'x');
    EXPECT_THAT(checkSite(site.folder), SizeIs(1));
    EXPECT_THAT(checkSite(site.folder), Each(StartsWith("database: ")));
}

TEST(SiteCheck, FindsAnEmptyDatabase) {
    const TestSite site;
    std::ofstream(site.folder / databaseFile, std::ios::trunc).close();
    EXPECT_THAT(checkSite(site.folder), Contains("Names: the table is missing"));
}

TEST(SiteCheck, FindsADamagedDatabase) {
    const TestSite site;
    std::fstream file(site.folder / databaseFile, std::ios::in | std::ios::out | std::ios::binary);
    for (int page = 3; page < 60; ++page) {
        file.seekp(page * 4096 + 100);
        file << std::string(600, '\xAA');
    }
    file.close();
    const std::vector<std::string> found = checkSite(site.folder);
    EXPECT_THAT(found, Not(IsEmpty()));
    EXPECT_THAT(found, Each(StartsWith("database: ")));
}

TEST(SiteCheck, SurvivesEveryCutOfItsDatabase) {
    const TestSite site(20);
    const std::string whole = testing::contentOf(site.folder / databaseFile);
    for (std::size_t size = 0; size < whole.size(); size += 4096 * 7 + 13) {
        std::ofstream(site.folder / databaseFile, std::ios::binary | std::ios::trunc)
            << whole.substr(0, size);
        EXPECT_THAT(checkSite(site.folder), Not(IsEmpty())) << size;
    }
}

TEST(SiteCheck, SurvivesNamesMadeToConfuseIt) {
    EXPECT_THAT(foundAfter("CREATE TABLE \"a\"\"b'); DROP TABLE Names; --\" (x);"
                           "ALTER TABLE Skills RENAME COLUMN SkillID TO \"x'\"\"); --\""),
                Contains("Skills.SkillID: the column is missing"));
}

TEST(SiteCheck, SurvivesATableWithoutRowNumbers) {
    const std::vector<std::string> found =
        foundAfter("DROP TABLE Dev; CREATE TABLE Dev (Loc INTEGER, Device INTEGER, Name TEXT, "
                   "PRIMARY KEY (Loc, Device)) WITHOUT ROWID; CREATE INDEX d ON Dev (Loc, Device)");
    EXPECT_THAT(found, Each(StartsWith("Dev.")));
    EXPECT_THAT(found, SizeIs(3));
}

TEST(SiteCheck, FindsTextsThatAreNoUtf8) {
    EXPECT_THAT(
        foundAfter("UPDATE Names SET LName = CAST(x'4D81726368' AS TEXT) WHERE ID IN (5, 9)"),
        only("Names.LName: 2 rows hold text that is no UTF-8 (first: row 5)"));
    EXPECT_THAT(foundAfter("UPDATE Company SET Name = CAST(x'FF' AS TEXT) WHERE rowid = 3"),
                only("Company.Name: 1 row holds text that is no UTF-8 (first: row 3)"));
}

TEST(SiteCheck, FindsZonesThatTheSystemDoesNotKnow) {
    const TestSite site;
    site.execute("UPDATE Loc SET TimeZone = 'Atlantis Standard Time' WHERE Loc = 21");
    const auto knows = [](const std::string& zone) { return zone != "Atlantis Standard Time"; };
    EXPECT_THAT(
        checkSite(site.folder, knows),
        only("Loc.TimeZone: location 21: the system knows no zone 'Atlantis Standard Time'"));
}

} // namespace
} // namespace kintar::site
