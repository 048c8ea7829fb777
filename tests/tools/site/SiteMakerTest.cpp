#include "tools/site/SiteMaker.h"

#include "TestSite.h"
#include "companion/SiteSchema.h"
#include "server/TextNumbers.h"
#include "tools/site/Interruption.h"
#include "tools/site/SchemaCheck.h"
#include "tools/site/SiteError.h"
#include "tools/site/UnfinishedFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>

namespace kintar::site {
namespace {

namespace fs = std::filesystem;
using testing::contentOf;
using ::testing::HasSubstr;
using testing::ScratchFolder;
using testing::TestSite;
using testing::writeToyPhotos;

/// The files and folders below a folder, in order.
std::vector<std::string> treeOf(const fs::path& folder) {
    std::vector<std::string> entries;
    for (const fs::directory_entry& entry : fs::recursive_directory_iterator(folder)) {
        entries.push_back(fs::relative(entry.path(), folder).string());
    }
    std::ranges::sort(entries);
    return entries;
}

std::string refusal(const fs::path& folder, const PhotoMaker& photos = writeToyPhotos) {
    try {
        makeSite(folder, {.names = 5, .seed = 1, .photos = 5, .now = testing::testNow()}, photos);
    } catch (const SiteError& error) {
        return error.what();
    }
    return "made";
}

TEST(SiteMaker, MakesTheFoldersAndFilesOfASite) {
    const TestSite made;
    EXPECT_EQ(contentOf(made.folder / "kintar3.ini"),
              "[Site]\nDatabase=site.db\nData=Data\nTexts=Texts\n");
    EXPECT_TRUE(fs::is_directory(made.folder / "Errors"));
    EXPECT_TRUE(fs::is_directory(made.folder / "Reports"));
    EXPECT_TRUE(
        fs::is_regular_file(made.folder / "Data/Images/" / Persons(1, 500).person(1).photo.path));
    EXPECT_THAT(contentOf(made.folder / "Data/InRptByLoc.txt"),
                HasSubstr("0,1,11,12,13,;North Campus Printer\r\n"));
    EXPECT_THAT(contentOf(made.folder / "Data/MissingPhotos.txt"), HasSubstr("000005"));
}

TEST(SiteMaker, GivesTheSameBytesForTheSameSeedAndMoment) {
    const TestSite one;
    const TestSite two;
    const std::vector<std::string> tree = treeOf(one.folder);
    ASSERT_EQ(tree, treeOf(two.folder));
    for (const std::string& entry : tree) {
        if (fs::is_regular_file(one.folder / entry)) {
            EXPECT_EQ(contentOf(one.folder / entry), contentOf(two.folder / entry)) << entry;
        }
    }
}

TEST(SiteMaker, GivesOtherDataForAnotherSeed) {
    const TestSite one(60, 1);
    const TestSite two(60, 2);
    EXPECT_NE(contentOf(one.folder / databaseFile), contentOf(two.folder / databaseFile));
    EXPECT_NE(one.value("SELECT group_concat(LName) FROM Names"),
              two.value("SELECT group_concat(LName) FROM Names"));
}

TEST(SiteMaker, MakesEveryTableOfTheSchemaAndNothingElse) {
    const TestSite made;
    SiteDatabase database(made.folder / databaseFile, SiteDatabase::Access::Read);
    Findings findings;
    EXPECT_TRUE(checkSchema(database, findings));
    EXPECT_TRUE(findings.empty());
    EXPECT_EQ(made.value("SELECT count(*) FROM sqlite_master WHERE type = 'table' "
                         "AND name NOT LIKE 'sqlite%'"),
              std::to_string(companion::siteTables().size()));
    for (const companion::TableDefinition& table : companion::siteTables()) {
        EXPECT_GT(made.counts.at(table.name), 0) << table.name;
    }
}

TEST(SiteMaker, HoldsTheDataThatItsDocumentsPromise) {
    const TestSite made(500);
    EXPECT_EQ(made.value("SELECT count(*) FROM Names"), "500");
    EXPECT_EQ(made.value("SELECT count(*) FROM UdfName WHERE LocGrp = 2"), "30");
    EXPECT_EQ(made.value("SELECT count(*) FROM UdfName WHERE LocGrp = 3"), "0");
    EXPECT_EQ(made.value("SELECT count(*) FROM UdfName WHERE Hidden = -1 AND LocGrp = 2"), "4");
    EXPECT_EQ(made.value("SELECT count(*) FROM SKillName WHERE LocGrp = 4"), "0");
    EXPECT_EQ(made.value("SELECT count(*) FROM ImageType WHERE DefaultImage AND LocGrp = 3"), "0");
    EXPECT_EQ(made.value("SELECT Num FROM ImageType WHERE DefaultImage AND LocGrp = 2"), "2");
    EXPECT_EQ(made.value("SELECT group_concat(Caption) FROM (SELECT Caption FROM FormData WHERE "
                         "FORM = 'ListNAMESEARCH' ORDER BY \"INDEX\")"),
              "Name,Visitor,Trace,Company");
    EXPECT_EQ(made.value("SELECT Text FROM Texts WHERE Num = 514"), "Select Name List Criteria");
    EXPECT_EQ(made.value("SELECT count(DISTINCT TimeZone) > 10 FROM Loc"), "1");
    EXPECT_EQ(made.value("SELECT group_concat(Company) FROM OprCompany WHERE OprID = 7"), "1,3");
}

TEST(SiteMaker, KnowsEveryTextThatAWindowAsksFor) {
    const TestSite made(0);
    for (const std::int16_t number : textNumber::all) {
        const std::string text =
            made.value("SELECT Text FROM Texts WHERE Num = " + std::to_string(number));
        EXPECT_THAT(text, ::testing::AllOf(::testing::Ne("no row"), ::testing::Ne(""))) << number;
    }
}

TEST(SiteMaker, MakesTwentyThousandNames) {
    const TestSite made(20000);
    EXPECT_EQ(made.counts.at("Names"), 20000);
    EXPECT_GT(made.counts.at("Cards"), 20000);
    EXPECT_GT(made.counts.at("LocCards"), 30000);
    EXPECT_EQ(made.value("SELECT count(DISTINCT Code) = count(*) FROM Cards"), "1");
    EXPECT_EQ(made.value("PRAGMA integrity_check"), "ok");
}

TEST(SiteMaker, MakesASiteWithoutAnybody) {
    const TestSite made(0);
    EXPECT_EQ(made.counts.at("Names"), 0);
    EXPECT_EQ(made.counts.at("LocGrp"), 4);
}

TEST(SiteMaker, UsesAnEmptyFolder) {
    const ScratchFolder scratch;
    const fs::path folder = fs::path(scratch.path()) / "empty";
    fs::create_directory(folder);
    EXPECT_EQ(refusal(folder), "made");
    EXPECT_TRUE(fs::exists(folder / settingsFile));
}

TEST(SiteMaker, RefusesAFolderThatHoldsAnything) {
    const ScratchFolder scratch;
    std::ofstream(fs::path(scratch.path()) / "mine.txt") << "mine";
    EXPECT_THAT(refusal(scratch.path()), HasSubstr("is not empty"));
    EXPECT_EQ(treeOf(scratch.path()), std::vector<std::string>{"mine.txt"});
}

TEST(SiteMaker, RefusesAFileAndAFolderInNoFolder) {
    const ScratchFolder scratch;
    const fs::path file = fs::path(scratch.path()) / "file";
    std::ofstream(file) << "text";
    EXPECT_THAT(refusal(file), HasSubstr("exists and is no folder"));
    EXPECT_THAT(refusal(file / "below"), HasSubstr("is no folder, so no site can be made in it"));
    EXPECT_THAT(refusal(""), HasSubstr("is empty"));
    EXPECT_EQ(contentOf(file), "text");
}

TEST(SiteMaker, LeavesNothingWhereItFailsHalfWay) {
    const ScratchFolder scratch;
    const PhotoMaker failing = [](const fs::path& folder, const std::vector<Person>&) {
        std::ofstream(folder / "half.jpg") << "half";
        throw SiteError("no more space");
    };
    EXPECT_EQ(refusal(fs::path(scratch.path()) / "site", failing), "no more space");
    EXPECT_TRUE(fs::is_empty(scratch.path()));
}

TEST(SiteMaker, DoesNotReplaceWhatAppearedMeanwhile) {
    const ScratchFolder scratch;
    const fs::path folder = fs::path(scratch.path()) / "site";
    const PhotoMaker meanwhile = [&](const fs::path&, const std::vector<Person>&) {
        fs::create_directory(folder);
        std::ofstream(folder / "theirs.txt") << "theirs";
    };
    EXPECT_THAT(refusal(folder, meanwhile), HasSubstr("cannot move the finished site"));
    EXPECT_EQ(treeOf(scratch.path()), (std::vector<std::string>{"site", "site/theirs.txt"}));
}

TEST(SiteMaker, LeavesNothingWhereItIsInterrupted) {
    const ScratchFolder scratch;
    SiteOptions options{.names = 50, .seed = 1, .photos = 5, .now = testing::testNow()};
    int checkpoints = 0;
    options.checkpoint = [&checkpoints] {
        if (++checkpoints == 30) {
            throw Interrupted(2);
        }
    };
    EXPECT_THROW(makeSite(fs::path(scratch.path()) / "site", options, writeToyPhotos), Interrupted);
    EXPECT_TRUE(fs::is_empty(scratch.path()));
}

class AbandonedFolders : public ::testing::Test {
protected:
    /// What a process that was killed leaves of a site.
    [[nodiscard]] fs::path leave(const std::string& name) const {
        const fs::path folder = root / name;
        fs::create_directories(folder / "Data");
        std::ofstream(folder / "Data" / "half.jpg") << "half";
        return folder;
    }
    std::string make() const { return refusal(root / "site"); }

    ScratchFolder scratch;
    fs::path root = scratch.path();
};

TEST_F(AbandonedFolders, OfTheSameSiteAreRemoved) {
    const fs::path left = leave(".site.unfinished-Ab12Cd");
    EXPECT_EQ(make(), "made");
    EXPECT_FALSE(fs::exists(left));
}

TEST_F(AbandonedFolders, OfOtherSitesAndOtherNamesStay) {
    const std::vector<fs::path> others{leave(".site2.unfinished-Ab12Cd"),
                                       leave(".site.unfinished-mine"), leave("site.unfinished-x")};
    EXPECT_EQ(make(), "made");
    for (const fs::path& other : others) {
        EXPECT_TRUE(fs::exists(other / "Data" / "half.jpg")) << other;
    }
}

TEST_F(AbandonedFolders, ThatAreBeingFilledStay) {
    const UnfinishedFolder beingFilled(root / "site");
    std::ofstream(beingFilled.path() / "theirs.txt") << "theirs";
    EXPECT_EQ(make(), "made");
    EXPECT_TRUE(fs::exists(beingFilled.path() / "theirs.txt"));
}

TEST_F(AbandonedFolders, ThatAreLinksStayWithWhatTheyLeadTo) {
    const fs::path kept = leave("kept");
    fs::create_directory_symlink(kept, root / ".site.unfinished-Ab12Cd");
    EXPECT_EQ(make(), "made");
    EXPECT_TRUE(fs::exists(kept / "Data" / "half.jpg"));
    EXPECT_TRUE(fs::is_symlink(root / ".site.unfinished-Ab12Cd"));
}

} // namespace
} // namespace kintar::site
