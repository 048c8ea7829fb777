#include "reports/engine/OpenReport.h"

#include "reports/engine/ReportError.h"
#include "reports/engine/ReportFile.h"

namespace kintar::reports {
namespace {

const std::string& knownField(const ReportBody& body, const std::string& name) {
    const Field* field = findField(body, name);
    if (field == nullptr) {
        throw ReportError("the report has no field '" + name + "'");
    }
    return field->name;
}

} // namespace

OpenReport::OpenReport(std::string_view text, const std::string& path)
    : definition_(readReportFile(text, path)), folder_(path.substr(0, path.find_last_of('/'))) {}

void OpenReport::setFormula(std::string_view name, const std::string& text) {
    for (Field& field : definition_.main.fields) {
        if (field.formula && sameName(field.name, name)) {
            field.expression = text;
            return;
        }
    }
}

template <class Visit>
void OpenReport::forEachSection(const Visit& visit) {
    const auto visitBody = [&visit](ReportBody& body) {
        for (Section* section : {&body.reportHeader, &body.pageHeader, &body.detail, &body.empty,
                                 &body.pageFooter, &body.reportFooter}) {
            visit(*section);
        }
        for (Group& group : body.groups) {
            visit(group.header);
            visit(group.footer);
        }
    };
    visitBody(definition_.main);
    for (ReportBody& body : definition_.subReports) {
        visitBody(body);
    }
}

void OpenReport::setSuppressed(std::string_view section, bool suppressed) {
    Section* found = nullptr;
    forEachSection([&](Section& known) {
        if (found == nullptr && sameName(known.name, section)) {
            found = &known;
        }
    });
    if (found == nullptr) {
        throw ReportError("the report has no section '" + std::string(section) + "'");
    }
    found->suppressed = suppressed;
}

void OpenReport::setGroupCondition(std::int16_t number, const std::string& field,
                                   std::int16_t condition) {
    std::vector<Group>& groups = definition_.main.groups;
    if (number < 1 || static_cast<std::size_t>(number) > groups.size()) {
        throw ReportError("the report has no group " + std::to_string(number));
    }
    if (condition < 0 || condition > static_cast<std::int16_t>(GroupCondition::Year)) {
        throw ReportError("there is no group condition " + std::to_string(condition));
    }
    Group& group = groups[static_cast<std::size_t>(number) - 1];
    group.field = knownField(definition_.main, field);
    group.sortBy.clear(); // those orders belonged to the field before
    group.condition = static_cast<GroupCondition>(condition);
}

void OpenReport::setSortField(std::int16_t number, const std::string& field, bool descending) {
    std::vector<SortField>& fields = definition_.main.sortFields;
    if (number < 1 || static_cast<std::size_t>(number) > fields.size() + 1) {
        throw ReportError("the report has no sort field " + std::to_string(number));
    }
    fields.resize(std::max(fields.size(), static_cast<std::size_t>(number)));
    fields[static_cast<std::size_t>(number) - 1] = {knownField(definition_.main, field),
                                                    descending};
}

void OpenReport::setSubReportSelection(std::string_view subReport, const std::string& text) {
    for (ReportBody& body : definition_.subReports) {
        if (sameName(body.name, subReport)) {
            body.selection = text;
            return;
        }
    }
    throw ReportError("the report has no sub-report '" + std::string(subReport) + "'");
}

std::shared_ptr<const Report> OpenReport::run(const ReportSources& sources, DateTime made,
                                              const LocaleFormats& formats) const {
    return std::make_shared<const Report>(definition_, folder_, sources, made, formats);
}

} // namespace kintar::reports
