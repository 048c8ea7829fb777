// Dates between the editor's rules and its date pickers.
#pragma once

#include "base/DateTime.h"

#include <QDate>
#include <QDateEdit>
#include <QLocale>
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

/// Takes a date that is still being typed for complete. One that is complete is left alone: the
/// picker would draw itself anew.
inline void completeDate(QDateEdit& picker) {
    if (picker.text() != picker.locale().toString(picker.date(), picker.displayFormat())) {
        picker.interpretText();
    }
}

} // namespace kintar
