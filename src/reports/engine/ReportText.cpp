#include "reports/engine/ReportText.h"

#include "server/IgnoringErrors.h"

#include <algorithm>
#include <cstdio>

namespace kintar::reports {
namespace {

constexpr long long minutesInAnHour = 60;
constexpr long long minutesInADay = 24 * minutesInAnHour;

const Lookup* lookupNamed(const ReportBody& body, const std::string& name) {
    for (const Lookup& lookup : body.lookups) {
        if (sameName(lookup.name, name)) {
            return &lookup;
        }
    }
    return nullptr;
}

std::string translated(const Lookup& lookup, const std::string& value) {
    for (const auto& [is, text] : lookup.values) {
        if (is == value) {
            return text;
        }
    }
    return lookup.otherwise.value_or(value);
}

} // namespace

std::string ageText(DateTime then, DateTime now) {
    const long long minutes = std::max<long long>(
        0, std::chrono::floor<std::chrono::minutes>(now.moment() - then.moment()).count());
    char text[48];
    if (minutes < minutesInAnHour) {
        std::snprintf(text, sizeof text, "%lld min", minutes);
    } else if (minutes < minutesInADay) {
        std::snprintf(text, sizeof text, "%lld h %02lld min", minutes / minutesInAnHour,
                      minutes % minutesInAnHour);
    } else {
        std::snprintf(text, sizeof text, "%lld d %02lld h", minutes / minutesInADay,
                      minutes % minutesInADay / minutesInAnHour);
    }
    return text;
}

std::string ReportText::text(const Template& pieces, const TextPlace& place) const {
    std::string all;
    for (const Piece& each : pieces) {
        all += piece(each, place);
    }
    // An empty value in front leaves no blank: the text would stand a little aside.
    all.erase(0, all.find_first_not_of(' '));
    return all;
}

std::string ReportText::piece(const Piece& piece, const TextPlace& place) const {
    switch (piece.kind) {
    case PieceKind::Text:
        return piece.text;
    case PieceKind::Value:
        return value(piece, place);
    case PieceKind::Sum:
        return place.rows.sum(piece.text, place.span);
    case PieceKind::Distinct:
        return std::to_string(place.rows.distinct(piece.text, place.span));
    case PieceKind::Count:
        return std::to_string(place.span.count());
    case PieceKind::Row:
        return std::to_string(place.row + 1);
    case PieceKind::Page:
        return std::to_string(place.page);
    case PieceKind::Pages:
        return std::to_string(place.pages);
    case PieceKind::Made:
        return dateText(report_.made(), piece.format);
    case PieceKind::Title:
        return report_.definition().title;
    case PieceKind::Continued:
        return place.continued ? " (continued)" : "";
    }
    return {};
}

std::string ReportText::value(const Piece& piece, const TextPlace& place) const {
    if (place.row >= place.rows.count()) {
        return {};
    }
    const std::size_t column = place.rows.columnOf(piece.text);
    const FieldValue field = place.rows.recordset().at(place.row, column);
    const Lookup* lookup = lookupNamed(place.rows.body(), piece.text);
    if (lookup != nullptr) {
        return translated(*lookup, field.text());
    }
    std::string text = field.text();
    const bool isDate = place.rows.recordset().columns().at(column).type == ColumnType::DateTime;
    if (!field.isNull() && (isDate || piece.format != ValueFormat::Natural)) {
        // What is no date shows as it is.
        ignoringErrors([&] { text = dateText(field.asDateTime(), piece.format); });
    }
    return text;
}

std::string ReportText::dateText(DateTime value, ValueFormat format) const {
    switch (format) {
    case ValueFormat::Natural:
        break;
    case ValueFormat::Date:
        return report_.formats().formatShortDate(value);
    case ValueFormat::Time:
        return report_.formats().formatLongTime(value);
    case ValueFormat::Age:
        return ageText(value, report_.made());
    }
    return report_.formats().formatGeneralDate(value);
}

} // namespace kintar::reports
