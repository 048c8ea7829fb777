#include "search/frmInOut.h"

#include "platform/Placement.h"
#include "platform/qt/Controls.h"
#include "platform/qt/PlainText.h"

#include <QCoreApplication>
#include <QEvent>
#include <QVBoxLayout>

namespace kintar::search {
namespace {

constexpr QEvent::Type refreshEndedEvent = QEvent::User;
constexpr int refreshMilliseconds = 60000;
/// How long opening the board waits for the first states, so that a short list comes complete.
constexpr std::chrono::milliseconds firstWait{50};
constexpr std::string_view placementSection = "Orvane\\InOut";
constexpr const char* designCaption = "In / Out Status";
constexpr platform::Placement defaultPlacement{0, 0, 9600, 7000};

QString count(std::size_t number) {
    return QString::number(static_cast<qulonglong>(number));
}

} // namespace

frmInOut::frmInOut(modGlobals& globals, platform::SettingsStore& settings,
                   const LocaleFormats& formats)
    : FormWindow("frmInOut"), globals_(globals), settings_(settings), formats_(formats),
      states_(globals), lvNames_(new BoardList(board_, this)), Text_(new QPlainTextEdit(this)),
      lblHeadCount_(new QLabel(this)), lblStatus_(new QLabel(this)) {
    setWindowTitle(QString::fromLatin1(designCaption));
    build();
    Timer1_.setInterval(refreshMilliseconds);
    connect(&Timer1_, &QTimer::timeout, this, &frmInOut::Timer1_Timer);
    connect(lvNames_, &QTreeView::clicked, this, &frmInOut::lvNames_ItemClick);
    connect(lvNames_, &QTreeView::activated, this, &frmInOut::lvNames_ItemClick);
}

void frmInOut::build() {
    platform::nameControl(Timer1_, "Timer1", "timer");
    platform::nameControl(*Text_, "Text", "text box", QStringLiteral("User-defined fields"));
    Text_->setReadOnly(true);
    Text_->setTabChangesFocus(true);
    Text_->hide();
    platform::nameControl(*lblHeadCount_, "lblHeadCount", "label", QString());
    platform::makePlain(*lblHeadCount_);
    QFont large = lblHeadCount_->font();
    large.setPointSizeF(large.pointSizeF() * 1.4);
    large.setBold(true);
    lblHeadCount_->setFont(large);
    platform::nameControl(*lblStatus_, "lblStatus", "label", QString());
    platform::makePlain(*lblStatus_);
    lblStatus_->setWordWrap(true);
    lblStatus_->hide();
    auto* rows = new QVBoxLayout(this);
    rows->addWidget(lblHeadCount_);
    rows->addWidget(lvNames_, 3);
    rows->addWidget(Text_, 1);
    rows->addWidget(lblStatus_);
}

void frmInOut::Load() {
    ignoringErrors([this] { globals_.tarnRec().PrepareForm(globals_.gCnn2(), *this); });
    place(platform::readPlacement(settings_, placementSection, defaultPlacement));
}

void frmInOut::Unload() {
    Timer1_.stop();
    refresh_.reset();
    try {
        platform::savePlacement(settings_, placementSection, placement());
    } catch (const std::exception& error) {
        globals_.reportError(error, "frmInOut/Form_Unload");
    }
}

void frmInOut::LoadList(bool showUdfs) {
    const RoutineScope routine(*this);
    ensureLoaded();
    showUdfs_ = showUdfs;
    Text_->setVisible(showUdfs);
    setWindowTitle(QString::fromLatin1(designCaption));
    refresh_.reset();
    listProblem_.clear();
    clickProblem_.clear();
    try {
        tables_.load(globals_.tarnRec(), globals_.gCnn(), locGrp_);
    } catch (const std::exception& error) {
        report(error, "frmInOut/LoadList", listProblem_,
               QStringLiteral("Devices and fields cannot be read"));
    }
    FillList();
}

void frmInOut::FillList() {
    lvNames_->rows().reset([this] {
        board_.clear();
        try {
            Recordset names = globals_.tarnRec().OpenRecordset(sql_, globals_.gCnn());
            board::fillBoard(board_, names);
        } catch (const std::exception& error) {
            report(error, "frmInOut/FillList", listProblem_,
                   QStringLiteral("Not all names can be listed"));
        }
    });
    RefreshStates();
    if (refresh_->waitFor(firstWait)) {
        refreshEnded();
    }
    lvNames_->selectNothing();
    Text_->clear();
}

void frmInOut::Timer1_Timer() {
    Timer1_.stop();
    // A click restarts the timer, also while a long refresh is under way; that one goes on, and the
    // timer starts again when it has ended.
    if (!refresh_) {
        RefreshStates();
    }
}

void frmInOut::RefreshStates() {
    Timer1_.stop();
    showHeadCount();
    refresh_ = std::make_unique<board::BoardRefresh>(board_, states_, [this] {
        // On whatever thread: an event is the one way back to the windows' own.
        QCoreApplication::postEvent(this, new QEvent(refreshEndedEvent));
    });
}

bool frmInOut::event(QEvent* event) {
    if (event->type() == refreshEndedEvent) {
        refreshEnded();
        return true;
    }
    return FormWindow::event(event);
}

void frmInOut::refreshEnded() {
    if (!refresh_ || !refresh_->waitFor(std::chrono::milliseconds(0))) {
        return;
    }
    const RoutineScope routine(*this);
    try {
        lvNames_->keepSteady([this] { refresh_->show(board_); });
        stateProblem_.clear();
    } catch (const std::exception& error) {
        report(error, "frmInOut/RefreshStates", stateProblem_,
               QStringLiteral("The states could not be read; those shown may be old"));
    }
    refresh_.reset();
    showProblems();
    showHeadCount();
    Timer1_.start();
}

void frmInOut::lvNames_ItemClick(const QModelIndex& index) {
    const RoutineScope routine(*this);
    Timer1_.start();
    Text_->clear();
    clickProblem_.clear();
    const std::size_t item = board_.itemAt(static_cast<std::size_t>(index.row()));
    try {
        const board::HolderState state = ReadState(item);
        showCaption(state, board_.item(item).name);
        if (showUdfs_) {
            ShowUdfs(board_.item(item).id);
        }
    } catch (const std::exception& error) {
        report(error, "frmInOut/lvNames_ItemClick", clickProblem_,
               QStringLiteral("The last use cannot be read"));
    }
    showProblems();
}

board::HolderState frmInOut::ReadState(std::size_t item) {
    board::HolderState state = board::stateOf(
        board::readLastUse(globals_.tarnRec(), globals_.gCnn(), board_.item(item).id, formats_));
    // The row keeps its place until the next refresh: it was clicked this very moment.
    board_.setIcon(item, state.icon);
    if (refresh_) {
        refresh_->keep(item);
    }
    lvNames_->rows().statesChanged();
    showHeadCount();
    return state;
}

void frmInOut::showCaption(const board::HolderState& state, const std::string& name) {
    std::string caption = name;
    if (state.lastLoc != 0) {
        ignoringErrors([&] {
            if (const auto device = tables_.deviceName(globals_.tarnRec(), state)) {
                caption = board::lastUseCaption(state, *device);
            }
        });
    }
    setWindowTitle(platform::titleText(caption));
}

void frmInOut::ShowUdfs(std::int32_t id) {
    const std::string lines = tables_.ShowUdfs(globals_.tarnRec(), globals_.gCnn(), id);
    Text_->setPlainText(QString::fromStdString(lines));
}

void frmInOut::showHeadCount() {
    const board::HeadCount heads = board_.headCount();
    const bool known = heads.in + heads.out == board_.size();
    lblHeadCount_->setText(
        known ? QStringLiteral("In: %1      Out: %2").arg(count(heads.in), count(heads.out))
              : QStringLiteral("In: …      Out: …"));
    lblHeadCount_->setAccessibleName(lblHeadCount_->text());
}

void frmInOut::report(const std::exception& error, const char* routine, QString& problem,
                      const QString& what) {
    globals_.reportError(error, routine);
    problem = what + QStringLiteral(": ") + platform::oneLine(error.what());
}

void frmInOut::showProblems() {
    QStringList problems{listProblem_, stateProblem_, clickProblem_};
    problems.removeAll(QString());
    const QString text = problems.join(QLatin1Char('\n'));
    lblStatus_->setText(text);
    lblStatus_->setAccessibleName(text);
    lblStatus_->setVisible(!text.isEmpty());
}

} // namespace kintar::search
