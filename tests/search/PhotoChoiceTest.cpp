#include "search/PhotoChoice.h"

#include "search/TableTwin.h"

#include <gtest/gtest.h>

namespace kintar::search {
namespace {

using testing::null;
using testing::Row;
using testing::TwinDatabase;
using Statements = std::vector<std::string>;

std::string imageStatement(int type) {
    return "SELECT FileName FROM Images WHERE NameID = 30 AND ImgType = " + std::to_string(type);
}
const std::string typesStatement = "SELECT Num FROM ImageType WHERE LocGrp = 2";

/// A group with the image types 5, 1 and 3; name 30 has no picture of any.
class PhotoChoice : public ::testing::Test {
protected:
    PhotoChoice() {
        twin.record.answer(typesStatement, {"Num"}, {Row{5}, Row{1}, Row{3}});
        for (const int type : {1, 3, 5}) {
            twin.record.answer(imageStatement(type), {"FileName"}, {});
        }
    }

    void picture(int type, const testing::Cell& fileName) {
        twin.record.answer(imageStatement(type), {"FileName"}, {Row{fileName}});
    }
    [[nodiscard]] std::string chosen() const { return choosePhoto(twin.database, 30, 3, 2); }

    TwinDatabase twin;
};

TEST_F(PhotoChoice, PrefersTheWantedType) {
    picture(1, "badge.jpg");
    picture(3, "face.jpg");
    EXPECT_EQ(chosen(), "face.jpg");
    EXPECT_EQ(twin.record.takeStatements(), (Statements{imageStatement(3), typesStatement}));
}

TEST_F(PhotoChoice, FallsBackToTheLowestOtherTypeOfTheGroup) {
    picture(5, "signature.jpg");
    EXPECT_EQ(chosen(), "signature.jpg");
    EXPECT_EQ(twin.record.takeStatements(), (Statements{imageStatement(3), typesStatement,
                                                        imageStatement(1), imageStatement(5)}));
    picture(1, "badge.jpg");
    EXPECT_EQ(chosen(), "badge.jpg");
}

TEST_F(PhotoChoice, ANamelessPictureIsNone) {
    picture(3, null);
    picture(1, "");
    picture(5, "signature.jpg");
    EXPECT_EQ(chosen(), "signature.jpg");
}

TEST_F(PhotoChoice, ANameWithoutPicturesHasNone) {
    EXPECT_EQ(chosen(), "");
}

} // namespace
} // namespace kintar::search
