// A report file's text as a checked tree.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace kintar::reports {

/// An element of the file: its name, its attributes, its text, its children in order.
struct XmlElement {
    std::string name;
    long line = 0;
    std::string text; ///< of its own, without that of its children
    std::vector<std::pair<std::string, std::string>> attributes;
    std::vector<XmlElement> children;

    /// Nothing where the attribute is not given.
    [[nodiscard]] std::optional<std::string> attribute(std::string_view wanted) const;
    /// The first child of that name; null where there is none.
    [[nodiscard]] const XmlElement* child(std::string_view wanted) const;
};

/// Parses `text` and checks it against the schema of report files. Throws ReportError with `file`
/// and the line where it is no such file. A document type, and with it every entity, is refused;
/// nothing outside of the text is ever read.
XmlElement parseReportXml(std::string_view text, const std::string& file);

/// The schema of report files, as text.
std::string_view reportSchema();

} // namespace kintar::reports
