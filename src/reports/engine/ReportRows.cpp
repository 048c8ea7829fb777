#include "reports/engine/ReportRows.h"

#include "base/Number.h"
#include "base/Unicode.h"
#include "server/IgnoringErrors.h"

#include <algorithm>
#include <set>

namespace kintar::reports {
namespace {

constexpr std::size_t dayLength = 10;  // 2012-03-14
constexpr std::size_t monthLength = 7; // 2012-03
constexpr std::size_t yearLength = 4;  // 2012

std::size_t keyLength(GroupCondition condition) {
    switch (condition) {
    case GroupCondition::AnyValue:
        break;
    case GroupCondition::Day:
        return dayLength;
    case GroupCondition::Month:
        return monthLength;
    case GroupCondition::Year:
        return yearLength;
    }
    return std::string::npos;
}

} // namespace

ReportRows::ReportRows(const ReportBody& body, Recordset rows)
    : body_(body), rows_(std::move(rows)) {
    findGroups();
}

std::string ReportRows::groupKey(const Group& group, std::size_t column, std::size_t row) const {
    const FieldValue value = rows_.at(row, column);
    return unicode::fold(value.text()).substr(0, keyLength(group.condition));
}

void ReportRows::findGroups() {
    begins_.resize(body_.groups.size());
    std::vector<std::size_t> columns;
    for (const Group& group : body_.groups) {
        columns.push_back(columnOf(group.field));
    }
    std::vector<std::string> before(body_.groups.size());
    for (std::size_t row = 0; row < count(); ++row) {
        bool begins = row == 0;
        for (std::size_t level = 0; level < body_.groups.size(); ++level) {
            std::string key = groupKey(body_.groups[level], columns[level], row);
            begins = begins || key != before[level];
            if (begins) {
                begins_[level].push_back(row);
            }
            before[level] = std::move(key);
        }
    }
}

RowSpan ReportRows::spanOf(std::size_t level, std::size_t row) const {
    const std::vector<std::size_t>& begins = begins_.at(level);
    const auto after = std::ranges::upper_bound(begins, row);
    return {*std::prev(after), after == begins.end() ? count() : *after};
}

std::size_t ReportRows::firstLevelBeginningAt(std::size_t row) const {
    for (std::size_t level = 0; level < begins_.size(); ++level) {
        if (std::ranges::binary_search(begins_[level], row)) {
            return level;
        }
    }
    return begins_.size();
}

std::size_t ReportRows::columnOf(const std::string& name) const {
    for (const Lookup& lookup : body_.lookups) {
        if (sameName(lookup.name, name)) {
            return rows_.fieldIndex(lookup.of);
        }
    }
    return rows_.fieldIndex(name);
}

std::string ReportRows::sum(const std::string& field, RowSpan span) const {
    const std::size_t column = columnOf(field);
    double total = 0;
    for (std::size_t row = span.begin; row < span.end; ++row) {
        const FieldValue value = rows_.at(row, column);
        if (!value.isNull()) {
            ignoringErrors([&] { total += value.asReal(); });
        }
    }
    return decimalText(total);
}

std::size_t ReportRows::distinct(const std::string& field, RowSpan span) const {
    const std::size_t column = columnOf(field);
    std::set<std::string> values;
    for (std::size_t row = span.begin; row < span.end; ++row) {
        const FieldValue value = rows_.at(row, column);
        if (!value.isNull()) {
            values.insert(unicode::fold(value.text()));
        }
    }
    return values.size();
}

} // namespace kintar::reports
