#include "server/PrintRequests.h"

#include <gtest/gtest.h>

namespace kintar {
namespace {

constexpr StoredPrintRequest status{PrintRequest::Status, 0};
constexpr StoredPrintRequest whoIsIn{PrintRequest::WhoIsIn, 31};
constexpr StoredPrintRequest whoIsInElsewhere{PrintRequest::WhoIsIn, 41};

TEST(PrintRequests, ReplaceAnEarlierRequestBeforeTheTick) {
    PrintRequests requests;
    EXPECT_TRUE(requests.store(status));
    EXPECT_TRUE(requests.store(whoIsIn));
    EXPECT_EQ(requests.take(), whoIsIn);
    EXPECT_FALSE(requests.ended());
    EXPECT_EQ(requests.take(), std::nullopt);
}

TEST(PrintRequests, LetARequestWaitThatArrivesWhilePrinting) {
    PrintRequests requests;
    requests.store(whoIsIn);
    requests.take();
    EXPECT_FALSE(requests.store(status));
    EXPECT_EQ(requests.take(), std::nullopt);
    EXPECT_TRUE(requests.ended());
    EXPECT_EQ(requests.take(), status);
}

TEST(PrintRequests, ClearOnlyTheOneServedAlsoWhereTheSameIsAskedAgain) {
    PrintRequests requests;
    requests.store(whoIsIn);
    requests.take();
    requests.store(whoIsIn);
    EXPECT_TRUE(requests.ended());
    EXPECT_EQ(requests.waiting(), whoIsIn);
    EXPECT_EQ(requests.served(), StoredPrintRequest{});
}

TEST(PrintRequests, ReplaceTheWaitingOneWhilePrintingToo) {
    PrintRequests requests;
    requests.store(status);
    requests.take();
    requests.store(whoIsIn);
    requests.store(whoIsInElsewhere);
    EXPECT_TRUE(requests.ended());
    EXPECT_EQ(requests.take(), whoIsInElsewhere);
}

TEST(PrintRequests, HaveNothingToDoAtATickWithoutARequest) {
    PrintRequests requests;
    EXPECT_EQ(requests.take(), std::nullopt);
    EXPECT_FALSE(requests.store({}));
}

} // namespace
} // namespace kintar
