#include "reports/engine/ReportDefinition.h"

#include "base/Unicode.h"

namespace kintar::reports {

bool sameName(std::string_view a, std::string_view b) {
    return unicode::fold(a) == unicode::fold(b);
}

const Field* findField(const ReportBody& body, std::string_view name) {
    for (const Field& field : body.fields) {
        if (sameName(field.name, name)) {
            return &field;
        }
    }
    return nullptr;
}

} // namespace kintar::reports
