#include "platform/qt/PlainText.h"

#include <QLabel>

namespace kintar::platform {

namespace {

/// Longer than any line that a window could show.
constexpr std::size_t longestText = 4096;

/// Embeddings, overrides and isolates: without their end they turn what follows, too.
bool turnsDirection(char16_t c) {
    return (c >= 0x202A && c <= 0x202E) || (c >= 0x2066 && c <= 0x2069);
}

} // namespace

QString oneLine(std::string_view text) {
    const std::string_view cut = text.substr(0, longestText);
    QString line;
    for (const QChar c : QString::fromUtf8(cut.data(), static_cast<qsizetype>(cut.size()))) {
        const QChar::Category category = c.category();
        if (category == QChar::Other_Control || category == QChar::Separator_Line ||
            category == QChar::Separator_Paragraph) {
            line += QLatin1Char(' ');
        } else if (!turnsDirection(c.unicode())) {
            line += c;
        }
    }
    return line;
}

QString titleText(std::string_view text) {
    return oneLine(text).replace(QLatin1String("[*]"), QLatin1String("[*][*]"));
}

QString captionText(std::string_view text) {
    return oneLine(text).replace(QLatin1Char('&'), QLatin1String("&&"));
}

QString tooltipText(std::string_view text) {
    const QString line = oneLine(text).toHtmlEscaped();
    return line.isEmpty() ? line : QLatin1String("<span>") + line + QLatin1String("</span>");
}

void makePlain(QLabel& label) {
    label.setTextFormat(Qt::PlainText);
    label.setTextInteractionFlags(Qt::NoTextInteraction);
}

} // namespace kintar::platform
