// The list half of the name search window: searching, filling, sorting, choosing.
#include "base/RunTimeError.h"
#include "platform/qt/PlainText.h"
#include "search/NameQuery.h"
#include "search/frmNameSearch.h"

#include <QHeaderView>

#include <utility>

namespace kintar::search {
namespace {

QString countWords(std::size_t count) {
    switch (count) {
    case 0:
        return QStringLiteral("No names found.");
    case 1:
        return QStringLiteral("1 name found.");
    default:
        return QStringLiteral("%1 names found.").arg(count);
    }
}

} // namespace

std::string frmNameSearch::LoadNames() {
    return search::LoadNames(
        {.locGrp = locGrp_,
         .mode = mode_,
         .lastName = controls_.Text[0]->text().toStdString(),
         .firstName = controls_.Text[1]->text().toStdString()},
        {.sqlText = [this](std::string_view text) { return globals_.tarnRec().SqlText(text); },
         .companyFilter =
             [this](std::string_view column, std::int32_t locGrp, bool flag) {
                 if (!globals_.gSys) {
                     throw RunTimeError::objectNotSet();
                 }
                 return globals_.gSys->CompanyFilter(column, locGrp, flag);
             }});
}

void frmNameSearch::cmdSearch_Click() {
    PopulateListView(LoadNames());
    if (isFilling()) {
        showStatusAfterFill_ = true;
    } else {
        ShowCardStatus();
    }
}

void frmNameSearch::PopulateListView(const std::string& sql) {
    const RoutineScope scope(*this);
    ensureLoaded();
    showStatusAfterFill_ = false;
    sql_ = sql;
    if (isFilling()) {
        endFill();
    }
    if (!fill_.start(database(), sql)) {
        beginFill();
        return;
    }
    Recordset rows = fill_.take();
    if (isLongToSort(rows)) {
        beginFill();
        sortRows(std::move(rows));
    } else {
        showRows([&] { model_.fill(std::move(rows)); });
    }
}

bool frmNameSearch::isLongToSort(const Recordset& rows) const {
    return model_.list().sortColumn() && rows.RecordCount() > NameSort::longList;
}

void frmNameSearch::beginFill() {
    clearList();
    setWindowTitle(platform::titleText(baseCaption_));
    filling_ = true;
    controls_.lvList->hide();
    beginWait(QStringLiteral("Searching…"));
}

void frmNameSearch::beginWait(const QString& words) {
    controls_.cmdSearch->setEnabled(false);
    controls_.cmdOK->setEnabled(false);
    controls_.lvList->setColumnClicks(false);
    controls_.setStatusLine(words);
    controls_.showBusy(true);
}

void frmNameSearch::endFill() {
    fill_.stop();
    sort_.stop();
    isSortingShown_ = false;
    filling_ = false;
    controls_.lvList->show();
    controls_.cmdSearch->setEnabled(true);
    controls_.cmdOK->setEnabled(true);
    controls_.lvList->setColumnClicks(true);
    controls_.showBusy(false);
}

void frmNameSearch::fillEnded() {
    try {
        Recordset rows = fill_.take();
        if (isLongToSort(rows)) {
            sortRows(std::move(rows));
            return;
        }
        fillIsThere([&] { model_.fill(std::move(rows)); });
    } catch (const std::exception&) {
        showStatusAfterFill_ = false;
        endFill();
        clearDetail();
        throw;
    }
}

void frmNameSearch::sortRows(Recordset rows) {
    const auto kept = std::make_shared<const Recordset>(std::move(rows));
    sort_.start(NameList::sorting(kept, model_.list().sortColumn().value()),
                [this, kept](NameList::Order order) {
                    handle("PopulateListView",
                           [&] { fillIsThere([&] { model_.fill(kept, std::move(order)); }); });
                });
}

void frmNameSearch::fillIsThere(const std::function<void()>& fill) {
    const bool showStatus = std::exchange(showStatusAfterFill_, false);
    endFill();
    showRows(fill);
    if (showStatus) {
        ShowCardStatus();
    }
}

void frmNameSearch::stopFill(const QString& words) {
    // What was only being sorted stays as it was.
    const bool staysShown = isSortingShown_;
    endFill();
    controls_.cmdInOut->setEnabled(true);
    controls_.setStatusLine(staysShown ? countWords(model_.list().count()) : words);
    if (std::exchange(showStatusAfterFill_, false)) {
        ShowCardStatus();
    }
}

void frmNameSearch::cmdStop_Click() {
    if (isFilling()) {
        stopFill(QStringLiteral("The search was stopped. The list is empty."));
        controls_.Text[0]->setFocus();
    }
}

void frmNameSearch::showRows(const std::function<void()>& fill) {
    setWindowTitle(platform::titleText(baseCaption_));
    filling_ = true;
    std::exception_ptr failure;
    try {
        fill();
    } catch (const std::exception&) {
        failure = std::current_exception();
    }
    filling_ = false;
    controls_.cmdInOut->setEnabled(true);
    controls_.setStatusLine(countWords(model_.list().count()));
    if (failure) {
        clearDetail();
        std::rethrow_exception(failure);
    }
    if (model_.list().hasCurrent()) {
        controls_.lvList->selectRow(0);
        controls_.lvList->setFocus();
        photoTag_ = "0";
        ShowPhoto();
    } else {
        clearDetail();
    }
}

void frmNameSearch::clearList() {
    model_.clear();
    clearDetail();
}

void frmNameSearch::lvList_ColumnClick(int column) {
    if (isFilling()) {
        return;
    }
    if (model_.list().count() <= NameSort::longList) {
        showSorted(column, [&] { model_.sortBy(column); });
        return;
    }
    isSortingShown_ = true;
    beginWait(QStringLiteral("Sorting…"));
    sort_.start(NameList::sorting(model_.list().rows(), static_cast<std::size_t>(column)),
                [this, column](NameList::Order order) {
                    handle("lvList_ColumnClick", [&] {
                        endFill();
                        controls_.setStatusLine(countWords(model_.list().count()));
                        showSorted(column, [&] { model_.showSorted(column, std::move(order)); });
                    });
                });
}

void frmNameSearch::showSorted(int column, const std::function<void()>& sort) {
    filling_ = true;
    sort();
    filling_ = false;
    controls_.lvList->header()->setSortIndicator(column, Qt::AscendingOrder);
    controls_.lvList->header()->setSortIndicatorShown(true);
    if (const auto row = model_.list().currentRow()) {
        controls_.lvList->scrollTo(model_.index(static_cast<int>(*row), 0));
    }
}

void frmNameSearch::lvList_ItemClick(int row) {
    model_.setCurrent(row);
    if (!filling_) {
        photoTag_ = "0";
        ShowPhoto();
    }
    setWindowTitle(platform::titleText(model_.list().currentItem().text + "  " + baseCaption_));
}

} // namespace kintar::search
