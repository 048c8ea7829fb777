// The tabs "Search Names", "Search Cards" and "Search Skills" of the criteria dialog.
#pragma once

#include "base/LocaleFormats.h"
#include "search/CriteriaPane.h"
#include "search/SelectionCompanion.h"
#include "server/Companion.h"

#include <QListWidget>
#include <QTreeWidget>
#include <vector>

namespace kintar::search {

/// The company list, as the record helper fills it.
class CompanyList : public QListWidget, public ListBox {
public:
    using QListWidget::QListWidget;
    void clear() override { QListWidget::clear(); }
    void addItem(const std::string& text, std::int32_t number) override;
    [[nodiscard]] std::vector<selection::CompanyItem> items() const;
};

class NamesPane : public CriteriaPane {
public:
    explicit NamesPane(QWidget* parent);
    CompanyList& companies() { return *lstComp_; }
    void read(selection::SelectionCriteria& criteria) const;
    void focusFirst() { lastName_->setFocus(); }

private:
    QLineEdit* lastName_;
    QLineEdit* firstName_;
    CompanyList* lstComp_;
    OptionButtons trace_;
    OptionButtons visitor_;
};

class CardsPane : public CriteriaPane {
public:
    CardsPane(const LocaleFormats& formats, QWidget* parent);
    /// Sets all four pickers to a date.
    void setDates(DateTime date);
    void read(selection::SelectionCriteria& criteria) const;
    void focusFirst() { cardCode_->setFocus(); }

private:
    QLineEdit* cardCode_;
    QLineEdit* cardNum_;
    OptionButtons status_;
    std::array<QDateEdit*, 2> start_;
    std::array<QDateEdit*, 2> stop_;
    OptionButtons guardTour_;
    QLineEdit* notUsedDays_;
};

class SkillsPane : public CriteriaPane {
public:
    explicit SkillsPane(QWidget* parent);
    /// Replaces the list; no item is selected.
    void fill(const std::vector<selection::Skill>& skills);
    void read(selection::SelectionCriteria& criteria) const;
    void focusFirst() { lvList_->setFocus(); }

private:
    QTreeWidget* lvList_;
};

} // namespace kintar::search
