// Dates between the editor's rules and its date pickers.
#pragma once

#include "base/DateTime.h"

#include <QDate>
#include <QDateEdit>
#include <QString>

#include <string>

namespace kintar {

inline QDate toQDate(DateTime value) {
    const std::chrono::year_month_day date = value.date();
    return {static_cast<int>(date.year()), static_cast<int>(static_cast<unsigned>(date.month())),
            static_cast<int>(static_cast<unsigned>(date.day()))};
}

inline DateTime fromQDate(const QDate& date) {
    return DateTime::fromFields(date.year(), date.month(), date.day()).value_or(DateTime());
}

/// A date picker for every date that the database can hold, in the locale's order. It tells of a
/// date when that is complete, not while it is being typed.
inline QDateEdit* newDatePicker(const std::string& shortDate, QWidget* parent) {
    auto* picker = new QDateEdit(parent);
    picker->setDateRange(QDate(100, 1, 1), QDate(9999, 12, 31));
    picker->setDisplayFormat(QString::fromStdString(shortDate));
    picker->setCalendarPopup(true);
    picker->setKeyboardTracking(false);
    return picker;
}

} // namespace kintar
