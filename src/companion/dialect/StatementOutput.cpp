#include "companion/dialect/StatementOutput.h"

#include <utility>

namespace kintar::companion::dialect {

StatementOutput::StatementOutput(const std::vector<LiteralValue>& values, char mark)
    : values_(values), mark_(mark) {
    for (std::size_t literal = 0; literal < values.size(); ++literal) {
        translation_.parameters.push_back({literal, Parameter::Use::Value, 0, false});
    }
}

StatementOutput& StatementOutput::operator<<(const Parameter& parameter) {
    std::size_t number = parameter.literal;
    if (parameter.use != Parameter::Use::Value) {
        number = translation_.parameters.size();
        translation_.parameters.push_back(parameter);
    }
    translation_.text += mark_;
    return *this << std::to_string(number + 1);
}

std::string StatementOutput::cut(std::size_t from) {
    std::string taken = translation_.text.substr(from);
    translation_.text.resize(from);
    return taken;
}

void StatementOutput::introduceAs(const TableSource& table, const std::string& own,
                                  std::string name) {
    *this << own;
    if (name != own) {
        *this << " AS " << name;
    }
    names_.emplace(&table, std::move(name));
}

const std::string& StatementOutput::nameOf(const TableSource& table) const {
    return names_.at(&table);
}

Translation StatementOutput::take(std::vector<Column> columns) {
    translation_.columns = std::move(columns);
    return std::move(translation_);
}

} // namespace kintar::companion::dialect
