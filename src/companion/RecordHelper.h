// The record helper of the reference companion.
#pragma once

#include "companion/Notices.h"
#include "server/Companion.h"

namespace kintar::companion {

/// Reads and writes databases through connections that the companion opened.
class RecordHelper final : public TarnRec {
public:
    /// `notices` hears of every failed write; it must outlive the helper.
    explicit RecordHelper(Notices& notices) : notices_(notices) {}

    Recordset OpenRecordset(std::string_view sql, Connection& connection) override;
    std::size_t readTogether(Connection& connection) override;
    std::vector<ReadOfMany> OpenRecordsets(std::span<const std::string> statements,
                                           Connection& connection) override;
    std::unique_ptr<PendingRecordset> BeginRecordset(std::string_view sql, Connection& connection,
                                                     std::function<void()> ended) override;
    void ExecuteSQL(std::string_view sql, Connection& connection) override;
    void AnnounceFailure(const std::string& reason) override { notices_.writeFailed(reason); }
    bool FindRecord(Recordset& rows, std::string_view criterion) override;
    std::string SqlText(std::string_view text) override;
    std::string SqlDate(DateTime value) override;
    /// One item a row in the rows' order; a Null text is an empty one, a Null number is 0.
    void FillListBox(ListBox& list, Recordset& rows, std::string_view textField,
                     std::string_view dataField) override;
    void PrepareForm(Connection& connection, PreparableForm& form) override;

    /// The table of texts by number, where the site has named another than `Texts`.
    void setTextsTable(std::string table) { textsTable_ = std::move(table); }
    /// A text by number; empty where there is none.
    std::string text(Connection& connection, std::int16_t number);

private:
    Notices& notices_;
    std::string textsTable_ = "Texts";
};

} // namespace kintar::companion
