#include "demo/WorkstationWindow.h"

#include <QAction>
#include <QComboBox>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QPainter>
#include <QPushButton>
#include <QTableView>
#include <QVBoxLayout>

#include <array>

namespace kintar::demo {

namespace {

constexpr int eventInterval = 4000;

QLabel* plainLabel(const QString& accessibleName, QWidget* parent) {
    auto* label = new QLabel(parent);
    label->setTextFormat(Qt::PlainText);
    label->setAccessibleName(accessibleName);
    return label;
}

QColor lampColour(ServerLink::State state) {
    switch (state) {
    case ServerLink::State::Ready:
        return {0x2e, 0x9e, 0x4f};
    case ServerLink::State::Starting:
        return {0xe0, 0xa0, 0x20};
    case ServerLink::State::Gone:
        break;
    }
    return {0xc0, 0x2a, 0x2a};
}

} // namespace

WorkstationWindow::WorkstationWindow(Feed& feed, ServerLink& link, NameFinder& finder,
                                     QWidget* parent)
    : QWidget(parent), feed_(feed), link_(link), finder_(finder) {
    setWindowTitle(tr("Workstation"));
    resize(980, 560);
    build();
    connectControls();
    clock_.setInterval(eventInterval);
    refreshState();
    clock_.start();
}

QWidget* WorkstationWindow::makeControls() {
    auto* controls = new QWidget(this);
    auto* row = new QHBoxLayout(controls);
    row->setContentsMargins(0, 0, 0, 0);
    auto* heading = plainLabel({}, controls);
    heading->setText(tr("Card events"));
    QFont font = heading->font();
    font.setPointSizeF(font.pointSizeF() * 1.5);
    font.setBold(true);
    heading->setFont(font);
    row->addWidget(heading);
    row->addStretch();
    auto* label = new QLabel(tr("&Operator:"), controls);
    operators_ = new QComboBox(controls);
    operators_->setAccessibleName(tr("Operator"));
    operators_->setSizeAdjustPolicy(QComboBox::AdjustToContents);
    label->setBuddy(operators_);
    showPhoto_ = new QPushButton(tr("&Show photo"), controls);
    showPhoto_->setAccessibleName(tr("Show photo"));
    showPhoto_->setEnabled(false);
    findName_ = new QPushButton(tr("&Find name…"), controls);
    findName_->setAccessibleName(tr("Find name…"));
    browse_ = new QPushButton(tr("&In / Out…"), controls);
    browse_->setAccessibleName(tr("In / Out…"));
    browse_->setToolTip(tr("Find the names to watch, then press In/Out"));
    pause_ = new QPushButton(tr("&Pause feed"), controls);
    pause_->setAccessibleName(tr("Pause feed"));
    pause_->setCheckable(true);
    row->addWidget(label);
    row->addWidget(operators_);
    row->addSpacing(12);
    row->addWidget(showPhoto_);
    row->addWidget(findName_);
    row->addWidget(browse_);
    row->addWidget(pause_);
    return controls;
}

void WorkstationWindow::build() {
    auto* column = new QVBoxLayout(this);
    column_ = column;
    column->setContentsMargins(14, 12, 14, 10);
    column->setSpacing(10);
    column->addWidget(makeControls());

    buildTable();
    column->addWidget(table_, 1);

    auto* bottom = new QHBoxLayout;
    lamp_ = new QLabel(this);
    lamp_->setFixedSize(12, 12);
    state_ = plainLabel(tr("Connection"), this);
    found_ = plainLabel(tr("Found"), this);
    message_ = plainLabel(tr("Message"), this);
    bottom->addWidget(lamp_);
    bottom->addWidget(state_);
    bottom->addSpacing(16);
    bottom->addWidget(found_);
    // A long message is cut off and widens no window.
    message_->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
    message_->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    bottom->addWidget(message_, 1);
    column->addLayout(bottom);
    table_->setFocus();
}

void WorkstationWindow::buildTable() {
    table_ = new QTableView(this);
    table_->setAccessibleName(tr("Card events"));
    table_->setModel(&model_);
    table_->setSelectionBehavior(QAbstractItemView::SelectRows);
    table_->setSelectionMode(QAbstractItemView::SingleSelection);
    table_->setEditTriggers(QAbstractItemView::NoEditTriggers);
    table_->setAlternatingRowColors(true);
    table_->setShowGrid(false);
    table_->setTabKeyNavigation(false);
    table_->setWordWrap(false);
    table_->verticalHeader()->hide();
    table_->verticalHeader()->setDefaultSectionSize(30);
    table_->horizontalHeader()->setHighlightSections(false);
    table_->horizontalHeader()->setDefaultAlignment(Qt::AlignLeft | Qt::AlignVCenter);
    table_->horizontalHeader()->setStretchLastSection(true);
    constexpr std::array<int, EventModel::columnCountOfFeed - 1> widths{90, 250, 230, 180};
    for (int i = 0; i < static_cast<int>(widths.size()); ++i) {
        table_->setColumnWidth(i, widths.at(static_cast<std::size_t>(i)));
    }
}

void WorkstationWindow::connectControls() {
    connect(&clock_, &QTimer::timeout, this, &WorkstationWindow::playNext);
    connect(&feed_, &Feed::loaded, this, &WorkstationWindow::takeFeed);
    connect(&feed_, &Feed::failed, this, &WorkstationWindow::say);
    connect(&link_, &ServerLink::stateChanged, this, &WorkstationWindow::refreshState);
    connect(&link_, &ServerLink::refused, this, &WorkstationWindow::say);
    connect(&link_, &ServerLink::shown, this, [this] { say({}); });
    connect(pause_, &QPushButton::toggled, this, &WorkstationWindow::setPaused);
    connect(table_, &QTableView::clicked, this, &WorkstationWindow::showRow);
    connect(table_->selectionModel(), &QItemSelectionModel::selectionChanged, this,
            [this] { showPhoto_->setEnabled(table_->selectionModel()->hasSelection()); });
    connect(showPhoto_, &QPushButton::clicked, this,
            [this] { showRow(table_->selectionModel()->currentIndex()); });
    connect(findName_, &QPushButton::clicked, this, [this] { openNames(&NameFinder::find); });
    connect(browse_, &QPushButton::clicked, this, [this] { openNames(&NameFinder::browse); });
    connect(&finder_, &NameFinder::found, this, [this](int person, const QString& name) {
        found_->setText(tr("Found: %1 (number %2)").arg(name).arg(person));
    });
    connect(&finder_, &NameFinder::cancelled, this,
            [this] { found_->setText(tr("Found: nobody")); });
    connect(&finder_, &NameFinder::refused, this, &WorkstationWindow::say);
    auto* enter = new QAction(this);
    enter->setShortcuts({QKeySequence(Qt::Key_Return), QKeySequence(Qt::Key_Enter)});
    enter->setShortcutContext(Qt::WidgetShortcut);
    table_->addAction(enter);
    connect(enter, &QAction::triggered, showPhoto_, &QPushButton::click);
}

void WorkstationWindow::takeFeed(const FeedContent& content) {
    events_ = content.events;
    for (const OperatorChoice& choice : content.operators) {
        operators_->addItem(tr("%1: %2").arg(choice.id).arg(choice.rights), choice.id);
    }
    playNext();
}

void WorkstationWindow::playNext() {
    if (pause_->isChecked() || events_.isEmpty()) {
        return;
    }
    play(events_.at(next_));
    next_ = (next_ + 1) % events_.size();
}

void WorkstationWindow::play(CardEvent event) {
    event.moment = fixedMoment_.isValid() ? fixedMoment_ : QDateTime::currentDateTime();
    model_.add(event);
    link_.show(event, operatorId());
}

void WorkstationWindow::showRow(const QModelIndex& index) {
    if (index.isValid()) {
        link_.show(model_.eventAt(index.row()), operatorId());
    }
}

/// In the group of the event that is chosen, else of the first one.
void WorkstationWindow::openNames(void (NameFinder::*open)(int, const QString&, int)) {
    const QModelIndex chosen = table_->selectionModel()->currentIndex();
    const bool hasChosen = chosen.isValid() && chosen.row() < model_.rowCount();
    const CardEvent event = hasChosen           ? model_.eventAt(chosen.row())
                            : events_.isEmpty() ? CardEvent()
                                                : events_.first();
    (finder_.*open)(event.locGrp, event.locName, operatorId());
}

void WorkstationWindow::addActions(ActionsBar& actions) {
    column_->insertWidget(column_->indexOf(table_) + 1, &actions);
    connect(&actions, &ActionsBar::said, this, &WorkstationWindow::say);
    connect(&feed_, &Feed::loaded, &actions,
            [&actions](const FeedContent& content) { actions.offerPoints(content.points); });
}

ActionPlace WorkstationWindow::place() const {
    ActionPlace place;
    place.operatorId = operatorId();
    if (model_.rowCount() > 0) {
        const QModelIndex chosen = table_->selectionModel()->currentIndex();
        const CardEvent& event = model_.eventAt(chosen.isValid() ? chosen.row() : 0);
        place.loc = event.locGrp;
        place.locName = event.locName;
    }
    return place;
}

void WorkstationWindow::setPaused(bool paused) {
    pause_->setChecked(paused);
    pause_->setText(paused ? tr("&Resume feed") : tr("&Pause feed"));
    pause_->setAccessibleName(paused ? tr("Resume feed") : tr("Pause feed"));
}

bool WorkstationWindow::chooseOperator(int id) {
    const int position = operators_->findData(id);
    operators_->setCurrentIndex(position >= 0 ? position : operators_->currentIndex());
    return position >= 0;
}

bool WorkstationWindow::choosePerson(int id) {
    for (int row = 0; row < model_.rowCount(); ++row) {
        if (model_.eventAt(row).id == id) {
            table_->selectRow(row);
            showRow(model_.index(row, 0));
            return true;
        }
    }
    return false;
}

void WorkstationWindow::refreshState() {
    QPixmap lamp(lamp_->size());
    lamp.fill(Qt::transparent);
    QPainter painter(&lamp);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(lampColour(link_.state()));
    painter.drawEllipse(lamp.rect().adjusted(1, 1, -1, -1));
    painter.end();
    lamp_->setPixmap(lamp);
    state_->setText(link_.stateText());
}

void WorkstationWindow::say(const QString& text) {
    message_->setText(text.section(QLatin1Char('\n'), 0, 0));
    message_->setToolTip(text.toHtmlEscaped());
}

int WorkstationWindow::operatorId() const {
    return operators_->currentData().toInt();
}

} // namespace kintar::demo
