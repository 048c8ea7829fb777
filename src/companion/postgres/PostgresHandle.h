// A connection to a database server whose every wait has a limit.
#pragma once

#include "companion/DatabaseError.h"
#include "companion/postgres/ConnectionText.h"

#include <atomic>
#include <chrono>
#include <cstdint>
#include <libpq-fe.h>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace kintar::companion::postgres {

struct ClearResult {
    void operator()(PGresult* result) const { PQclear(result); }
};
using ResultHandle = std::unique_ptr<PGresult, ClearResult>;

/// How long things may take.
struct Limits {
    std::chrono::milliseconds connect{4000};
    /// One statement; 0: as long as it takes.
    std::chrono::milliseconds statement{20000};
};

/// Texts of the parameters of a statement; a null pointer is Null.
struct BoundValues {
    std::vector<const char*> values;
    std::vector<int> lengths;
    std::vector<std::string> kept;
};

/// A live connection. Never blocks longer than its limits, whatever the network does; a connection
/// on which that happened, or whose server is gone, is lost and stays so.
class PostgresHandle {
public:
    /// Tries the hosts of the text in turn. Throws DatabaseError: Unreachable where none answers in
    /// time, otherwise what the last one that answered said.
    PostgresHandle(const ConnectionText& text, bool readOnly, const Limits& limits,
                   const std::atomic<bool>* stop = nullptr);
    PostgresHandle(const PostgresHandle&) = delete;
    PostgresHandle& operator=(const PostgresHandle&) = delete;

    /// Whether statements can still be sent. Also looks whether the server has hung up meanwhile.
    [[nodiscard]] bool isAlive();
    /// Statements end as lost soon after `stop` has become true; null: no more.
    void stopWhen(const std::atomic<bool>* stop) { stop_ = stop; }
    /// The same for every connection to a server that is known to be away.
    void loseWhen(std::shared_ptr<const std::atomic<bool>> away) { away_ = std::move(away); }

    /// Whether an error has made the transaction take no statements any more.
    [[nodiscard]] bool isTransactionBroken() const {
        return PQtransactionStatus(connection_.get()) == PQTRANS_INERROR;
    }

    /// Waits so long, or until the server hangs up; whether the connection is still alive.
    bool waitForHangUp(std::chrono::milliseconds limit);

    /// Runs statements of the engine's own language, without parameters. The last one's result.
    ResultHandle run(const std::string& sql);
    void prepare(const std::string& name, const std::string& sql, const std::vector<Oid>& types);
    ResultHandle runPrepared(const std::string& name, const BoundValues& values);
    /// The same, prepared for this once.
    ResultHandle runBound(const std::string& sql, const BoundValues& values);

    /// Rows in the server's own text form, into a `COPY … FROM STDIN`: all of them or none.
    void beginCopy(const std::string& sql);
    void putCopy(std::string_view rows);
    void endCopy();

    /// For copying data in and out, and for measuring beside it.
    [[nodiscard]] PGconn* raw() const { return connection_.get(); }

private:
    using Moment = std::chrono::steady_clock::time_point;
    struct Finish {
        void operator()(PGconn* connection) const { PQfinish(connection); }
    };

    bool connect(const ConnectionText::Parameters& parameters, bool readOnly, Moment deadline,
                 std::string& reason);
    ResultHandle finish(int sent);
    [[nodiscard]] Moment statementDeadline() const;
    ResultHandle nextResult(Moment deadline);
    /// False where the time is over.
    bool await(short events, Moment deadline);
    void flush(Moment deadline);
    [[noreturn]] void lose(ErrorKind kind, const std::string& why);
    /// After a wait that ended without an answer.
    [[noreturn]] void loseUnanswered(const std::string& why);

    std::unique_ptr<PGconn, Finish> connection_;
    std::string shownName_;
    Limits limits_;
    [[nodiscard]] bool shouldStop() const;

    bool unconfirmed_ = false; ///< since the last statement ended
    const std::atomic<bool>* stop_ = nullptr;
    std::shared_ptr<const std::atomic<bool>> away_;
};

/// The error that a result of the server means. Never holds a value of a statement.
DatabaseError errorOf(const PGresult* result);
/// Whether a failed result tells that the server is ending the connection.
bool endsConnection(const PGresult* result);

} // namespace kintar::companion::postgres
