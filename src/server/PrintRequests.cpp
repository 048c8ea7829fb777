#include "server/PrintRequests.h"

#include <utility>

namespace kintar {

bool PrintRequests::store(StoredPrintRequest request) {
    waiting_ = request;
    return isWaiting() && !isServing();
}

std::optional<StoredPrintRequest> PrintRequests::take() {
    if (isServing() || !isWaiting()) {
        return std::nullopt;
    }
    served_ = std::exchange(waiting_, {});
    return served_;
}

bool PrintRequests::ended() {
    served_ = {};
    return isWaiting();
}

} // namespace kintar
