#include "search/UdfPane.h"

#include "base/Twips.h"
#include "platform/qt/Controls.h"

#include <QCoreApplication>
#include <QHeaderView>
#include <QLayout>
#include <QScrollBar>
#include <algorithm>

namespace kintar::search {
namespace {

constexpr int udfFrame = 1;
constexpr int designedRows = 21;
constexpr int shownRows = 13; ///< at least: the others are reached by scrolling
enum GridColumn { numberColumn, nameColumn, valueColumn, columnCount };
constexpr int columnTwips[columnCount] = {300, 2300, 6200};

QTableWidgetItem* fixedItem(const QString& text) {
    auto* item = new QTableWidgetItem(text);
    item->setFlags(Qt::ItemIsEnabled | Qt::ItemIsSelectable);
    return item;
}

} // namespace

UdfPane::UdfPane(QWidget* parent)
    : CriteriaPane(udfFrame, parent), grdUdf_(new QTableWidget(this)),
      mskUDFEdit_(new QLineEdit(this)) {
    platform::nameControl(*grdUdf_, "grdUdf", "grid", QStringLiteral("User-defined fields"));
    platform::nameControl(*mskUDFEdit_, "mskUDFEdit", "masked edit box", QStringLiteral("Value"));
    grdUdf_->setColumnCount(columnCount);
    grdUdf_->verticalHeader()->hide();
    grdUdf_->setEditTriggers(QAbstractItemView::NoEditTriggers);
    grdUdf_->setSelectionMode(QAbstractItemView::NoSelection);
    grdUdf_->setTabKeyNavigation(false);
    // The editor is the stop of the tab key; a grid that handed its focus on would hold it for
    // ever.
    grdUdf_->setFocusPolicy(Qt::ClickFocus);
    mskUDFEdit_->setTextMargins(0, 0, 0, 0);
    mskUDFEdit_->hide();
    // Rows have room for the editor with its frame: it must be seen which cell is being edited.
    grdUdf_->verticalHeader()->setDefaultSectionSize(mskUDFEdit_->sizeHint().height());
    grdUdf_->setMinimumHeight(shownRows * mskUDFEdit_->sizeHint().height());
    rows()->addWidget(grdUdf_, 0, 0, 1, 2);
    rows()->setRowStretch(0, 1);
    connectGrid();
}

void UdfPane::connectGrid() {
    grdUdf_->installEventFilter(this);
    mskUDFEdit_->installEventFilter(this);
    connect(grdUdf_, &QTableWidget::currentCellChanged, this, &UdfPane::putEditorAway);
    connect(grdUdf_, &QTableWidget::cellClicked, this, &UdfPane::enterGrid);
    connect(grdUdf_->verticalScrollBar(), &QScrollBar::valueChanged, this, &UdfPane::putEditorAway);
    connect(grdUdf_->horizontalScrollBar(), &QScrollBar::valueChanged, this,
            &UdfPane::putEditorAway);
}

void UdfPane::fill(const std::vector<selection::UdfName>& names) {
    putEditorAway();
    const QSignalBlocker quiet(grdUdf_);
    grdUdf_->clear();
    grdUdf_->setHorizontalHeaderLabels(
        {QStringLiteral("#"), QStringLiteral("Field"), QStringLiteral("Value")});
    grdUdf_->setRowCount(std::max(designedRows, static_cast<int>(names.size())));
    for (int row = 0; row < grdUdf_->rowCount(); ++row) {
        const auto index = static_cast<std::size_t>(row);
        fillRow(row, index < names.size() ? &names[index] : nullptr);
    }
    setWidths();
    grdUdf_->setEnabled(!names.empty());
    mskUDFEdit_->setEnabled(!names.empty());
    grdUdf_->setCurrentCell(0, valueColumn);
}

void UdfPane::fillRow(int row, const selection::UdfName* field) {
    auto* number = fixedItem(field ? QString::number(field->num) : QString());
    number->setData(Qt::UserRole, field ? QVariant(field->num) : QVariant());
    grdUdf_->setItem(row, numberColumn, number);
    grdUdf_->setItem(row, nameColumn,
                     fixedItem(field ? QString::fromStdString(field->name) : QString()));
    grdUdf_->setItem(row, valueColumn, fixedItem(QString()));
}

void UdfPane::setWidths() {
    // Three digits, long names and large fonts need more than the designed widths.
    for (const int column : {numberColumn, nameColumn}) {
        const int designed = pixelsFromTwips(columnTwips[column]);
        grdUdf_->resizeColumnToContents(column);
        grdUdf_->setColumnWidth(column,
                                std::clamp(grdUdf_->columnWidth(column), designed, 2 * designed));
    }
    grdUdf_->setColumnWidth(valueColumn, pixelsFromTwips(columnTwips[valueColumn]));
    grdUdf_->horizontalHeader()->setStretchLastSection(true);
    int wanted = 2 * grdUdf_->frameWidth() + grdUdf_->verticalScrollBar()->sizeHint().width();
    for (int column = 0; column < columnCount; ++column) {
        wanted += grdUdf_->columnWidth(column);
    }
    grdUdf_->setMinimumWidth(wanted);
}

bool UdfPane::canEditCurrent() const {
    return isVisible() && grdUdf_->isEnabled() && grdUdf_->currentColumn() == valueColumn &&
           grdUdf_->currentRow() >= 0;
}

void UdfPane::enterGrid() {
    if (canEditCurrent()) {
        placeEditor();
        mskUDFEdit_->setFocus(Qt::OtherFocusReason);
        mskUDFEdit_->selectAll();
    }
}

void UdfPane::placeEditor() {
    leaveCell();
    layout()->activate();
    const QTableWidgetItem* item = grdUdf_->currentItem();
    grdUdf_->scrollToItem(item);
    const int row = item->row();
    mskUDFEdit_->setAccessibleName(grdUdf_->item(row, nameColumn)->text());
    // A row below the last field has nothing that a value could belong to.
    mskUDFEdit_->setReadOnly(!grdUdf_->item(row, numberColumn)->data(Qt::UserRole).isValid());
    mskUDFEdit_->setText(item->text());
    editedRow_ = row;
    moveEditorOverCell();
    mskUDFEdit_->show();
    mskUDFEdit_->raise();
}

void UdfPane::moveEditorOverCell() {
    const QRect over = grdUdf_->visualItemRect(grdUdf_->item(editedRow_, valueColumn));
    mskUDFEdit_->setGeometry(QRect(grdUdf_->viewport()->mapTo(this, over.topLeft()), over.size()));
}

void UdfPane::leaveCell() {
    if (editedRow_ >= 0) {
        grdUdf_->item(editedRow_, valueColumn)->setText(mskUDFEdit_->text());
        mskUDFEdit_->clear();
        editedRow_ = -1;
    }
}

void UdfPane::putEditorAway() {
    leaveCell();
    if (mskUDFEdit_->hasFocus()) {
        // The focus must not wander to another control; a key brings the editor back.
        moving_ = true;
        grdUdf_->setFocus(Qt::OtherFocusReason);
        moving_ = false;
    }
    mskUDFEdit_->hide();
}

void UdfPane::read(selection::SelectionCriteria& criteria) const {
    criteria.udf.clear();
    for (int row = 0; row < grdUdf_->rowCount(); ++row) {
        const QVariant number = grdUdf_->item(row, numberColumn)->data(Qt::UserRole);
        selection::UdfRow field;
        if (number.isValid()) {
            field.num = number.toInt();
        }
        field.name = grdUdf_->item(row, nameColumn)->text().toStdString();
        field.value = grdUdf_->item(row, valueColumn)->text().toStdString();
        criteria.udf.push_back(std::move(field));
    }
}

bool UdfPane::eventFilter(QObject* watched, QEvent* event) {
    if (watched == mskUDFEdit_ && editorEvent(*event)) {
        return true;
    }
    if (watched == grdUdf_ && !moving_ && gridEvent(*event)) {
        return true;
    }
    return CriteriaPane::eventFilter(watched, event);
}

bool UdfPane::editorEvent(const QEvent& event) {
    return event.type() == QEvent::KeyPress && moveGridBy(static_cast<const QKeyEvent&>(event));
}

bool UdfPane::gridEvent(QEvent& event) {
    if (event.type() == QEvent::FocusIn &&
        static_cast<QFocusEvent&>(event).reason() != Qt::MouseFocusReason) {
        // A click enters the grid when it has moved to its cell.
        enterGrid();
    } else if (event.type() == QEvent::KeyPress) {
        auto& key = static_cast<QKeyEvent&>(event);
        if (moveGridBy(key)) {
            return true;
        }
        if (!key.text().isEmpty() && key.text().front().isPrint() && canEditCurrent()) {
            enterGrid();
            QCoreApplication::sendEvent(mskUDFEdit_, &key);
            return true;
        }
    }
    return false;
}

bool UdfPane::moveGridBy(const QKeyEvent& key) {
    switch (key.key()) {
    case Qt::Key_PageUp:
    case Qt::Key_PageDown:
    case Qt::Key_Up: // the first field stands below the heading: there is always a row to go up to
        sendToGrid(key.key());
        return true;
    case Qt::Key_Down:
        if (grdUdf_->currentRow() < grdUdf_->rowCount() - 1) {
            sendToGrid(key.key());
        }
        return true;
    default:
        return false;
    }
}

void UdfPane::sendToGrid(int key) {
    leaveCell();
    moving_ = true;
    grdUdf_->setFocus(Qt::OtherFocusReason);
    QKeyEvent press(QEvent::KeyPress, key, Qt::NoModifier);
    QCoreApplication::sendEvent(grdUdf_, &press);
    moving_ = false;
    enterGrid();
}

void UdfPane::resizeEvent(QResizeEvent* event) {
    CriteriaPane::resizeEvent(event);
    layout()->activate();
    if (editedRow_ >= 0) {
        moveEditorOverCell();
    }
}

void UdfPane::hideEvent(QHideEvent* event) {
    leaveCell();
    CriteriaPane::hideEvent(event);
}

} // namespace kintar::search
