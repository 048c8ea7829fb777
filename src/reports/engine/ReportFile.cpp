#include "reports/engine/ReportFile.h"

#include "base/Number.h"
#include "base/Unicode.h"
#include "reports/engine/ReportError.h"
#include "reports/engine/XmlDocument.h"

#include <algorithm>
#include <charconv>

namespace kintar::reports {
namespace {

bool isSpace(char c) {
    return c == ' ' || c == '\t' || c == '\n' || c == '\r';
}

/// Text as it is meant: lines of the file are no lines of the text.
std::string oneBlankBetweenWords(std::string_view text) {
    std::string result;
    for (const char c : text) {
        if (!isSpace(c)) {
            result += c;
        } else if (!result.empty() && result.back() != ' ') {
            result += ' ';
        }
    }
    if (!result.empty() && result.back() == ' ') {
        result.pop_back();
    }
    return result;
}

/// One file being read: what is known of it so far, for the names that refer to each other.
class Reader {
public:
    explicit Reader(std::string file) : file_(std::move(file)) {}

    ReportDefinition read(const XmlElement& root) {
        report_.title = root.attribute("title").value_or("");
        report_.margin = number(root, "margin", report_.margin);
        report_.styles.push_back({"", 9, false, false, 0});
        for (const XmlElement& element : root.children) {
            if (element.name == "style") {
                report_.styles.push_back(style(element));
            }
        }
        body(root, report_.main);
        for (const XmlElement& element : root.children) {
            if (element.name == "subReport") {
                ReportBody sub;
                sub.name = element.attribute("name").value_or("");
                body(element, sub);
                report_.subReports.push_back(std::move(sub));
            }
        }
        checkSubReports(root);
        return std::move(report_);
    }

private:
    [[noreturn]] void fail(const XmlElement& element, const std::string& text) const {
        throw ReportError::atLine(file_, element.line, text);
    }

    static double number(const XmlElement& element, std::string_view name, double otherwise) {
        const auto text = element.attribute(name);
        return text ? leadingNumber(*text) : otherwise;
    }
    static bool flag(const XmlElement& element, std::string_view name, bool otherwise) {
        const auto text = element.attribute(name);
        return text ? *text == "true" || *text == "1" : otherwise;
    }
    static std::uint32_t colour(const XmlElement& element, std::string_view name,
                                std::uint32_t otherwise) {
        const auto text = element.attribute(name);
        std::uint32_t value = otherwise;
        if (text) {
            constexpr int hexadecimal = 16;
            std::from_chars(text->data() + 1, text->data() + text->size(), value, hexadecimal);
        }
        return value;
    }
    static bool descending(const XmlElement& element) {
        return element.attribute("order") == "descending";
    }

    Style style(const XmlElement& element) const {
        Style made;
        made.name = element.attribute("name").value_or("");
        made.size = number(element, "size", made.size);
        made.bold = flag(element, "bold", false);
        made.italic = flag(element, "italic", false);
        made.colour = colour(element, "colour", 0);
        return made;
    }

    std::size_t styleNamed(const XmlElement& element) const {
        const std::string name = element.attribute("style").value_or("");
        const auto found = std::ranges::find_if(
            report_.styles, [&name](const Style& known) { return known.name == name; });
        if (found == report_.styles.end()) {
            fail(element, "there is no style '" + name + "'");
        }
        return static_cast<std::size_t>(found - report_.styles.begin());
    }

    void body(const XmlElement& element, ReportBody& made) {
        data(*element.child("data"), made);
        for (const XmlElement& child : element.children) {
            if (child.name == "group") {
                made.groups.push_back(group(child, made));
            }
        }
        section(element, "reportHeader", "ReportHeader", made, made.reportHeader);
        section(element, "pageHeader", "PageHeader", made, made.pageHeader);
        section(element, "detail", "Detail", made, made.detail);
        section(element, "empty", "Empty", made, made.empty);
        section(element, "pageFooter", "PageFooter", made, made.pageFooter);
        section(element, "reportFooter", "ReportFooter", made, made.reportFooter);
    }

    void data(const XmlElement& element, ReportBody& made) const {
        made.source = element.attribute("source").value_or("");
        for (const XmlElement& child : element.children) {
            if (child.name == "from") {
                made.from = oneBlankBetweenWords(child.text);
            } else if (child.name == "selection") {
                made.selection = oneBlankBetweenWords(child.text);
            } else if (child.name == "field" || child.name == "formula") {
                addField(child, made);
            } else if (child.name == "lookup") {
                addLookup(child, made);
            } else if (child.name == "link") {
                made.links.push_back(
                    {child.attribute("field").value_or(""), oneBlankBetweenWords(child.text)});
            } else if (child.name == "sort") {
                made.sortFields.push_back({fieldNamed(child, "field", made), descending(child)});
            }
        }
    }

    void addField(const XmlElement& element, ReportBody& made) const {
        const std::string name = element.attribute("name").value_or("");
        if (knows(made, name)) {
            fail(element, "there are two fields '" + name + "'");
        }
        made.fields.push_back(
            {name, oneBlankBetweenWords(element.text), element.name == "formula"});
    }

    void addLookup(const XmlElement& element, ReportBody& made) const {
        Lookup lookup;
        lookup.name = element.attribute("name").value_or("");
        if (knows(made, lookup.name)) {
            fail(element, "there are two fields '" + lookup.name + "'");
        }
        lookup.of = fieldNamed(element, "of", made);
        for (const XmlElement& child : element.children) {
            if (child.name == "value") {
                lookup.values.emplace_back(child.attribute("is").value_or(""),
                                           oneBlankBetweenWords(child.text));
            } else {
                lookup.otherwise = oneBlankBetweenWords(child.text);
            }
        }
        made.lookups.push_back(std::move(lookup));
    }

    static bool knows(const ReportBody& made, const std::string& name) {
        const auto isIt = [&name](const auto& known) { return sameName(known.name, name); };
        return std::ranges::any_of(made.fields, isIt) || std::ranges::any_of(made.lookups, isIt);
    }

    std::string fieldNamed(const XmlElement& element, std::string_view attribute,
                           const ReportBody& made) const {
        std::string name = element.attribute(attribute).value_or("");
        if (findField(made, name) == nullptr) {
            fail(element, "there is no field '" + name + "'");
        }
        return name;
    }

    Group group(const XmlElement& element, const ReportBody& made) const {
        Group result;
        result.field = fieldNamed(element, "field", made);
        std::string sortBy = element.attribute("sortBy").value_or("");
        while (!sortBy.empty()) {
            const std::size_t blank = sortBy.find(' ');
            if (blank != 0) {
                result.sortBy.push_back(sortBy.substr(0, blank));
            }
            sortBy.erase(0, blank == std::string::npos ? blank : blank + 1);
        }
        for (const std::string& name : result.sortBy) {
            if (findField(made, name) == nullptr) {
                fail(element, "there is no field '" + name + "'");
            }
        }
        result.descending = descending(element);
        const std::string condition = element.attribute("condition").value_or("value");
        result.condition = condition == "day"     ? GroupCondition::Day
                           : condition == "month" ? GroupCondition::Month
                           : condition == "year"  ? GroupCondition::Year
                                                  : GroupCondition::AnyValue;
        const std::string number = std::to_string(made.groups.size() + 1);
        section(element, "header", "GroupHeader" + number, made, result.header);
        section(element, "footer", "GroupFooter" + number, made, result.footer);
        return result;
    }

    void section(const XmlElement& parent, std::string_view elementName,
                 const std::string& usualName, const ReportBody& made, Section& result) const {
        result.name = usualName;
        const XmlElement* element = parent.child(elementName);
        if (element == nullptr) {
            return;
        }
        result.name = element->attribute("name").value_or(usualName);
        result.suppressed = flag(*element, "suppress", false);
        result.newPage = flag(*element, "newPage", false);
        result.repeat = flag(*element, "repeat", false);
        result.subReport = element->attribute("subReport").value_or("");
        for (const XmlElement& child : element->children) {
            if (child.name == "line") {
                result.elements.emplace_back(line(child, made));
            } else if (child.name == "rule") {
                result.elements.emplace_back(Rule{number(child, "thickness", 0.5)});
            } else {
                result.elements.emplace_back(Space{number(child, "height", 0)});
            }
        }
        if (!elementName.starts_with("page")) {
            refusePages(*element, result);
        }
    }

    /// How many pages there are is known when everything else has its place.
    void refusePages(const XmlElement& element, const Section& section) const {
        for (const Element& each : section.elements) {
            const Line* line = std::get_if<Line>(&each);
            for (const Cell& cell : line == nullptr ? std::vector<Cell>() : line->cells) {
                if (std::ranges::any_of(cell.text, [](const Piece& piece) {
                        return piece.kind == PieceKind::Page || piece.kind == PieceKind::Pages;
                    })) {
                    fail(element, "{@page} and {@pages} stand in page sections only");
                }
            }
        }
    }

    Line line(const XmlElement& element, const ReportBody& made) const {
        Line result;
        result.background = colour(element, "background", result.background);
        for (const XmlElement& child : element.children) {
            result.cells.push_back(cell(child, made));
        }
        return result;
    }

    Cell cell(const XmlElement& element, const ReportBody& made) const {
        Cell result;
        result.left = number(element, "left", 0);
        result.width = number(element, "width", 100 - result.left);
        const std::string align = element.attribute("align").value_or("start");
        result.align = align == "center" ? Align::Center
                       : align == "end"  ? Align::End
                                         : Align::Start;
        result.style = styleNamed(element);
        result.wrap = flag(element, "wrap", true);
        result.box = element.name == "box";
        if (result.left + result.width > 100.001) {
            fail(element, "left and width together go beyond 100 percent");
        }
        try {
            result.text = readTemplate(oneBlankBetweenWords(element.text));
        } catch (const ReportError& error) {
            fail(element, error.what());
        }
        for (const Piece& piece : result.text) {
            if (!piece.text.empty() && piece.kind != PieceKind::Text && !knows(made, piece.text)) {
                fail(element, "there is no field '" + piece.text + "'");
            }
        }
        return result;
    }

    void checkSubReports(const XmlElement& root) const {
        const auto check = [&](const ReportBody& made, const Section& section) {
            if (section.subReport.empty()) {
                return;
            }
            if (!made.name.empty()) {
                fail(root, "a sub-report has no sub-reports");
            }
            if (std::ranges::none_of(report_.subReports, [&](const ReportBody& known) {
                    return sameName(known.name, section.subReport);
                })) {
                fail(root, "there is no sub-report '" + section.subReport + "'");
            }
        };
        std::vector<const ReportBody*> bodies{&report_.main};
        for (const ReportBody& sub : report_.subReports) {
            bodies.push_back(&sub);
        }
        for (const ReportBody* made : bodies) {
            for (const Section* each :
                 {&made->reportHeader, &made->detail, &made->empty, &made->reportFooter}) {
                check(*made, *each);
            }
            for (const Group& each : made->groups) {
                check(*made, each.header);
                check(*made, each.footer);
            }
        }
    }

    std::string file_;
    ReportDefinition report_;
};

} // namespace

ReportDefinition readReportFile(std::string_view text, const std::string& file) {
    return Reader(file).read(parseReportXml(text, file));
}

} // namespace kintar::reports
