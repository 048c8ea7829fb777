// The controls of one side of a schedule: its command, its date, its time of day.
#pragma once

#include "overrides/OverrideEditor.h"

#include <QGroupBox>

#include <array>
#include <functional>
#include <string>

class QDateEdit;
class QGridLayout;
class QLabel;
class QRadioButton;
class QSlider;

namespace kintar {

class OverrideSideFrame final : public QGroupBox {
public:
    /// The names of a side's controls, and what they are called.
    struct Names {
        const char* frame;
        const char* title; ///< "Start" or "Stop"
        const char* datePicker;
        const char* slider;
        const char* dateLabel;
        const char* timeLabel;
        const char* readout;
        int firstOption; ///< 1: `opt1` to `opt5`
    };

    OverrideSideFrame(const Names& names, const OverrideTexts& texts, QWidget* parent);

    /// Shows a side; tells of no change.
    void display(const OverrideSide& side);
    /// Takes a date that is still being typed for complete.
    void completeEntry();
    [[nodiscard]] QSlider* slider() const { return slider_; }

    /// What the operator does, told as it happens. All are set before the window shows.
    std::function<void(DateTime date)> onDate;
    std::function<void(int value)> onSliderMoved; ///< while it is being dragged
    std::function<void(int value)> onSliderSet;
    std::function<void(OverrideCommand command)> onCommand;

private:
    void makeOptions(QGridLayout& layout);
    void makeDate(QGridLayout& layout, const std::string& shortDate);
    void makeTime(QGridLayout& layout);
    void reserveReadout(const OverrideTexts& texts);
    QLabel* newLabel(const char* name, const QString& text);
    void displayOptions(const OverrideOptions& options);
    void uncheckAll();

    Names names_;
    std::array<QRadioButton*, overrideCommands.size()> options_{};
    QDateEdit* date_ = nullptr;
    QSlider* slider_ = nullptr;
    QLabel* readout_ = nullptr;
};

} // namespace kintar
