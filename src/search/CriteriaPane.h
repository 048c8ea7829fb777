// A tab of the criteria dialog: rows of a label and its controls.
#pragma once

#include "search/SelectionCriteria.h"

#include <QDateEdit>
#include <QFrame>
#include <QGridLayout>
#include <QLabel>
#include <QLineEdit>
#include <QRadioButton>
#include <array>
#include <utility>

namespace kintar::search {

/// Names and captions of an option group's buttons.
using OptionTexts = std::array<std::pair<const char*, const char*>, 3>;

/// The three buttons of an option group, the last of them chosen.
using OptionButtons = std::array<QRadioButton*, 3>;

selection::Choice choiceOf(const OptionButtons& buttons);

class CriteriaPane : public QFrame {
public:
    /// `index`: the pane's place in the array of frames.
    CriteriaPane(int index, QWidget* parent);

protected:
    QLineEdit* addText(int index, int labelIndex, const QString& caption);
    /// Two pickers with one label.
    std::array<QDateEdit*, 2> addDates(const char* lowName, const char* highName, int labelIndex,
                                       const QString& caption);
    /// Buttons by name and caption.
    OptionButtons addOptions(const OptionTexts& buttons, int labelIndex, const QString& caption);
    /// `control` fills a row, or what is left of the pane where it `grows`.
    void addControl(QWidget* control, const char* name, const char* kind, int labelIndex,
                    const QString& caption, bool grows);
    /// Leaves what is left of the pane empty.
    void addStretch();

    QGridLayout* rows() { return rows_; }

private:
    QLabel* addLabel(int index, const QString& caption);

    QGridLayout* rows_;
};

} // namespace kintar::search
