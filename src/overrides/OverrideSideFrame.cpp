#include "overrides/OverrideSideFrame.h"

#include "overrides/QtDates.h"
#include "platform/qt/Controls.h"
#include "platform/qt/FocusHighlight.h"
#include "platform/qt/PlainText.h"

#include <QGridLayout>
#include <QLabel>
#include <QRadioButton>
#include <QSignalBlocker>
#include <QSlider>

#include <algorithm>

namespace kintar {
namespace {

constexpr int stepsOfHour = 60 / minutesOfStep;
constexpr int hoursOfTick = 3;

const char* captionOf(OverrideCommand command) {
    switch (command) {
    case OverrideCommand::Secure:
        return "Secure";
    case OverrideCommand::Open:
        return "Open";
    case OverrideCommand::TimeZone:
        return "Time Zone";
    case OverrideCommand::Arm:
        return "Arm";
    case OverrideCommand::ByPass:
        return "ByPass";
    case OverrideCommand::None:
        break;
    }
    return "";
}

} // namespace

OverrideSideFrame::OverrideSideFrame(const Names& names, const OverrideTexts& texts,
                                     QWidget* parent)
    : QGroupBox(QString::fromLatin1(names.title), parent), names_(names) {
    platform::nameControl(*this, names.frame, "frame", title());
    auto* layout = new QGridLayout(this);
    layout->setColumnStretch(1, 1);
    makeOptions(*layout);
    makeDate(*layout, texts.formats().shortDate);
    makeTime(*layout);
    reserveReadout(texts);
}

QLabel* OverrideSideFrame::newLabel(const char* name, const QString& text) {
    auto* label = new QLabel(text, this);
    platform::makePlain(*label);
    platform::nameControl(*label, name, "label", text);
    return label;
}

void OverrideSideFrame::makeOptions(QGridLayout& layout) {
    auto* row = new QVBoxLayout;
    for (std::size_t i = 0; i < overrideCommands.size(); ++i) {
        const OverrideCommand command = overrideCommands[i];
        const QString caption = QString::fromLatin1(captionOf(command));
        auto* option = new QRadioButton(caption, this);
        const QByteArray name =
            "opt" + QByteArray::number(names_.firstOption + static_cast<int>(i));
        platform::nameControl(*option, name.constData(), "option button", title() + u' ' + caption);
        connect(option, &QRadioButton::clicked, this, [this, command] { onCommand(command); });
        row->addWidget(option);
        options_[i] = option;
    }
    layout.addLayout(row, 0, 0, 1, 3);
}

void OverrideSideFrame::makeDate(QGridLayout& layout, const std::string& shortDate) {
    QLabel* label = newLabel(names_.dateLabel, title() + QStringLiteral(" Date:"));
    date_ = newDatePicker(shortDate, this);
    platform::nameControl(*date_, names_.datePicker, "date picker",
                          title() + QStringLiteral(" Date"));
    label->setBuddy(date_);
    new platform::FocusHighlight(*label, *date_, QPalette::Button);
    connect(date_, &QDateEdit::dateChanged, this,
            [this](const QDate& date) { onDate(fromQDate(date)); });
    layout.addWidget(label, 1, 0);
    layout.addWidget(date_, 1, 1, 1, 2);
}

void OverrideSideFrame::makeTime(QGridLayout& layout) {
    QLabel* label = newLabel(names_.timeLabel, title() + QStringLiteral(" Time:"));
    slider_ = new QSlider(Qt::Horizontal, this);
    slider_->setRange(0, lastStep);
    slider_->setPageStep(stepsOfHour);
    slider_->setTickPosition(QSlider::TicksBelow);
    slider_->setTickInterval(hoursOfTick * stepsOfHour);
    slider_->setMinimumWidth(lastStep * 2); // a step is never less than two pixels
    platform::nameControl(*slider_, names_.slider, "slider", title() + QStringLiteral(" Time"));
    label->setBuddy(slider_);
    new platform::FocusHighlight(*label, *slider_, QPalette::Button);
    readout_ = newLabel(names_.readout, QStringLiteral("2400"));
    connect(slider_, &QSlider::valueChanged, this, [this](int value) {
        if (slider_->isSliderDown()) {
            onSliderMoved(value);
        } else {
            onSliderSet(value);
        }
    });
    connect(slider_, &QSlider::sliderReleased, this, [this] { onSliderSet(slider_->value()); });
    layout.addWidget(label, 2, 0);
    layout.addWidget(slider_, 2, 1);
    layout.addWidget(readout_, 2, 2);
    layout.setRowStretch(3, 1);
}

void OverrideSideFrame::reserveReadout(const OverrideTexts& texts) {
    // A fixed size: whichever time is shown, nothing is laid out anew.
    int widest = 0;
    for (int step = 0; step <= lastStep; ++step) {
        const QString readout = platform::oneLine(texts.readout(step));
        widest = std::max(widest, readout_->fontMetrics().horizontalAdvance(readout));
    }
    readout_->setFixedSize(widest, readout_->sizeHint().height());
}

void OverrideSideFrame::completeEntry() {
    completeDate(*date_);
}

void OverrideSideFrame::displayOptions(const OverrideOptions& options) {
    for (std::size_t i = 0; i < options_.size(); ++i) {
        QRadioButton& option = *options_[i];
        const bool available = options.isAvailable(overrideCommands[i]);
        const bool selected = options.selected() == overrideCommands[i];
        option.setEnabled(available);
        // What is selected is seen, also where it cannot be chosen any more.
        option.setVisible(available || selected);
        if (selected) {
            option.setChecked(true);
        }
        // The keyboard enters the group at its selection and moves in it with the arrow keys.
        const bool isEntry = options.selected() == OverrideCommand::None || selected;
        option.setFocusPolicy(isEntry ? Qt::StrongFocus : Qt::ClickFocus);
    }
}

void OverrideSideFrame::uncheckAll() {
    for (QRadioButton* option : options_) {
        option->setAutoExclusive(false); // or the last one would stay checked
        option->setChecked(false);
        option->setAutoExclusive(true);
    }
}

void OverrideSideFrame::display(const OverrideSide& side) {
    const QSignalBlocker dateBlocker(date_);
    const QSignalBlocker sliderBlocker(slider_);
    if (const QDate date = toQDate(side.time.date); date_->date() != date) {
        date_->setDate(date);
    }
    slider_->setValue(side.time.slider);
    const QString readout = platform::oneLine(side.readout);
    if (readout_->text() != readout) {
        readout_->setText(readout);
        readout_->setAccessibleName(readout);
        slider_->setToolTip(platform::tooltipText(side.readout));
        slider_->setAccessibleName(title() + QStringLiteral(" Time ") + readout);
    }
    if (side.options.selected() == OverrideCommand::None) {
        uncheckAll();
    }
    displayOptions(side.options);
}

} // namespace kintar
