// Text as the toolkit's fonts write it.
#pragma once

#include "reports/engine/ReportDefinition.h"
#include "reports/engine/TextMeasure.h"

#include <QFont>
#include <QFontMetricsF>

#include <array>
#include <vector>

namespace kintar::reports {

/// Fonts are as many units high as this for each point, so that sizes in tenths of a point are
/// whole numbers and glyphs are placed finely.
inline constexpr double unitsPerPoint = 10;

/// The fonts of a report's styles, in the units above.
std::vector<QFont> fontsOf(const ReportDefinition& definition);

/// May be used on any thread, by one at a time.
class QtTextMeasure final : public TextMeasure {
public:
    explicit QtTextMeasure(const ReportDefinition& definition);

    [[nodiscard]] double lineHeight(std::size_t style) override;
    std::vector<std::string> wrapped(std::string_view text, std::size_t style,
                                     double width) override;
    std::string elided(std::string_view text, std::size_t style, double width) override;

private:
    // Characters that stand for themselves, side by side: their widths can be added up.
    static constexpr char16_t endOfSimple = 0x250;

    struct StyleFont {
        explicit StyleFont(const QFont& f) : font(f), metrics(f) { widths.fill(-1); }
        QFont font;
        QFontMetricsF metrics;
        std::array<float, endOfSimple> widths{};
    };

    static bool fits(StyleFont& font, const QString& text, double width);

    std::vector<StyleFont> fonts_;
};

} // namespace kintar::reports
