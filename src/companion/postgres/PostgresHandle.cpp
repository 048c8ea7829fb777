#include "companion/postgres/PostgresHandle.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdlib>
#include <poll.h>
#include <string_view>
#include <utility>

namespace kintar::companion::postgres {

namespace {

using std::chrono::milliseconds;
using std::chrono::steady_clock;

/// Between two looks at whether to stop.
constexpr milliseconds slice{50};
/// What the server gets to say that it was too slow itself, before it is given up.
constexpr milliseconds grace{2000};

std::string fieldOf(const PGresult* result, int field) {
    const char* text = PQresultErrorField(result, field);
    return text != nullptr ? text : "";
}

ErrorKind kindOf(std::string_view state) {
    const std::string_view group = state.substr(0, 2);
    if (state == "42P01" || state == "42703" || state == "42883") {
        return ErrorKind::UnknownName;
    }
    if (state == "55P03" || state == "40001" || state == "40P01") {
        return ErrorKind::Locked;
    }
    if (state == "25006") {
        return ErrorKind::ReadOnly;
    }
    if (state == "57014") {
        return ErrorKind::TimedOut;
    }
    if (state == "53100") {
        return ErrorKind::DiskFull;
    }
    if (state == "XX001" || state == "XX002") {
        return ErrorKind::Damaged;
    }
    return group == "23"   ? ErrorKind::Constraint
           : group == "08" ? ErrorKind::Unreachable
           : group == "3D" ? ErrorKind::Missing
                           : ErrorKind::Other;
}

/// Texts of our own: the server's would quote values of the statement.
std::string textOf(const PGresult* result, std::string_view state) {
    switch (kindOf(state)) {
    case ErrorKind::Locked:
        return "The database is locked by another program.";
    case ErrorKind::ReadOnly:
        return "The database is read-only.";
    case ErrorKind::TimedOut:
        return "The database server stopped the statement: it took too long.";
    case ErrorKind::DiskFull:
        return "The disk of the database server is full.";
    case ErrorKind::Damaged:
        return "The database is damaged.";
    case ErrorKind::Constraint:
        return "The database refuses the values: " + fieldOf(result, PG_DIAG_CONSTRAINT_NAME) +
               fieldOf(result, PG_DIAG_COLUMN_NAME) + " of " + fieldOf(result, PG_DIAG_TABLE_NAME) +
               ".";
    default:
        break;
    }
    const bool namesOnly = state.starts_with("42") || state.starts_with("0A") ||
                           state.starts_with("53") || state.starts_with("57") ||
                           state.starts_with("58");
    return "The database says: " +
           (namesOnly ? fieldOf(result, PG_DIAG_MESSAGE_PRIMARY) : "error") + " (" +
           std::string(state) + ").";
}

std::string sessionOptions(bool readOnly, const Limits& limits) {
    std::string options = "-c DateStyle=ISO,MDY -c standard_conforming_strings=on -c jit=off "
                          "-c search_path=public -c extra_float_digits=1 -c lock_timeout=2000 "
                          "-c client_connection_check_interval=1000 "
                          "-c idle_in_transaction_session_timeout=600000 -c statement_timeout=" +
                          std::to_string(limits.statement.count());
    return options + (readOnly ? " -c default_transaction_read_only=on" : "");
}

bool wantsToWrite(const ConnectionText::Parameters& parameters) {
    return std::ranges::count(parameters, std::pair<std::string, std::string>(
                                              "target_session_attrs", "read-write")) > 0;
}

/// Whether a notice says that a change was made without the standby that it has to wait for.
bool isUnconfirmed(const PGresult* notice) {
    return fieldOf(notice, PG_DIAG_SOURCE_FUNCTION) == "SyncRepWaitForLSN";
}

/// One line, without what the server may have put around it.
std::string plainReason(std::string text) {
    std::ranges::replace_if(
        text, [](unsigned char c) { return c < 0x20; }, ' ');
    while (text.ends_with(' ')) {
        text.pop_back();
    }
    constexpr std::size_t longest = 300;
    return text.substr(0, longest);
}

} // namespace

DatabaseError errorOf(const PGresult* result) {
    const std::string state = fieldOf(result, PG_DIAG_SQLSTATE);
    return {kindOf(state), textOf(result, state)};
}

bool endsConnection(const PGresult* result) {
    const std::string severity = fieldOf(result, PG_DIAG_SEVERITY_NONLOCALIZED);
    return severity == "FATAL" || severity == "PANIC";
}

PostgresHandle::PostgresHandle(const ConnectionText& text, bool readOnly, const Limits& limits,
                               const std::atomic<bool>* stop)
    : shownName_(text.shownName()), limits_(limits), stop_(stop) {
    if (std::getenv("PGPASSWORD") != nullptr) {
        throw DatabaseError(ErrorKind::Other,
                            "A password of the database is taken from the password file of the "
                            "user alone (~/.pgpass), not from PGPASSWORD.");
    }
    std::string reason = "no answer in time";
    const auto& attempts = text.attempts();
    const Moment start = steady_clock::now();
    for (std::size_t at = 0; at < attempts.size(); ++at) {
        // A host that does not answer leaves the others their share of the time.
        const auto share =
            limits.connect * static_cast<int>(at + 1) / static_cast<int>(attempts.size());
        if (connect(attempts[at], readOnly, start + share, reason)) {
            return;
        }
    }
    connection_.reset();
    throw DatabaseError(ErrorKind::Unreachable,
                        "The database " + shownName_ + " cannot be reached: " + reason + ".");
}

bool PostgresHandle::connect(const ConnectionText::Parameters& parameters, bool readOnly,
                             Moment deadline, std::string& reason) {
    const std::string options = sessionOptions(readOnly, limits_);
    std::vector<const char*> keywords;
    std::vector<const char*> values;
    const auto add = [&](const char* keyword, const char* value) {
        keywords.push_back(keyword);
        values.push_back(value);
    };
    for (const auto& [keyword, value] : parameters) {
        add(keyword.c_str(), value.c_str());
    }
    // What comes later counts: a session of ours that only reads would itself not be taken for one
    // that can write.
    if (readOnly && wantsToWrite(parameters)) {
        add("target_session_attrs", "primary");
    }
    add("options", options.c_str());
    add("client_encoding", "UTF8");
    add("application_name", "kintar3");
    // What the kernel may try on a silent network before it gives the connection up.
    add("keepalives_idle", "5");
    add("keepalives_interval", "2");
    add("keepalives_count", "3");
    add("tcp_user_timeout", "10000");
    add(nullptr, nullptr);
    connection_.reset(PQconnectStartParams(keywords.data(), values.data(), 0));
    if (!connection_) {
        throw RunTimeError(7, "Out of memory");
    }
    PostgresPollingStatusType status = PGRES_POLLING_WRITING;
    while (PQstatus(connection_.get()) != CONNECTION_BAD && status != PGRES_POLLING_OK) {
        const short events = status == PGRES_POLLING_READING ? POLLIN : POLLOUT;
        if (!await(events, deadline)) {
            reason = "no answer in time";
            return false;
        }
        status = PQconnectPoll(connection_.get());
        if (status == PGRES_POLLING_FAILED) {
            break;
        }
    }
    if (PQstatus(connection_.get()) != CONNECTION_OK) {
        reason = plainReason(PQerrorMessage(connection_.get()));
        return false;
    }
    PQsetNoticeReceiver(
        connection_.get(),
        [](void* handle, const PGresult* notice) {
            static_cast<PostgresHandle*>(handle)->unconfirmed_ |= isUnconfirmed(notice);
        },
        this);
    return PQsetnonblocking(connection_.get(), 1) == 0;
}

bool PostgresHandle::await(short events, Moment deadline) {
    for (;;) {
        constexpr milliseconds longestPause{60'000};
        const auto left = std::min(
            std::chrono::duration_cast<milliseconds>(deadline - steady_clock::now()), longestPause);
        if (left.count() < 0) {
            return false;
        }
        if (shouldStop()) {
            return false;
        }
        pollfd waited{PQsocket(connection_.get()), events, 0};
        const auto pause = stop_ != nullptr || away_ ? std::min(left, slice) : left;
        const int ready = poll(&waited, 1, static_cast<int>(pause.count()) + 1);
        if (ready > 0) {
            return true;
        }
        if (ready < 0 && errno != EINTR) {
            return false;
        }
    }
}

bool PostgresHandle::shouldStop() const {
    return (stop_ != nullptr && stop_->load()) || (away_ && away_->load());
}

bool PostgresHandle::waitForHangUp(milliseconds limit) {
    const Moment deadline = steady_clock::now() + limit;
    while (isAlive() && !shouldStop() && await(POLLIN, deadline)) {
        // What came is looked at by the next question whether it is alive.
    }
    return isAlive();
}

bool PostgresHandle::isAlive() {
    if (!connection_) {
        return false;
    }
    pollfd waited{PQsocket(connection_.get()), POLLIN, 0};
    while (PQstatus(connection_.get()) == CONNECTION_OK && poll(&waited, 1, 0) > 0) {
        if (PQconsumeInput(connection_.get()) == 0) {
            break;
        }
        waited.revents = 0;
    }
    if (PQstatus(connection_.get()) != CONNECTION_OK) {
        connection_.reset();
    }
    return connection_ != nullptr;
}

void PostgresHandle::lose(ErrorKind kind, const std::string& why) {
    // The server notices the closed line by itself and ends what it is still doing.
    connection_.reset();
    throw DatabaseError(kind, "The database " + shownName_ + ": " + why);
}

void PostgresHandle::loseUnanswered(const std::string& why) {
    if (away_ && away_->load()) {
        lose(ErrorKind::Unreachable, "it does not answer.");
    }
    lose(ErrorKind::TimedOut, why);
}

void PostgresHandle::flush(Moment deadline) {
    for (int left = PQflush(connection_.get()); left != 0; left = PQflush(connection_.get())) {
        if (left < 0) {
            lose(ErrorKind::Unreachable, "the connection is lost.");
        }
        if (!await(POLLIN | POLLOUT, deadline)) {
            loseUnanswered("it takes nothing more.");
        }
        if (PQconsumeInput(connection_.get()) == 0) {
            lose(ErrorKind::Unreachable, "the connection is lost.");
        }
    }
}

ResultHandle PostgresHandle::nextResult(Moment deadline) {
    while (PQisBusy(connection_.get()) != 0) {
        if (!await(POLLIN, deadline)) {
            loseUnanswered("no answer in time.");
        }
        if (PQconsumeInput(connection_.get()) == 0) {
            lose(ErrorKind::Unreachable, "the connection is lost.");
        }
    }
    return ResultHandle(PQgetResult(connection_.get()));
}

PostgresHandle::Moment PostgresHandle::statementDeadline() const {
    return limits_.statement.count() == 0 ? Moment::max()
                                          : steady_clock::now() + limits_.statement + grace;
}

/// Waits for the results of what was sent; gives the last, throws the first that failed.
ResultHandle PostgresHandle::finish(int sent) {
    if (sent == 0) {
        lose(ErrorKind::Unreachable, "the connection is lost.");
    }
    const Moment deadline = statementDeadline();
    flush(deadline);
    ResultHandle last;
    ResultHandle failed;
    for (ResultHandle result = nextResult(deadline); result; result = nextResult(deadline)) {
        const ExecStatusType status = PQresultStatus(result.get());
        const bool good = status == PGRES_COMMAND_OK || status == PGRES_TUPLES_OK ||
                          status == PGRES_COPY_IN || status == PGRES_COPY_OUT;
        if (!good && !failed) {
            failed = std::move(result);
            continue;
        }
        last = std::move(result);
        if (status == PGRES_COPY_IN || status == PGRES_COPY_OUT) {
            return last;
        }
    }
    if (failed) {
        if (endsConnection(failed.get()) || PQstatus(connection_.get()) != CONNECTION_OK) {
            lose(ErrorKind::Unreachable, "the server has ended the connection.");
        }
        throw errorOf(failed.get());
    }
    if (std::exchange(unconfirmed_, false)) {
        throw DatabaseError(ErrorKind::OutcomeUnknown,
                            "The database " + shownName_ +
                                " made the change, but its standby did not confirm it: it is lost "
                                "if the standby takes over now. It is not tried again.");
    }
    return last;
}

ResultHandle PostgresHandle::run(const std::string& sql) {
    return finish(PQsendQuery(connection_.get(), sql.c_str()));
}

ResultHandle PostgresHandle::runBound(const std::string& sql, const BoundValues& values) {
    return finish(PQsendQueryParams(connection_.get(), sql.c_str(),
                                    static_cast<int>(values.values.size()), nullptr,
                                    values.values.data(), values.lengths.data(), nullptr, 0));
}

void PostgresHandle::beginCopy(const std::string& sql) {
    const ResultHandle ready = run(sql);
    if (PQresultStatus(ready.get()) != PGRES_COPY_IN) {
        throw DatabaseError(ErrorKind::Other, "The database server takes no rows.");
    }
}

void PostgresHandle::putCopy(std::string_view rows) {
    const Moment deadline = statementDeadline();
    for (;;) {
        const int taken =
            PQputCopyData(connection_.get(), rows.data(), static_cast<int>(rows.size()));
        if (taken < 0) {
            lose(ErrorKind::Unreachable, "the connection is lost.");
        }
        flush(deadline);
        if (taken > 0) {
            return;
        }
    }
}

void PostgresHandle::endCopy() {
    finish(PQputCopyEnd(connection_.get(), nullptr) > 0 ? 1 : 0);
}

void PostgresHandle::prepare(const std::string& name, const std::string& sql,
                             const std::vector<Oid>& types) {
    finish(PQsendPrepare(connection_.get(), name.c_str(), sql.c_str(),
                         static_cast<int>(types.size()), types.data()));
}

ResultHandle PostgresHandle::runPrepared(const std::string& name, const BoundValues& values) {
    return finish(PQsendQueryPrepared(connection_.get(), name.c_str(),
                                      static_cast<int>(values.values.size()), values.values.data(),
                                      values.lengths.data(), nullptr, 0));
}

} // namespace kintar::companion::postgres
