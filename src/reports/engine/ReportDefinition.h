// A report as its file describes it: data, groups, sections, and how they look.
#pragma once

#include "reports/engine/Template.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace kintar::reports {

enum class Align : std::uint8_t { Start, Center, End };

struct Style {
    std::string name;
    double size = 9; ///< points
    bool bold = false;
    bool italic = false;
    std::uint32_t colour = 0; ///< 0xRRGGBB
};

/// A place in a line: text, or an empty box to be ticked by hand.
struct Cell {
    double left = 0;    ///< percent of the printable width
    double width = 100; ///< percent of the printable width
    Align align = Align::Start;
    std::size_t style = 0; ///< index into the report's styles
    bool wrap = true;      ///< false: what does not fit is cut, with an ellipsis
    bool box = false;
    Template text;
};

/// Cells side by side; as high as the highest of them.
struct Line {
    std::vector<Cell> cells;
    std::uint32_t background = 0xFFFFFF;
};

/// A horizontal rule over the whole width.
struct Rule {
    double thickness = 0.5; ///< points
};

struct Space {
    double height = 0; ///< points
};

using Element = std::variant<Line, Rule, Space>;

struct Section {
    std::string name; ///< found by it; letter case is ignored
    std::vector<Element> elements;
    bool suppressed = false;
    bool newPage = false; ///< starts on a new page, unless it is the first on it
    bool repeat = false;  ///< of a group header: again on each page that the group goes on to
    std::string subReport;

    [[nodiscard]] bool isEmpty() const { return elements.empty() && subReport.empty(); }
};

/// A named value of each row: an expression of the statement language.
struct Field {
    std::string name;
    std::string expression;
    bool formula = false; ///< may be set by name
};

/// Another name for some values of a field.
struct Lookup {
    std::string name;
    std::string of;
    std::vector<std::pair<std::string, std::string>> values;
    /// Of all other values; they show as they are where there is none.
    std::optional<std::string> otherwise;
};

/// How the values of a group's field fall into groups.
enum class GroupCondition : std::uint8_t { AnyValue = 0, Day = 1, Month = 2, Year = 3 };

struct Group {
    std::string field;
    std::vector<std::string> sortBy; ///< fields that come before `field` in the order
    bool descending = false;
    GroupCondition condition = GroupCondition::AnyValue;
    Section header;
    Section footer;
};

struct SortField {
    std::string field;
    bool descending = false;
};

/// A field of a sub-report's data that has to equal a field of the row above it.
struct Link {
    std::string field;
    std::string expression;
};

/// Data and sections; of the report itself, or of a sub-report, which has no page sections.
struct ReportBody {
    std::string name;
    std::string source; ///< a database file beside the report file; empty: the site's database
    std::string from;
    std::string selection;
    std::vector<Field> fields;
    std::vector<Lookup> lookups;
    std::vector<Link> links;
    std::vector<Group> groups;
    std::vector<SortField> sortFields;
    Section reportHeader;
    Section pageHeader;
    Section detail;
    Section pageFooter;
    Section reportFooter;
    /// What stands in place of the details where there is no row.
    Section empty;
};

/// Names in a report are the same without regard to case.
bool sameName(std::string_view a, std::string_view b);

/// The first field of that name; null where there is none.
const Field* findField(const ReportBody& body, std::string_view name);

struct ReportDefinition {
    std::string title;
    double margin = 42; ///< points, on all sides
    std::vector<Style> styles;
    ReportBody main;
    std::vector<ReportBody> subReports;
};

} // namespace kintar::reports
