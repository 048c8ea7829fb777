// A label of one line that never outgrows its place.
#pragma once

#include <QLabel>

#include <functional>
#include <string_view>

namespace kintar::platform {

/// Shows plain text in one line. A text that does not fit ends in an ellipsis and is shown whole in
/// the tooltip; one of a script that runs from the right stands at the right. Its text and its
/// accessible name are always the whole text.
class ElidedLabel final : public QLabel {
public:
    explicit ElidedLabel(QWidget* parent);

    void setLine(std::string_view text);
    void onDoubleClick(std::function<void()> handler) { doubleClicked_ = std::move(handler); }

protected:
    bool event(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;

private:
    [[nodiscard]] QString shown() const;

    std::function<void()> doubleClicked_;
};

} // namespace kintar::platform
