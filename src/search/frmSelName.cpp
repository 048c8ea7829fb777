#include "search/frmSelName.h"

#include "base/RunTimeError.h"
#include "platform/qt/Controls.h"
#include "platform/qt/PlainText.h"
#include "server/TextNumbers.h"

#include <QApplication>
#include <QEvent>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <array>

namespace kintar::search {
namespace {

constexpr int skillsTab = 3;
constexpr std::array<std::int16_t, 4> tabTexts = {textNumber::searchNames, textNumber::searchUdfs,
                                                  textNumber::searchCards,
                                                  textNumber::searchSkills};
constexpr std::array<const char*, 4> tabCaptions = {"Search Names", "Search UDFs", "Search Cards",
                                                    "Search Skills"};

} // namespace

frmSelName::frmSelName(modGlobals& globals, const platform::Clock& clock,
                       const LocaleFormats& formats)
    : FormWindow("frmSelName"), globals_(globals), clock_(clock), rows_(new QVBoxLayout(this)),
      panes_(new QStackedLayout), Tab1_(new QTabBar(this)), names_(new NamesPane(this)),
      udf_(new UdfPane(this)), cards_(new CardsPane(formats, this)), skills_(new SkillsPane(this)),
      lblStatus_(new QLabel(this)), cmdOK_(new QPushButton(QStringLiteral("&OK"), this)),
      cmdCancel_(new QPushButton(QStringLiteral("&Cancel"), this)) {
    setWindowTitle(QStringLiteral("Select Name List Criteria"));
    addPanes();
    addButtons();
}

void frmSelName::addPanes() {
    platform::nameControl(*Tab1_, "Tab1", "tab strip", QStringLiteral("Criteria"));
    Tab1_->setExpanding(false);
    for (int tab = 0; tab < skillsTab; ++tab) {
        Tab1_->addTab(QString::fromLatin1(tabCaptions.at(static_cast<std::size_t>(tab))));
    }
    rows_->addWidget(Tab1_);
    // One on the other, so that the dialog has one size for all tabs.
    for (CriteriaPane* pane : std::array<CriteriaPane*, 4>{names_, udf_, cards_, skills_}) {
        pane->setFrameShape(QFrame::StyledPanel);
        panes_->addWidget(pane);
    }
    rows_->addLayout(panes_, 1);
    connect(Tab1_, &QTabBar::currentChanged, this, &frmSelName::Tab1_Click);
}

void frmSelName::addButtons() {
    platform::nameControl(*lblStatus_, "lblStatus", "label", QString());
    platform::makePlain(*lblStatus_);
    lblStatus_->setWordWrap(true);
    lblStatus_->hide();
    rows_->addWidget(lblStatus_);
    platform::nameControl(*cmdOK_, "cmdOK", "button", QStringLiteral("OK"));
    platform::nameControl(*cmdCancel_, "cmdCancel", "button", QStringLiteral("Cancel"));
    auto* line = new QHBoxLayout;
    line->addStretch();
    line->addWidget(cmdOK_);
    line->addWidget(cmdCancel_);
    rows_->addLayout(line);
    connect(cmdOK_, &QPushButton::clicked, this, &frmSelName::cmdOK_Click);
    connect(cmdCancel_, &QPushButton::clicked, this, &QWidget::close);
}

void frmSelName::Show() {
    const RoutineScope routine(*this);
    ensureLoaded();
    if (loadedFor_ != locGrp_) {
        loadContents();
    }
    FormWindow::Show();
}

void frmSelName::Load() {
    globals_.tarnRec().PrepareForm(globals_.gCnn2(), *this);
    loadTexts();
    loadContents();
}

void frmSelName::loadTexts() {
    if (!globals_.gSys) {
        return;
    }
    if (const std::string text = globals_.gSys->GetText(textNumber::criteria); !text.empty()) {
        setWindowTitle(platform::titleText(text));
    }
    for (int tab = 0; tab < Tab1_->count(); ++tab) {
        const std::string text = globals_.gSys->GetText(tabTexts.at(static_cast<std::size_t>(tab)));
        if (!text.empty()) {
            Tab1_->setTabText(tab, platform::captionText(text));
        }
    }
}

void frmSelName::loadContents() {
    loadedFor_.reset();
    LoadLists();
    LoadSkills();
    loadedFor_ = locGrp_;
    Tab1_Click(Tab1_->currentIndex());
}

void frmSelName::LoadLists() {
    selection::fillCompanies(globals_, locGrp_, names_->companies());
    udf_->fill(selection::readUdfNames(globals_, locGrp_));
}

void frmSelName::LoadSkills() {
    const std::vector<selection::Skill> skills = selection::readSkills(globals_, locGrp_);
    if (skills.empty() && Tab1_->count() > skillsTab) {
        Tab1_->removeTab(skillsTab);
    } else if (!skills.empty() && Tab1_->count() <= skillsTab) {
        Tab1_->addTab(QString::fromLatin1(tabCaptions[skillsTab]));
        loadTexts();
    }
    skills_->fill(skills);
}

void frmSelName::Tab1_Click(int tab) {
    panes_->setCurrentIndex(tab);
    switch (tab) {
    case 0:
        names_->focusFirst();
        break;
    case 1:
        udf_->enterGrid();
        break;
    case 2:
        cards_->focusFirst();
        break;
    default:
        skills_->focusFirst();
    }
}

selection::SelectionCriteria frmSelName::criteria() const {
    selection::SelectionCriteria all;
    all.LocGrp = locGrp_;
    names_->read(all);
    udf_->read(all);
    cards_->read(all);
    skills_->read(all);
    return all;
}

void frmSelName::cmdOK_Click() {
    const RoutineScope routine(*this);
    Tab1_->setCurrentIndex(0);
    udf_->leaveCell();
    try {
        findNames();
    } catch (const std::exception& error) {
        // The controls still hold the input: what the builders clear, they clear in a copy.
        globals_.reportError(error, "frmSelName/cmdOK_Click");
        lblStatus_->setText(QStringLiteral("The names could not be listed: ") +
                            platform::oneLine(error.what()));
        lblStatus_->setAccessibleName(lblStatus_->text());
        lblStatus_->show();
        return;
    }
    if (!isUnloaded()) {
        close();
    }
}

void frmSelName::findNames() {
    selection::SelectionCompanion companion(globals_);
    selection::SelectionQuery query(criteria(), clock_.now(), companion);
    query.BuildSql();
    if (!calledFrom_) {
        throw RunTimeError::objectNotSet();
    }
    calledFrom_->PopulateListView(query.NameSql);
}

bool frmSelName::ownPopupIsOpen() const {
    const QWidget* popup = QApplication::activePopupWidget();
    return popup && popup->parentWidget() && popup->parentWidget()->window() == this;
}

bool frmSelName::event(QEvent* event) {
    if (event->type() == QEvent::WindowDeactivate) {
        leftForOwnPopup_ = ownPopupIsOpen();
    } else if (event->type() == QEvent::WindowActivate) {
        // A calendar that opens and closes may take the activation and give it back; the date
        // chosen there has to stay.
        if (!leftForOwnPopup_ && !ownPopupIsOpen()) {
            cards_->setDates(clock_.now());
        }
        leftForOwnPopup_ = false;
    }
    return FormWindow::event(event);
}

void frmSelName::keyPressEvent(QKeyEvent* event) {
    auto* button = qobject_cast<QPushButton*>(focusWidget());
    const bool enter = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    if (event->key() == Qt::Key_Escape) {
        cmdCancel_->click();
    } else if (enter && button != nullptr && !event->isAutoRepeat()) {
        button->click();
    } else {
        FormWindow::keyPressEvent(event);
    }
}

} // namespace kintar::search
