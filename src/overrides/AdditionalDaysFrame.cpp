#include "overrides/AdditionalDaysFrame.h"

#include "base/Twips.h"
#include "overrides/QtDates.h"
#include "platform/qt/Controls.h"
#include "platform/qt/FocusHighlight.h"
#include "platform/qt/PlainText.h"

#include <QGridLayout>
#include <QHeaderView>
#include <QLabel>
#include <QPushButton>
#include <QTreeWidget>

namespace kintar {
namespace {

constexpr int columnTwips = 1950;
constexpr int keyRole = Qt::UserRole;

const QString startCaption = QStringLiteral("Start Date:");
const QString stopCaption = QStringLiteral("Stop Date:");

} // namespace

AdditionalDaysFrame::AdditionalDaysFrame(const LocaleFormats& formats, QWidget* parent)
    : QFrame(parent), formats_(formats) {
    platform::nameControl(*this, "Frame_3", "frame", QStringLiteral("Additional Days"));
    auto* layout = new QGridLayout(this);
    dtMultiStart = newPicker("dtMultiStart", "Label_9", startCaption);
    dtMultiStop = newPicker("dtMultiStop", "Label_10", stopCaption);
    cmdAdd2List = new QPushButton(QStringLiteral("Add To List"), this);
    platform::nameControl(*cmdAdd2List, "cmdAdd2List", "button", cmdAdd2List->text());
    cmdDelList = new QPushButton(QStringLiteral("Remove From List"), this);
    platform::nameControl(*cmdDelList, "cmdDelList", "button", cmdDelList->text());
    for (QPushButton* button : {cmdAdd2List, cmdDelList}) {
        button->setAutoDefault(true);
    }
    makeList();
    layout->addWidget(cmdAdd2List, 2, 0, 1, 2);
    layout->addWidget(cmdDelList, 3, 0, 1, 2);
    layout->setRowStretch(4, 1);
    layout->addWidget(List1, 0, 2, 5, 1);
    layout->setColumnStretch(2, 1);
    connect(cmdAdd2List, &QPushButton::clicked, this, [this] {
        completeDate(*dtMultiStart);
        completeDate(*dtMultiStop);
        onAdd(fromQDate(dtMultiStart->date()), fromQDate(dtMultiStop->date()));
    });
    connect(cmdDelList, &QPushButton::clicked, this, &AdditionalDaysFrame::removeSelected);
}

QDateEdit* AdditionalDaysFrame::newPicker(const char* name, const char* labelName,
                                          const QString& caption) {
    auto* label = new QLabel(caption, this);
    platform::nameControl(*label, labelName, "label", caption);
    QDateEdit* picker = newDatePicker(formats_.shortDate, this);
    platform::nameControl(*picker, name, "date picker",
                          QStringLiteral("Additional ") + caption.chopped(1));
    label->setBuddy(picker);
    new platform::FocusHighlight(*label, *picker, QPalette::Button);
    auto* layout = static_cast<QGridLayout*>(this->layout());
    const int row = layout->rowCount() - 1 + (layout->count() > 0 ? 1 : 0);
    layout->addWidget(label, row, 0);
    layout->addWidget(picker, row, 1);
    return picker;
}

void AdditionalDaysFrame::makeList() {
    List1 = new QTreeWidget(this);
    platform::nameControl(*List1, "List1", "list view", QStringLiteral("Additional days"));
    List1->setRootIsDecorated(false);
    List1->setUniformRowHeights(true);
    List1->setHeaderLabels({startCaption, stopCaption});
    List1->header()->setStretchLastSection(false);
    for (const int column : {0, 1}) {
        List1->setColumnWidth(column, pixelsFromTwips(columnTwips));
    }
    List1->setMinimumWidth(2 * pixelsFromTwips(columnTwips) + 24);
}

void AdditionalDaysFrame::begin(DateTime today) {
    dtMultiStart->setDate(toQDate(today));
    dtMultiStop->setDate(toQDate(today));
    dtMultiStart->setFocus();
}

void AdditionalDaysFrame::display(const std::vector<AdditionalDay>& days) {
    cmdDelList->setEnabled(!days.empty());
    if (days.empty() && List1->topLevelItemCount() == 0) {
        return; // as while browsing
    }
    const QTreeWidgetItem* selected = List1->currentItem();
    const QString selectedKey = selected ? selected->data(0, keyRole).toString() : QString();
    List1->clear();
    for (const AdditionalDay& day : days) {
        auto* item = new QTreeWidgetItem(List1);
        item->setText(0, platform::oneLine(formats_.formatShortDate(day.start)));
        item->setText(1, platform::oneLine(formats_.formatShortDate(day.stop)));
        item->setData(0, keyRole, QString::fromStdString(day.key));
        if (item->data(0, keyRole).toString() == selectedKey) {
            List1->setCurrentItem(item);
        }
    }
}

void AdditionalDaysFrame::removeSelected() {
    const QList<QTreeWidgetItem*> selected = List1->selectedItems();
    if (!selected.isEmpty()) {
        const std::string key = selected.first()->data(0, keyRole).toString().toStdString();
        onRemove(key);
    }
}

} // namespace kintar
