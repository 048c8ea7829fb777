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
    if (fill_.start(database(), sql)) {
        showRows(fill_.take());
    } else {
        beginFill();
    }
}

void frmNameSearch::beginFill() {
    clearList();
    filling_ = true;
    controls_.lvList->hide();
    controls_.cmdSearch->setEnabled(false);
    controls_.cmdOK->setEnabled(false);
    controls_.lvList->setColumnClicks(false);
    controls_.setStatusLine(QStringLiteral("Searching…"));
    controls_.showBusy(true);
}

void frmNameSearch::endFill() {
    fill_.stop();
    filling_ = false;
    controls_.lvList->show();
    controls_.cmdSearch->setEnabled(true);
    controls_.cmdOK->setEnabled(true);
    controls_.lvList->setColumnClicks(true);
    controls_.showBusy(false);
}

void frmNameSearch::fillEnded() {
    const bool showStatus = std::exchange(showStatusAfterFill_, false);
    try {
        Recordset rows = fill_.take();
        endFill();
        showRows(std::move(rows));
    } catch (const std::exception&) {
        endFill();
        clearDetail();
        throw;
    }
    if (showStatus) {
        ShowCardStatus();
    }
}

void frmNameSearch::stopFill(const QString& words) {
    endFill();
    controls_.setStatusLine(words);
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

void frmNameSearch::showRows(Recordset rows) {
    setWindowTitle(platform::titleText(baseCaption_));
    filling_ = true;
    std::exception_ptr failure;
    try {
        model_.fill(std::move(rows));
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
    filling_ = true;
    model_.sortBy(column);
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
