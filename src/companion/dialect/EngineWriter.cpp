#include "companion/dialect/EngineWriter.h"

namespace kintar::companion::dialect {

ParameterValue plainValue(const LiteralValue& literal) {
    switch (literal.kind) {
    case LiteralKind::Integer:
        return literal.integer;
    case LiteralKind::Decimal:
        return literal.real();
    case LiteralKind::Text:
        return literal.text();
    case LiteralKind::DateTime:
        break;
    }
    return literal.dateTime.isoWithBlank();
}

} // namespace kintar::companion::dialect
