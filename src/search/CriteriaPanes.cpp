#include "search/CriteriaPanes.h"

#include "platform/qt/Controls.h"

#include <QStyledItemDelegate>

#include <algorithm>

namespace kintar::search {
namespace {

constexpr int namesFrame = 0;
constexpr int cardsFrame = 2;
constexpr int skillsFrame = 3;

std::string plain(const QLineEdit* text) {
    return text->text().toStdString();
}

DateTime dateOf(const QDateEdit* picker) {
    const QDate date = picker->date();
    return DateTime::fromFields(date.year(), date.month(), date.day()).value_or(DateTime());
}

/// Rows high enough for the letters of every script: all rows are as high as the first one.
class RoomyRows final : public QStyledItemDelegate {
public:
    using QStyledItemDelegate::QStyledItemDelegate;
    [[nodiscard]] QSize sizeHint(const QStyleOptionViewItem& option,
                                 const QModelIndex& index) const override {
        const QSize size = QStyledItemDelegate::sizeHint(option, index);
        return {size.width(), std::max(size.height(), option.fontMetrics.height() * 5 / 4 + 2)};
    }
};

} // namespace

void CompanyList::addItem(const std::string& text, std::int32_t number) {
    auto* item = new QListWidgetItem(QString::fromStdString(text), this);
    item->setData(Qt::UserRole, number);
}

std::vector<selection::CompanyItem> CompanyList::items() const {
    std::vector<selection::CompanyItem> all;
    all.reserve(static_cast<std::size_t>(count()));
    for (int row = 0; row < count(); ++row) {
        all.push_back({item(row)->data(Qt::UserRole).toInt(), item(row)->isSelected()});
    }
    return all;
}

NamesPane::NamesPane(QWidget* parent)
    : CriteriaPane(namesFrame, parent),
      lastName_(addText(3, 3, QStringLiteral("Include Where Last Name Like:"))),
      firstName_(addText(2, 2, QStringLiteral("Include Where First Name Like:"))),
      lstComp_(new CompanyList(this)) {
    lstComp_->setSelectionMode(QAbstractItemView::MultiSelection);
    lstComp_->setUniformItemSizes(true);
    lstComp_->setItemDelegate(new RoomyRows(lstComp_));
    addControl(lstComp_, "lstComp", "list box", 4, QStringLiteral("Include Where Company is:"),
               true);
    trace_ = addOptions(
        {{{"optTraceTrue", "True"}, {"optTraceFalse", "False"}, {"optTraceEither", "Either"}}}, 5,
        QStringLiteral("Include Where Trace is:"));
    visitor_ =
        addOptions({{{"optVisTrue", "True"}, {"optVisFalse", "False"}, {"optVisEither", "Either"}}},
                   7, QStringLiteral("Include Where Visitor is:"));
}

void NamesPane::read(selection::SelectionCriteria& criteria) const {
    criteria.lastName = plain(lastName_);
    criteria.firstName = plain(firstName_);
    criteria.companies = lstComp_->items();
    criteria.trace = choiceOf(trace_);
    criteria.visitor = choiceOf(visitor_);
}

CardsPane::CardsPane(const LocaleFormats& formats, QWidget* parent)
    : CriteriaPane(cardsFrame, parent),
      cardCode_(addText(0, 0, QStringLiteral("Include Where Card #:"))),
      cardNum_(addText(1, 1, QStringLiteral("Include Where Imprinted Card # Like:"))),
      status_(addOptions(
          {{{"optActive", "Active"}, {"optInActive", "Inactive"}, {"optStEither", "Either"}}}, 8,
          QStringLiteral("Include Where Status is:"))),
      start_(addDates("dtStartLow", "dtStartHigh", 9,
                      QStringLiteral("Include Where Start Date Is Between:"))),
      // Spelled so: it is how operators know it.
      stop_(addDates("dtStopLow", "dtStopHigh", 10,
                     QStringLiteral("Include Where Stop Date Is Beteen:"))),
      guardTour_(
          addOptions({{{"optGtTrue", "True"}, {"optGtFalse", "False"}, {"optGtEither", "Either"}}},
                     11, QStringLiteral("Include Where Guard Tour is:"))),
      notUsedDays_(addText(6, 6, QStringLiteral("Include Where Card Not Used In X Days:"))) {
    for (QDateEdit* picker : {start_[0], start_[1], stop_[0], stop_[1]}) {
        picker->setDisplayFormat(QString::fromStdString(formats.shortDate));
        picker->setDateRange(QDate(100, 1, 1), QDate(9999, 12, 31));
    }
    addStretch();
}

void CardsPane::setDates(DateTime date) {
    const std::chrono::year_month_day day = date.date();
    const QDate shown(static_cast<int>(day.year()),
                      static_cast<int>(static_cast<unsigned>(day.month())),
                      static_cast<int>(static_cast<unsigned>(day.day())));
    for (QDateEdit* picker : {start_[0], start_[1], stop_[0], stop_[1]}) {
        picker->setDate(shown);
    }
}

void CardsPane::read(selection::SelectionCriteria& criteria) const {
    criteria.cardCode = plain(cardCode_);
    criteria.cardNum = plain(cardNum_);
    const selection::Choice status = choiceOf(status_);
    criteria.status = status == selection::Choice::True    ? selection::CardStatus::Active
                      : status == selection::Choice::False ? selection::CardStatus::Inactive
                                                           : selection::CardStatus::Either;
    criteria.startLow = dateOf(start_[0]);
    criteria.startHigh = dateOf(start_[1]);
    criteria.stopLow = dateOf(stop_[0]);
    criteria.stopHigh = dateOf(stop_[1]);
    criteria.guardTour = choiceOf(guardTour_);
    criteria.notUsedDays = plain(notUsedDays_);
}

SkillsPane::SkillsPane(QWidget* parent)
    : CriteriaPane(skillsFrame, parent), lvList_(new QTreeWidget(this)) {
    platform::nameControl(*lvList_, "lvList", "list view", QStringLiteral("Skills"));
    lvList_->setRootIsDecorated(false);
    lvList_->setUniformRowHeights(true);
    lvList_->setItemDelegate(new RoomyRows(lvList_));
    lvList_->setSelectionMode(QAbstractItemView::ExtendedSelection);
    rows()->addWidget(lvList_, 0, 0, 1, 2);
    rows()->setRowStretch(0, 1);
}

void SkillsPane::fill(const std::vector<selection::Skill>& skills) {
    lvList_->clear();
    lvList_->setColumnCount(1);
    lvList_->setHeaderLabels({QStringLiteral("Skill")});
    QList<QTreeWidgetItem*> items;
    items.reserve(static_cast<qsizetype>(skills.size()));
    for (const selection::Skill& skill : skills) {
        auto* item = new QTreeWidgetItem({QString::fromStdString(skill.name)});
        item->setData(0, Qt::UserRole, QString::fromStdString(skill.key));
        items.push_back(item);
    }
    lvList_->addTopLevelItems(items);
    lvList_->clearSelection();
}

void SkillsPane::read(selection::SelectionCriteria& criteria) const {
    criteria.skills.clear();
    for (int row = 0; row < lvList_->topLevelItemCount(); ++row) {
        const QTreeWidgetItem* item = lvList_->topLevelItem(row);
        criteria.skills.push_back(
            {item->data(0, Qt::UserRole).toString().toStdString(), item->isSelected()});
    }
}

} // namespace kintar::search
