#include "reports/engine/Template.h"

#include "reports/engine/ReportError.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace kintar::reports {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

Piece piece(PieceKind kind, const std::string& text = {},
            ValueFormat format = ValueFormat::Natural) {
    return {kind, text, format};
}

TEST(Template, KeepsTextAsItStands) {
    EXPECT_THAT(readTemplate(""), IsEmpty());
    EXPECT_THAT(readTemplate("a } b"), ElementsAre(piece(PieceKind::Text, "a } b")));
    EXPECT_THAT(readTemplate("{{Name}"), ElementsAre(piece(PieceKind::Text, "{Name}")));
}

TEST(Template, HasPlacesForFieldsAndTheirFormats) {
    EXPECT_THAT(readTemplate("Hi {Name}, {Last Used:age}!"),
                ElementsAre(piece(PieceKind::Text, "Hi "), piece(PieceKind::Value, "Name"),
                            piece(PieceKind::Text, ", "),
                            piece(PieceKind::Value, "Last Used", ValueFormat::Age),
                            piece(PieceKind::Text, "!")));
}

TEST(Template, KnowsWhatBelongsToTheReport) {
    EXPECT_THAT(readTemplate("{@page}{@pages}{@made:date}{@count}{@sum:A}{@distinct:B}"),
                ElementsAre(piece(PieceKind::Page), piece(PieceKind::Pages),
                            piece(PieceKind::Made, "", ValueFormat::Date), piece(PieceKind::Count),
                            piece(PieceKind::Sum, "A"), piece(PieceKind::Distinct, "B")));
}

TEST(Template, SaysWhatItCannotRead) {
    for (const char* text : {"{Name", "{}", "{:age}", "{@nothing}", "{Name:upper}", "{@sum}",
                             "{@distinct}", "{@}", "{", "{@made:"}) {
        SCOPED_TRACE(text);
        EXPECT_THROW(readTemplate(text), ReportError);
    }
}

} // namespace
} // namespace kintar::reports
