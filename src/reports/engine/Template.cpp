#include "reports/engine/Template.h"

#include "reports/engine/ReportError.h"

#include <array>
#include <utility>

namespace kintar::reports {
namespace {

constexpr std::array<std::pair<std::string_view, PieceKind>, 8> specials{{
    {"count", PieceKind::Count},
    {"row", PieceKind::Row},
    {"page", PieceKind::Page},
    {"pages", PieceKind::Pages},
    {"made", PieceKind::Made},
    {"title", PieceKind::Title},
    {"continued", PieceKind::Continued},
    {"", PieceKind::Text},
}};

ValueFormat formatNamed(std::string_view name) {
    if (name.empty()) {
        return ValueFormat::Natural;
    }
    if (name == "date") {
        return ValueFormat::Date;
    }
    if (name == "time") {
        return ValueFormat::Time;
    }
    if (name == "age") {
        return ValueFormat::Age;
    }
    throw ReportError("'" + std::string(name) + "' is no format; they are date, time and age");
}

Piece specialPiece(std::string_view name, std::string_view argument) {
    if (name == "sum" || name == "distinct") {
        if (argument.empty()) {
            throw ReportError("{@" + std::string(name) + "} names no field");
        }
        return {name == "sum" ? PieceKind::Sum : PieceKind::Distinct, std::string(argument), {}};
    }
    for (const auto& [known, kind] : specials) {
        if (known == name && kind != PieceKind::Text) {
            return {kind, {}, formatNamed(argument)};
        }
    }
    throw ReportError("{@" + std::string(name) + "} is unknown");
}

Piece pieceFrom(std::string_view inner) {
    const std::size_t colon = inner.find(':');
    const std::string_view name = inner.substr(0, colon);
    const std::string_view argument =
        colon == std::string_view::npos ? std::string_view() : inner.substr(colon + 1);
    if (name.starts_with('@')) {
        return specialPiece(name.substr(1), argument);
    }
    if (name.empty()) {
        throw ReportError("{} names no field");
    }
    return {PieceKind::Value, std::string(name), formatNamed(argument)};
}

} // namespace

Template readTemplate(std::string_view text) {
    Template pieces;
    std::string literal;
    const auto endLiteral = [&] {
        if (!literal.empty()) {
            pieces.push_back({PieceKind::Text, std::exchange(literal, {}), {}});
        }
    };
    for (std::size_t at = 0; at < text.size(); ++at) {
        if (text[at] != '{') {
            literal += text[at];
        } else if (text.substr(at, 2) == "{{") {
            literal += '{';
            ++at;
        } else {
            const std::size_t end = text.find('}', at);
            if (end == std::string_view::npos) {
                throw ReportError("a '{' has no '}'; a brace of the text itself is written {{");
            }
            endLiteral();
            pieces.push_back(pieceFrom(text.substr(at + 1, end - at - 1)));
            at = end;
        }
    }
    endLiteral();
    return pieces;
}

} // namespace kintar::reports
