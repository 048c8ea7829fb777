#include "reports/HolderReads.h"

#include "reports/InRptStatements.h"
#include "server/IgnoringErrors.h"

#include <algorithm>
#include <optional>
#include <span>
#include <utility>

namespace kintar::reports {
namespace {

constexpr std::size_t groupsReadAside = 2;

// By position, as the statement names them: these are read for every holder.
enum UseColumn : std::uint8_t { useId, useCardId, useInOut };

/// The statements for the uses that count: of each card the latest, where it says "in".
void addDetails(Recordset uses, std::vector<std::string>& details) {
    std::optional<std::int32_t> card;
    for (; !uses.atEnd(); uses.MoveNext()) {
        const std::int32_t next = uses.field(useCardId).leadingLong();
        if (card == next) {
            continue;
        }
        card = next;
        if (uses.field(useInOut).view() == "I") {
            details.push_back(detailQuery(uses.field(useId).leadingLong()));
        }
    }
}

/// Reads the statements, as many together as is best, and hands out what each gave.
template <class Use>
void readEach(std::span<const std::string> statements, TarnRec& record, Connection& connection,
              const Use& use) {
    const std::size_t together = record.readTogether(connection);
    while (!statements.empty()) {
        const auto now = statements.first(std::min(statements.size(), together));
        for (ReadOfMany& read : record.OpenRecordsets(now, connection)) {
            use(read.take());
        }
        statements = statements.subspan(now.size());
    }
}

HolderDetails readGroup(const HolderGroup& group, TarnRec& record, Connection& connection) {
    HolderDetails read;
    read.holders = group.statements.size();
    read.cards = group.cards;
    std::vector<std::string> details;
    try {
        readEach(group.statements, record, connection,
                 [&](Recordset uses) { addDetails(std::move(uses), details); });
    } catch (...) {
        read.error = std::current_exception(); // those before it count
    }
    try {
        readEach(details, record, connection,
                 [&](Recordset detail) { read.uses.push_back(std::move(detail)); });
    } catch (...) {
        read.error = std::current_exception();
    }
    return read;
}

HolderDetails readAside(const HolderGroup& group, TarnRec& record, ReadSession& session) {
    HolderDetails read;
    try {
        session.beginRead();
        read = readGroup(group, record, session.connection());
    } catch (...) {
        read.error = std::current_exception();
    }
    session.endRead();
    return read;
}

} // namespace

HolderReads::HolderReads(TarnRec& record, Connection& data, const NewSession& newSession)
    : record_(record), data_(data) {
    // Without a connection of its own the list takes longer; it is made all the same.
    ignoringErrors([&] {
        while (newSession && sessions_.size() < groupsReadAside) {
            std::unique_ptr<ReadSession> session = newSession();
            if (!session) {
                break;
            }
            session->stopWhen(&stop_);
            sessions_.push_back(std::move(session));
        }
    });
}

HolderReads::~HolderReads() {
    stop_ = true;
    groups_.clear(); // waits for their threads
}

bool HolderReads::canBegin() const {
    return groups_.size() < std::max<std::size_t>(1, sessions_.size());
}

void HolderReads::begin(HolderGroup group) {
    if (sessions_.empty()) {
        groups_.push_back(std::async(std::launch::deferred, [this, group = std::move(group)] {
            const std::shared_ptr<void> snapshot = data_.Snapshot();
            return readGroup(group, record_, data_);
        }));
        return;
    }
    // Groups are taken in the order in which they are begun, so this session's last one is over.
    ReadSession& session = *sessions_[begun_++ % sessions_.size()];
    groups_.push_back(
        std::async(std::launch::async, [&record = record_, &session, group = std::move(group)] {
            return readAside(group, record, session);
        }));
}

bool HolderReads::waitFor(std::chrono::milliseconds limit) {
    return groups_.front().wait_for(limit) != std::future_status::timeout;
}

HolderDetails HolderReads::take() {
    std::future<HolderDetails> first = std::move(groups_.front());
    groups_.pop_front();
    return first.get();
}

} // namespace kintar::reports
