#include "reports/engine/qt/QtTextMeasure.h"

#include <QString>
#include <QTextLayout>

#include <algorithm>
#include <cmath>

namespace kintar::reports {
namespace {

/// Fonts that stand in for missing glyphs are often higher than the style's own.
constexpr double leastLineHeight = 1.3;

QString textFrom(std::string_view text) {
    QString result = QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
    // A value's own line breaks and control characters would part the line behind our back.
    for (QChar& character : result) {
        if (character.category() == QChar::Other_Control ||
            character == QChar::ParagraphSeparator || character == QChar::LineSeparator) {
            character = QLatin1Char(' ');
        }
    }
    return result;
}

} // namespace

std::vector<QFont> fontsOf(const ReportDefinition& definition) {
    std::vector<QFont> fonts;
    for (const Style& style : definition.styles) {
        QFont font(QStringLiteral("DejaVu Sans"));
        font.setStyleHint(QFont::SansSerif);
        font.setPixelSize(static_cast<int>(std::lround(style.size * unitsPerPoint)));
        font.setBold(style.bold);
        font.setItalic(style.italic);
        font.setHintingPreference(QFont::PreferNoHinting);
        fonts.push_back(font);
    }
    return fonts;
}

QtTextMeasure::QtTextMeasure(const ReportDefinition& definition) {
    for (const QFont& font : fontsOf(definition)) {
        fonts_.emplace_back(font);
    }
}

double QtTextMeasure::lineHeight(std::size_t style) {
    const StyleFont& font = fonts_.at(style);
    return std::max(font.metrics.height(), font.font.pixelSize() * leastLineHeight) / unitsPerPoint;
}

bool QtTextMeasure::fits(StyleFont& font, const QString& text, double width) {
    double used = 0;
    for (const QChar character : text) {
        const char16_t code = character.unicode();
        if (code >= endOfSimple) {
            return font.metrics.horizontalAdvance(text) <= width;
        }
        float& known = font.widths.at(code);
        if (known < 0) {
            known = static_cast<float>(font.metrics.horizontalAdvance(character));
        }
        used += known;
    }
    return used <= width;
}

std::vector<std::string> QtTextMeasure::wrapped(std::string_view text, std::size_t style,
                                                double width) {
    StyleFont& font = fonts_.at(style);
    const QString whole = textFrom(text);
    if (fits(font, whole, width * unitsPerPoint)) {
        return {whole.toStdString()};
    }
    QTextLayout layout(whole, font.font);
    QTextOption option;
    option.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
    layout.setTextOption(option);
    std::vector<std::string> lines;
    layout.beginLayout();
    for (QTextLine line = layout.createLine(); line.isValid(); line = layout.createLine()) {
        line.setLineWidth(width * unitsPerPoint);
        lines.push_back(whole.mid(line.textStart(), line.textLength()).trimmed().toStdString());
    }
    layout.endLayout();
    return lines;
}

std::string QtTextMeasure::elided(std::string_view text, std::size_t style, double width) {
    StyleFont& font = fonts_.at(style);
    const QString whole = textFrom(text);
    if (fits(font, whole, width * unitsPerPoint)) {
        return whole.toStdString();
    }
    return font.metrics.elidedText(whole, Qt::ElideRight, width * unitsPerPoint).toStdString();
}

} // namespace kintar::reports
