// What the server needs of its companion library: the record helper and the system object.
#pragma once

#include "base/DateTime.h"
#include "server/ReadOfMany.h"
#include "server/Recordset.h"

#include <atomic>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace kintar {

/// A database connection that the companion opened. Opaque to the server.
class Connection {
public:
    virtual ~Connection() = default;
    [[nodiscard]] virtual bool isOpen() const = 0;
    /// No error if it is closed already.
    virtual void Close() = 0;
    /// While the result lives, what is read is one state of the database, and many small statements
    /// are fast. Held only while no other routine can run; may be empty.
    virtual std::shared_ptr<void> Snapshot() { return nullptr; }
};

/// A connection of its own for long reads. Between `beginRead` and `endRead` every statement on it
/// sees one state of the data; otherwise each sees that of its own moment. It may be used on any
/// thread, by one at a time, also while other connections are in use.
class ReadSession {
public:
    ReadSession() = default;
    ReadSession(const ReadSession&) = delete;
    ReadSession& operator=(const ReadSession&) = delete;
    virtual ~ReadSession() = default;
    virtual Connection& connection() = 0;
    /// Throws RunTimeError where the database cannot be read; nothing is begun then.
    virtual void beginRead() = 0;
    /// No error, also where nothing was begun.
    virtual void endRead() noexcept = 0;
    /// Statements fail soon after `stop` has become true, where that can be had. It must outlive
    /// the last of them.
    virtual void stopWhen(const std::atomic<bool>* stop) { static_cast<void>(stop); }
};

/// What stands in for a connection that is read while unset: exists, and is not open.
class ClosedConnection final : public Connection {
public:
    [[nodiscard]] bool isOpen() const override { return false; }
    void Close() override {}
};

/// A list box to be filled: item text and the number that belongs to it.
class ListBox {
public:
    virtual ~ListBox() = default;
    virtual void clear() = 0;
    virtual void addItem(const std::string& text, std::int32_t data) = 0;
};

/// A caption of a form by the number of its text; `set` replaces the design caption.
struct FormCaption {
    std::int16_t number;
    std::function<void(const std::string&)> set;
};

/// What a form shows of itself to be prepared when it loads.
class PreparableForm {
public:
    virtual ~PreparableForm() = default;
    [[nodiscard]] virtual std::string formName() const = 0;
    virtual std::vector<FormCaption> captions() = 0;
};

/// A SELECT that is being read while the server goes on.
class PendingRecordset {
public:
    PendingRecordset() = default;
    PendingRecordset(const PendingRecordset&) = delete;
    PendingRecordset& operator=(const PendingRecordset&) = delete;
    /// Stops the read where it still runs.
    virtual ~PendingRecordset() = default;
    /// Waits at most so long; whether the read has ended, well or not.
    virtual bool waitFor(std::chrono::milliseconds limit) = 0;
    /// Asks the read to end as soon as it can, without waiting for that.
    virtual void stop() {}
    /// The rows, once; throws what the read threw. Only when the read has ended.
    virtual Recordset take() = 0;
};

/// A SELECT that was read at once: what a companion offers that cannot read aside.
class ReadRecordset final : public PendingRecordset {
public:
    explicit ReadRecordset(Recordset rows) : rows_(std::move(rows)) {}
    bool waitFor(std::chrono::milliseconds /*limit*/) override { return true; }
    Recordset take() override { return std::move(rows_); }

private:
    Recordset rows_;
};

/// The record helper. Every operation that meets a database throws RunTimeError with a text that
/// says what was wrong: where a statement cannot be parsed, which table or column is unknown, that
/// the database is closed, locked, read-only, missing or damaged.
class TarnRec {
public:
    virtual ~TarnRec() = default;
    virtual Recordset OpenRecordset(std::string_view sql, Connection& connection) = 0;
    /// How many SELECTs of one shape are best read by one call of OpenRecordsets.
    virtual std::size_t readTogether(Connection& /*connection*/) { return 1; }
    /// Several SELECTs: what each gave, in order, as one call of OpenRecordset after the other
    /// would have given it. An error is that of its own statement, and the last: what stands behind
    /// it is not read.
    virtual std::vector<ReadOfMany> OpenRecordsets(std::span<const std::string> statements,
                                                   Connection& connection) {
        return readOneByOne(statements,
                            [&](const std::string& sql) { return OpenRecordset(sql, connection); });
    }
    /// Starts a SELECT that may take long, on a connection of its own to the same data. Throws, or
    /// lets `take` throw, what OpenRecordset would. `ended` is called once the read has ended, on
    /// whatever thread, and not any more once the pending recordset has been destroyed.
    virtual std::unique_ptr<PendingRecordset>
    BeginRecordset(std::string_view sql, Connection& connection, std::function<void()> ended) {
        const std::function<void()> tell = std::move(ended);
        Recordset rows = OpenRecordset(sql, connection);
        tell();
        return std::make_unique<ReadRecordset>(std::move(rows));
    }
    /// Tells the operator, too, of a statement that failed.
    virtual void ExecuteSQL(std::string_view sql, Connection& connection) = 0;
    /// Tells the operator of a change that failed before there was a statement of it.
    virtual void AnnounceFailure(const std::string& /*reason*/) {}
    /// Stands on the first row that meets a criterion such as `Loc = 3 And Device = 7`, searched
    /// from the first row; at the end, and false, where there is none.
    virtual bool FindRecord(Recordset& rows, std::string_view criterion) = 0;
    /// A complete text literal, quotes included: 'O''Brien'.
    virtual std::string SqlText(std::string_view text) = 0;
    /// A complete date-time literal: #03/14/2012 17:05:00#.
    virtual std::string SqlDate(DateTime value) = 0;
    virtual void FillListBox(ListBox& list, Recordset& rows, std::string_view textField,
                             std::string_view dataField) = 0;
    /// Gives each caption of the form its text by number; one that has none keeps its design text.
    virtual void PrepareForm(Connection& connection, PreparableForm& form) = 0;
};

/// The system object: the site, the operator, texts, rights, error reports.
class TarnSys {
public:
    virtual ~TarnSys() = default;
    virtual void SetVersion(const std::string& version) = 0;
    /// The base folder of the shared data, without a closing separator.
    virtual std::string DataPath() = 0;
    virtual std::shared_ptr<Connection> DataConnection() = 0;
    virtual std::shared_ptr<Connection> SetupConnection() = 0;
    /// A new connection for reading beside the two above. Throws RunTimeError where none can be
    /// opened; null where the companion has no such connections.
    virtual std::unique_ptr<ReadSession> newReadSession() { return nullptr; }
    virtual void SetOperator(std::int32_t oprId) = 0;
    /// Opens the site in `sysPath`. Throws RunTimeError where that is none.
    virtual bool Create(std::string& sysPath, bool& flag) = 0;
    /// A text by number; empty where there is none.
    virtual std::string GetText(std::int16_t id) = 0;
    /// Reports a caught run-time error: its number, its text with CR LF and `object/routine` behind
    /// it, and its kind. Never throws.
    virtual void ReportError(int number, const std::string& text, std::int16_t kind) = 0;
    /// The clause, with its own " AND ", that limits `column` to what the operator may see; empty
    /// where nothing is restricted.
    virtual std::string CompanyFilter(std::string_view column, std::int32_t locGrp, bool flag) = 0;
    /// Whether the operator holds a right such as `L3M2`.
    virtual bool HasRight(std::string_view name) = 0;
};

/// The companion library as installed: where its objects come from. Both members throw where it
/// cannot be reached.
class Companion {
public:
    virtual ~Companion() = default;
    /// The application-wide record helper, created on first use.
    virtual TarnRec& record() = 0;
    virtual std::shared_ptr<TarnSys> newSystem() = 0;
};

} // namespace kintar
