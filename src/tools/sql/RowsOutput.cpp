#include "tools/sql/RowsOutput.h"

#include "base/Unicode.h"
#include "companion/Log.h"

#include <algorithm>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

namespace kintar::tools {

namespace {

std::size_t characters(const std::string& text) {
    return static_cast<std::size_t>(
        std::ranges::count_if(text, [](char c) { return !unicode::continuesCharacter(c); }));
}

bool isNumber(ColumnType type) {
    return type == ColumnType::Integer || type == ColumnType::Real;
}

void writeField(std::ostream& out, const std::string& text, std::size_t width, bool toTheRight,
                bool last) {
    const std::string fill(width - std::min(width, characters(text)), ' ');
    out << (toTheRight ? fill : "") << text << (toTheRight || last ? "" : fill)
        << (last ? "\n" : "  ");
}

std::string csvField(const std::string& text) {
    if (text.find_first_of(",\"\r\n") == std::string::npos) {
        return text;
    }
    std::string quoted = "\"";
    for (const char c : text) {
        quoted += c;
        if (c == '"') {
            quoted += c;
        }
    }
    return quoted + '"';
}

nlohmann::ordered_json jsonOf(const FieldValue& value) {
    switch (value.kind()) {
    case FieldValue::Kind::Null:
        return nullptr;
    case FieldValue::Kind::Integer:
        if (value.type() == ColumnType::YesNo) {
            return value.asBoolean();
        }
        return value.integer();
    case FieldValue::Kind::Real:
        return value.real();
    case FieldValue::Kind::Text:
        break;
    }
    return std::string(value.view());
}

} // namespace

void writeAligned(const Recordset& rows, std::ostream& out) {
    const std::size_t fields = rows.FieldCount();
    std::vector<std::size_t> widths;
    for (std::size_t field = 0; field < fields; ++field) {
        std::size_t width = characters(rows.columns()[field].name);
        for (std::size_t row = 0; row < rows.RecordCount(); ++row) {
            width = std::max(width, characters(companion::plainLine(rows.at(row, field).text())));
        }
        widths.push_back(width);
    }
    const auto line = [&](auto textOf) {
        for (std::size_t field = 0; field < fields; ++field) {
            writeField(out, textOf(field), widths[field], isNumber(rows.columns()[field].type),
                       field + 1 == fields);
        }
    };
    line([&](std::size_t field) { return companion::plainLine(rows.columns()[field].name); });
    line([&](std::size_t field) { return std::string(widths[field], '-'); });
    for (std::size_t row = 0; row < rows.RecordCount(); ++row) {
        line([&](std::size_t field) { return companion::plainLine(rows.at(row, field).text()); });
    }
    out << "(" << rows.RecordCount() << (rows.RecordCount() == 1 ? " row)\n" : " rows)\n");
}

void writeCsv(const Recordset& rows, std::ostream& out) {
    for (std::size_t field = 0; field < rows.FieldCount(); ++field) {
        out << (field == 0 ? "" : ",") << csvField(rows.columns()[field].name);
    }
    out << "\r\n";
    for (std::size_t row = 0; row < rows.RecordCount(); ++row) {
        for (std::size_t field = 0; field < rows.FieldCount(); ++field) {
            out << (field == 0 ? "" : ",") << csvField(rows.at(row, field).text());
        }
        out << "\r\n";
    }
}

void writeJson(const Recordset& rows, std::ostream& out) {
    out << "[";
    for (std::size_t row = 0; row < rows.RecordCount(); ++row) {
        nlohmann::ordered_json object = nlohmann::ordered_json::object();
        for (std::size_t field = 0; field < rows.FieldCount(); ++field) {
            object[rows.columns()[field].name] = jsonOf(rows.at(row, field));
        }
        out << (row == 0 ? "\n" : ",\n") << object.dump();
    }
    out << "\n]\n";
}

} // namespace kintar::tools
