// A label that does something when it is clicked.
#pragma once

#include <QColor>
#include <QPushButton>

namespace kintar {

/// "Enable Card" and "Disable Card": filled in a colour of their own, with a sign beside the words
/// where there is room, so that neither colour nor words alone tell them apart. Never takes the
/// keyboard focus.
class CommandLabel final : public QPushButton {
public:
    enum class Sign { Tick, Cross };

    CommandLabel(Sign sign, const QColor& colour, QWidget* parent);

    /// The width below which even the smallest letters do not fit.
    [[nodiscard]] int leastWidth() const;
    [[nodiscard]] QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    [[nodiscard]] QFont fontFor(int width) const;
    [[nodiscard]] int signSide() const;
    void paintSign(QPainter& painter, const QRect& place) const;

    Sign sign_;
    QColor colour_;
};

} // namespace kintar
