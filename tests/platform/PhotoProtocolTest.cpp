#include "platform/photo/PhotoProtocol.h"

#include <gtest/gtest.h>

namespace kintar::platform {
namespace {

const PhotoQuestion question{7, 200, 180, "/site/Data/Images", R"(sub\photo.jpg)"};

std::string_view body(const std::string& bytes) {
    return std::string_view(bytes).substr(sizeof(std::uint32_t));
}

TEST(PhotoProtocol, TakesAQuestionThere) {
    const std::optional<PhotoQuestion> taken =
        decodeQuestion(body(encodeQuestion(question).value()));
    ASSERT_TRUE(taken);
    EXPECT_EQ(taken->number, 7U);
    EXPECT_EQ(taken->width, 200);
    EXPECT_EQ(taken->height, 180);
    EXPECT_EQ(taken->folder, question.folder);
    EXPECT_EQ(taken->fileName, question.fileName);
}

TEST(PhotoProtocol, CutsABoxToWhatAScreenCanShow) {
    PhotoQuestion large = question;
    large.width = 1000000;
    large.height = -5;
    const std::optional<PhotoQuestion> taken = decodeQuestion(body(encodeQuestion(large).value()));
    ASSERT_TRUE(taken);
    EXPECT_EQ(taken->width, 8192);
    EXPECT_EQ(taken->height, 1);
}

TEST(PhotoProtocol, DoesNotSendATextLongerThanAnyPath) {
    PhotoQuestion large = question;
    large.fileName.assign(longestQuestion, 'x');
    EXPECT_EQ(encodeQuestion(large), std::nullopt);
}

TEST(PhotoProtocol, TakesNoPartOfAQuestionAndNothingBehindIt) {
    const std::string bytes = encodeQuestion(question).value();
    for (std::size_t length = 0; length < body(bytes).size(); ++length) {
        EXPECT_EQ(decodeQuestion(body(bytes).substr(0, length)), std::nullopt) << length;
    }
    EXPECT_EQ(decodeQuestion(std::string(body(bytes)) + "x"), std::nullopt);
}

TEST(PhotoProtocol, TakesNoQuestionWithoutANumber) {
    PhotoQuestion none = question;
    none.number = 0;
    EXPECT_EQ(decodeQuestion(body(encodeQuestion(none).value())), std::nullopt);
}

TEST(PhotoProtocol, AcceptsAnswersThatFitTheQuestion) {
    EXPECT_TRUE((PhotoAnswer{PhotoAnswer::mark, 7, 200, 180}.answers(question)));
    EXPECT_TRUE((PhotoAnswer{PhotoAnswer::mark, 7, 1, 1}.answers(question)));
    EXPECT_TRUE((PhotoAnswer{PhotoAnswer::mark, 7, 0, 0}.answers(question)));
}

TEST(PhotoProtocol, RefusesAnswersThatDoNot) {
    EXPECT_FALSE((PhotoAnswer{0, 7, 10, 10}.answers(question)));
    EXPECT_FALSE((PhotoAnswer{PhotoAnswer::mark, 8, 10, 10}.answers(question)));
    EXPECT_FALSE((PhotoAnswer{PhotoAnswer::mark, 7, 201, 10}.answers(question)));
    EXPECT_FALSE((PhotoAnswer{PhotoAnswer::mark, 7, 10, 181}.answers(question)));
    EXPECT_FALSE((PhotoAnswer{PhotoAnswer::mark, 7, 0, 10}.answers(question)));
    EXPECT_FALSE((PhotoAnswer{PhotoAnswer::mark, 7, 10, 0}.answers(question)));
}

} // namespace
} // namespace kintar::platform
