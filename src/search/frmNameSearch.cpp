#include "search/frmNameSearch.h"

#include "base/Twips.h"
#include "platform/Placement.h"
#include "platform/qt/PlainText.h"
#include "search/ItemKey.h"
#include "search/NameQuery.h"
#include "search/UdfPermission.h"
#include "server/IgnoringErrors.h"
#include "server/TextNumbers.h"

#include <QCloseEvent>
#include <QKeyEvent>
#include <QPointer>

#include <chrono>
#include <utility>

namespace kintar::search {
namespace {

constexpr std::string_view section = R"(Orvane\NameSearch)";
constexpr std::chrono::milliseconds topmostTime{100};
/// Twips: where the window stands, and how high it is, while no setting says otherwise.
constexpr platform::Placement firstPlacement{
    .left = 900, .top = 900, .width = 4300, .height = 9600};

} // namespace

frmNameSearch::frmNameSearch(NameSearchSurroundings& surroundings)
    : FormWindow("frmNameSearch"), surroundings_(surroundings), globals_(surroundings.globals),
      controls_(*this, surroundings.photos),
      fill_([this] { handle("PopulateListView", [this] { fillEnded(); }); }),
      prints_(surroundings, [this](const std::string& text) {
          controls_.setStatusLine(platform::oneLine(text));
      }) {
    setWindowTitle(QStringLiteral("Search Names"));
    controls_.lvList->setModel(&model_);
    connectControls();
    connectList();
}

frmNameSearch::~frmNameSearch() {
    fill_.stop();
    sort_.stop();
}

void frmNameSearch::connectControls() {
    const auto onClick = [this](QPushButton* button, const char* routine,
                                void (frmNameSearch::*handler)()) {
        connect(button, &QPushButton::clicked, this,
                [this, routine, handler] { handle(routine, [&] { (this->*handler)(); }); });
    };
    onClick(controls_.cmdSearch, "cmdSearch_Click", &frmNameSearch::cmdSearch_Click);
    onClick(controls_.cmdOK, "cmdOK_Click", &frmNameSearch::cmdOK_Click);
    onClick(controls_.cmdCancel, "cmdCancel_Click", &frmNameSearch::cmdCancel_Click);
    onClick(controls_.cmdInOut, "cmdInOut_Click", &frmNameSearch::cmdInOut_Click);
    onClick(controls_.cmdUDF, "cmdUDF_Click", &frmNameSearch::cmdUDF_Click);
    onClick(controls_.cmdStop, "cmdStop_Click", &frmNameSearch::cmdStop_Click);
    for (QPushButton* link : controls_.advancedSearch) {
        onClick(link, "Label_Click", &frmNameSearch::Label_Click);
    }
    for (QLineEdit* box : controls_.Text) {
        connect(box, &QLineEdit::returnPressed, controls_.cmdSearch, &QPushButton::click);
    }
    controls_.cmdInOut->setEnabled(false);
    controls_.Lead1->onShown([this] { controls_.fitPhotoArea(); });
}

void frmNameSearch::connectList() {
    connect(controls_.lvList, &NameListView::columnClicked, this, [this](int column) {
        handle("lvList_ColumnClick", [&] { lvList_ColumnClick(column); });
    });
    connect(controls_.lvList, &NameListView::itemClicked, this,
            [this](int row) { handle("lvList_ItemClick", [&] { lvList_ItemClick(row); }); });
    connect(controls_.lvList, &NameListView::enterPressed, controls_.cmdOK, [this] {
        if (controls_.cmdOK->isVisible()) {
            controls_.cmdOK->click();
        }
    });
    const auto open = [this](QTreeWidgetItem* item) {
        const int row = controls_.lvUdf->indexOfTopLevelItem(item);
        handle("lvUdf_DblClick", [&] { lvUdf_DblClick(row); });
    };
    connect(controls_.lvUdf, &QTreeWidget::itemDoubleClicked, this, open);
}

void frmNameSearch::handle(const char* routine, const std::function<void()>& handler) {
    const RoutineScope scope(*this);
    try {
        handler();
    } catch (const std::exception& error) {
        globals_.reportError(error, std::string("frmNameSearch/") + routine);
        controls_.setStatusLine(QStringLiteral("That failed: ") + platform::oneLine(error.what()));
    }
}

Database frmNameSearch::database() {
    return {globals_.tarnRec(), globals_.gCnn()};
}

std::vector<FormCaption> frmNameSearch::captions() {
    return {{textNumber::nameSearchOk, [this](const std::string& text) {
                 controls_.cmdOK->setText(platform::captionText(text));
                 controls_.cmdOK->setAccessibleName(platform::oneLine(text));
             }}};
}

void frmNameSearch::Load() {
    const auto step = [this](const std::function<void()>& work) {
        try {
            work();
        } catch (const std::exception& error) {
            globals_.reportError(error, "frmNameSearch/Form_Load");
        }
    };
    step([this] { globals_.tarnRec().PrepareForm(globals_.gCnn2(), *this); });
    globals_.nameSearch.windowLoaded();
    step([this] {
        platform::Placement placement = firstPlacement;
        placement.left =
            platform::settingTwips(surroundings_.settings, section, "Left", placement.left);
        placement.top =
            platform::settingTwips(surroundings_.settings, section, "Top", placement.top);
        place(placement);
    });
    step([this] { MakeColumns(); });
    controls_.Text[0]->setFocus();
}

void frmNameSearch::Unload() {
    fill_.stop();
    sort_.stop();
    prints_.giveUp();
    ignoringErrors([this] {
        const platform::Placement stands = placement();
        surroundings_.settings.save(section, "Left", std::to_string(stands.left));
        surroundings_.settings.save(section, "Top", std::to_string(stands.top));
    });
}

void frmNameSearch::MakeColumns() {
    clearList();
    model_.setColumns({});
    model_.setColumns(readListColumns(database()));
    controls_.setListColumnWidths(model_.columns());
    const auto text = [this](std::int16_t number) {
        return globals_.gSys ? globals_.gSys->GetText(number) : std::string();
    };
    controls_.setUdfColumns(udfColumns(text(textNumber::udfField), text(textNumber::udfValue)));
}

bool frmNameSearch::CanViewUDF() {
    canViewUdf_ = false;
    // What another operator was allowed to see is gone before this one sees the window.
    hideUdfs();
    try {
        canViewUdf_ = search::CanViewUDF(database(), oprId_, locGrp_);
    } catch (const std::exception& error) {
        globals_.reportError(error, "frmNameSearch/CanViewUDF");
    }
    return canViewUdf_;
}

void frmNameSearch::PrintStatusRpt() {
    ensureLoaded();
    prints_.request(PrintQueue::statusReport, 0);
}

void frmNameSearch::PrintWhoIsIn(std::int32_t loc) {
    ensureLoaded();
    prints_.request(PrintQueue::whoIsIn, loc);
}

void frmNameSearch::LocGrp(std::int32_t value) {
    if (isFilling()) {
        stopFill(QStringLiteral("The search was stopped. The list is empty."));
    }
    locGrp_ = value;
}

void frmNameSearch::OprID(std::int32_t value) {
    if (std::exchange(oprId_, value) != value) {
        ignoringErrors([&] {
            if (globals_.gSys) {
                globals_.gSys->SetOperator(value);
            }
        });
    }
}

void frmNameSearch::Hide() {
    ensureLoaded();
    hide();
}

void frmNameSearch::setCaption(const std::string& caption) {
    baseCaption_ = caption;
    setWindowTitle(platform::titleText(caption));
}

void frmNameSearch::applyMode() {
    const ModeLayout layout = modeLayout(mode_);
    controls_.applyMode(layout);
    resize(controls_.pixels(layout.width), height());
}

void frmNameSearch::bringForward(std::function<void()> then) {
    bringForwardWindow(*this, platform::noMove | platform::noSize, std::move(then));
}

void frmNameSearch::bringForwardWindow(QWidget& window, unsigned flags,
                                       std::function<void()> then) {
    platform::WindowRequests& requests = surroundings_.windows;
    requests.SetWindowPos(window.winId(), platform::InsertAfter::Topmost, flags);
    const QPointer<QWidget> place(&window);
    QTimer::singleShot(topmostTime, &window, [place, flags, &requests, then = std::move(then)] {
        const auto* form = dynamic_cast<FormWindow*>(place.data());
        if (form != nullptr && form->isUnloaded()) {
            return;
        }
        requests.SetWindowPos(place->winId(), platform::InsertAfter::Top, flags);
        if (then) {
            then();
        }
    });
}

void frmNameSearch::closeEvent(QCloseEvent* event) {
    event->ignore();
    controls_.cmdCancel->click();
}

void frmNameSearch::keyPressEvent(QKeyEvent* event) {
    auto* button = qobject_cast<QPushButton*>(focusWidget());
    QTreeWidgetItem* field = controls_.lvUdf->hasFocus() ? controls_.lvUdf->currentItem() : nullptr;
    const bool enter =
        (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) && !event->isAutoRepeat();
    if (event->key() == Qt::Key_Escape) {
        controls_.cmdCancel->click();
    } else if (enter && button != nullptr) {
        button->click();
    } else if (enter && field != nullptr) {
        Q_EMIT controls_.lvUdf->itemDoubleClicked(field, 0);
    } else {
        FormWindow::keyPressEvent(event);
    }
}

void frmNameSearch::changeEvent(QEvent* event) {
    FormWindow::changeEvent(event);
    if (event->type() == QEvent::FontChange) {
        controls_.resetPhotoArea();
        controls_.fitPhotoArea();
        controls_.setListColumnWidths(model_.columns());
        resize(controls_.pixels(modeLayout(mode_).width), height());
    }
}

void frmNameSearch::cmdOK_Click() {
    NameSearchResult& result = globals_.nameSearch;
    ignoringErrors([&] { result.storeName(model_.list().currentItem().text); });
    ignoringErrors([&] { result.storeId(idOfKey(model_.list().currentItem().key)); });
    closeDialog();
}

void frmNameSearch::cmdCancel_Click() {
    globals_.nameSearch.storeName({});
    globals_.nameSearch.storeId(0);
    if (isFilling()) {
        stopFill({});
    }
    closeDialog();
}

void frmNameSearch::closeDialog() {
    clearList();
    controls_.setStatusLine({});
    hide();
    globals_.nameSearch.dialogClosed();
}

void frmNameSearch::cmdInOut_Click() {
    if (!surroundings_.neighbours.showBoard) {
        controls_.setStatusLine(QStringLiteral("The In/Out window is not part of this program."));
        return;
    }
    surroundings_.neighbours.showBoard(locGrp_, sql_, canViewUdf_);
    hide();
    globals_.nameSearch.dialogClosed();
}

void frmNameSearch::Label_Click() {
    if (mode_ == guardTourMode) {
        return;
    }
    if (!surroundings_.neighbours.showCriteria) {
        controls_.setStatusLine(QStringLiteral("The advanced search is not part of this program."));
        return;
    }
    QWidget& criteria = surroundings_.neighbours.showCriteria(locGrp_, *this);
    bringForwardWindow(criteria, platform::noMove | platform::noSize | platform::noActivate, {});
}

} // namespace kintar::search
