#include "search/CriteriaPane.h"

#include "platform/qt/Controls.h"
#include "platform/qt/FocusHighlight.h"
#include "platform/qt/PlainText.h"

#include <QHBoxLayout>
#include <string>

namespace kintar::search {

namespace {

/// "Text_3": a member of a control array.
std::string memberName(const char* array, int index) {
    return std::string(array) + "_" + std::to_string(index);
}

} // namespace

selection::Choice choiceOf(const OptionButtons& buttons) {
    return buttons[0]->isChecked()   ? selection::Choice::True
           : buttons[1]->isChecked() ? selection::Choice::False
                                     : selection::Choice::Either;
}

CriteriaPane::CriteriaPane(int index, QWidget* parent)
    : QFrame(parent), rows_(new QGridLayout(this)) {
    platform::nameControl(*this, memberName("Frame", index).c_str(), "frame", QString());
    rows_->setColumnStretch(1, 1);
}

QLabel* CriteriaPane::addLabel(int index, const QString& caption) {
    auto* label = new QLabel(caption, this);
    platform::makePlain(*label);
    label->setMargin(2);
    platform::nameControl(*label, memberName("Label", index).c_str(), "label", caption);
    rows_->addWidget(label, rows_->rowCount(), 0, Qt::AlignVCenter);
    return label;
}

void CriteriaPane::addControl(QWidget* control, const char* name, const char* kind, int labelIndex,
                              const QString& caption, bool grows) {
    QLabel* label = addLabel(labelIndex, caption);
    label->setBuddy(control);
    platform::nameControl(*control, name, kind, caption);
    const int row = rows_->rowCount() - 1;
    rows_->addWidget(control, row, 1);
    rows_->setRowStretch(row, grows ? 1 : 0);
    if (grows) {
        rows_->setAlignment(label, Qt::AlignTop);
    }
    new platform::FocusHighlight(*label, *control);
}

QLineEdit* CriteriaPane::addText(int index, int labelIndex, const QString& caption) {
    auto* text = new QLineEdit(this);
    addControl(text, memberName("Text", index).c_str(), "text box", labelIndex, caption, false);
    return text;
}

std::array<QDateEdit*, 2> CriteriaPane::addDates(const char* lowName, const char* highName,
                                                 int labelIndex, const QString& caption) {
    QLabel* label = addLabel(labelIndex, caption);
    auto* line = new QHBoxLayout;
    std::array<QDateEdit*, 2> pickers{};
    for (std::size_t i = 0; i < pickers.size(); ++i) {
        auto* picker = new QDateEdit(this);
        picker->setCalendarPopup(true);
        platform::nameControl(*picker, i == 0 ? lowName : highName, "date picker", caption);
        new platform::FocusHighlight(*label, *picker);
        line->addWidget(picker);
        pickers.at(i) = picker;
    }
    label->setBuddy(pickers[0]);
    line->addStretch();
    rows_->addLayout(line, rows_->rowCount() - 1, 1);
    return pickers;
}

OptionButtons CriteriaPane::addOptions(const OptionTexts& buttons, int labelIndex,
                                       const QString& caption) {
    QLabel* label = addLabel(labelIndex, caption);
    // Buttons of one parent exclude one another.
    auto* box = new QWidget(this);
    auto* line = new QHBoxLayout(box);
    line->setContentsMargins(0, 0, 0, 0);
    OptionButtons made{};
    for (std::size_t i = 0; i < buttons.size(); ++i) {
        const QString text = QString::fromLatin1(buttons.at(i).second);
        auto* button = new QRadioButton(text, box);
        platform::nameControl(*button, buttons.at(i).first, "option button", text);
        new platform::FocusHighlight(*label, *button);
        line->addWidget(button);
        made.at(i) = button;
    }
    made.back()->setChecked(true);
    line->addStretch();
    rows_->addWidget(box, rows_->rowCount() - 1, 1);
    return made;
}

void CriteriaPane::addStretch() {
    rows_->setRowStretch(rows_->rowCount(), 1);
}

} // namespace kintar::search
