#include "search/NameSearchControls.h"

#include "base/Number.h"
#include "base/Twips.h"
#include "platform/qt/Controls.h"
#include "platform/qt/PlainText.h"

#include <QFontInfo>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QVBoxLayout>

#include <algorithm>

namespace kintar::search {
namespace {

using platform::makePlain;
using platform::nameControl;

/// Twips.
constexpr int photoWidth = 2355;
constexpr int photoHeight = 1730;
/// Up to this size, in pixels, a font fits into windows of the sizes that the rules give.
constexpr int designFontPixels = 15;

constexpr int longestSearchText = 1 << 20;

/// The row of OK among the buttons.
constexpr int okRow = 0;
/// The row that Cancel takes where there is no OK, kept as text on the button.
constexpr const char* alternativeRow = "alternativeRow";

void removeFrom(QGridLayout& grid, QWidget& widget) {
    grid.removeWidget(&widget);
}

} // namespace

NameSearchControls::NameSearchControls(QWidget& form, platform::PhotoLoader& photos) : form_(form) {
    auto* layout = new QVBoxLayout(&form_);
    layout->setContentsMargins(6, 6, 6, 6);
    layout->setSpacing(4);
    auto* search = new QGridLayout;
    search->setSpacing(4);
    makeSearchRow(*search);
    layout->addLayout(search);
    layout->addWidget(makeList(), 1);
    layout->addWidget(makeStatusRow());
    layout->addWidget(makeDetail(photos));
    makeUdfList();
    layout->addWidget(lvUdf, 1);
    layout->addWidget(makeButtons());
    setTabOrder();
}

int NameSearchControls::pixels(int twips) const {
    const int font = std::max(QFontInfo(form_.font()).pixelSize(), designFontPixels);
    return pixelsFromTwips(twips) * font / designFontPixels;
}

void NameSearchControls::makeSearchRow(QGridLayout& grid) {
    const std::array<QLabel*, 2> captions{
        makeCaption("Label_4", QStringLiteral("Last Name Is Like:")),
        makeCaption("Label_5", QStringLiteral("First Name Is Like:"))};
    const std::array<const char*, 2> names{"Text_0", "Text_1"};
    for (std::size_t i = 0; i < Text.size(); ++i) {
        Text.at(i) = new QLineEdit(&form_);
        Text.at(i)->setMaxLength(longestSearchText);
        captions.at(i)->setBuddy(Text.at(i));
        nameControl(*Text.at(i), names.at(i), "text box", captions.at(i)->text());
        grid.addWidget(captions.at(i), static_cast<int>(i), 0);
        grid.addWidget(Text.at(i), static_cast<int>(i), 1);
    }
    cmdSearch = makeButton("cmdSearch", QStringLiteral("Search"));
    advancedSearch[0] = makeLink("Label_0");
    auto* row = new QHBoxLayout;
    row->addWidget(cmdSearch);
    row->addStretch();
    row->addWidget(advancedSearch[0]);
    grid.addLayout(row, 2, 0, 1, 2);
    grid.setColumnStretch(1, 1);
}

QWidget* NameSearchControls::makeList() {
    lvList = new NameListView(&form_);
    nameControl(*lvList, "lvList", "list view", QStringLiteral("Names found"));
    // Hidden while it is filled, it keeps its place: nothing jumps.
    QSizePolicy policy = lvList->sizePolicy();
    policy.setRetainSizeWhenHidden(true);
    lvList->setSizePolicy(policy);
    lvList->setMinimumHeight(pixels(1500));
    return lvList;
}

QWidget* NameSearchControls::makeStatusRow() {
    auto* row = new QWidget(&form_);
    auto* layout = new QGridLayout(row);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(4);
    lblCount = makeCaption("lblCount", {});
    lblCount->setWordWrap(true);
    nameControl(*lblCount, "lblCount", "label", {});
    busySign = new QProgressBar(row);
    busySign->setRange(0, 0);
    busySign->setTextVisible(false);
    nameControl(*busySign, "busySign", "progress bar", QStringLiteral("Searching"));
    cmdStop = makeButton("cmdStop", QStringLiteral("Stop"));
    advancedSearch[1] = makeLink("Label_2");
    layout->addWidget(lblCount, 0, 0);
    layout->addWidget(advancedSearch[1], 0, 1, Qt::AlignRight | Qt::AlignTop);
    layout->addWidget(busySign, 1, 0);
    layout->addWidget(cmdStop, 1, 1, Qt::AlignRight);
    layout->setColumnStretch(0, 1);
    showBusy(false);
    return row;
}

QWidget* NameSearchControls::makeDetail(platform::PhotoLoader& photos) {
    auto* detail = new QWidget(&form_);
    auto* layout = new QGridLayout(detail);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setHorizontalSpacing(6);
    layout->setVerticalSpacing(2);
    photoArea_ = new QWidget(detail);
    Lead1 = new platform::PhotoBox(photos, photoArea_);
    nameControl(*Lead1, "Lead1", "image", QStringLiteral("Photo"));
    resetPhotoArea();
    status = makeCaption("Label_1", QStringLiteral("Status Indicator"));
    QLabel* lastUseCaption = makeCaption("Label_6", QStringLiteral("Last Use:"));
    lastUse = makeCaption("Label_3", {});
    visitorMark = makeCaption("visitorMark", QStringLiteral("Visitor"));
    visitorMark->setAlignment(Qt::AlignCenter);
    visitorMark->setAutoFillBackground(true);
    visitorMark->setBackgroundRole(QPalette::Highlight);
    visitorMark->setForegroundRole(QPalette::HighlightedText);
    visitorMark->setVisible(false);
    status->setWordWrap(true);
    lastUse->setWordWrap(true);
    lastUse->setAlignment(Qt::AlignLeft | Qt::AlignTop);
    cmdUDF = makeButton("cmdUDF", QStringLiteral("UDF's"));
    layout->addWidget(photoArea_, 0, 0, 5, 1, Qt::AlignTop);
    layout->addWidget(visitorMark, 0, 1);
    layout->addWidget(status, 1, 1);
    layout->addWidget(lastUseCaption, 2, 1);
    layout->addWidget(lastUse, 3, 1);
    layout->addWidget(cmdUDF, 4, 1, Qt::AlignLeft | Qt::AlignBottom);
    layout->setRowStretch(3, 1);
    layout->setColumnStretch(1, 1);
    return detail;
}

void NameSearchControls::makeUdfList() {
    lvUdf = new QTreeWidget(&form_);
    lvUdf->setRootIsDecorated(false);
    lvUdf->setUniformRowHeights(true);
    lvUdf->setAllColumnsShowFocus(true);
    lvUdf->setMinimumHeight(pixels(1500));
    lvUdf->setVisible(false);
    nameControl(*lvUdf, "lvUdf", "list view", QStringLiteral("User-defined fields"));
}

QWidget* NameSearchControls::makeButtons() {
    auto* row = new QWidget(&form_);
    buttons_ = new QGridLayout(row);
    buttons_->setContentsMargins(0, 0, 0, 0);
    buttons_->setSpacing(4);
    cmdOK = makeButton("cmdOK", QStringLiteral("OK"));
    cmdInOut = makeButton("cmdInOut", QStringLiteral("In/Out"));
    cmdCancel = makeButton("cmdCancel", QStringLiteral("Cancel"));
    cmdCancel->setProperty(alternativeRow, QStringLiteral("1"));
    buttons_->addWidget(cmdOK, okRow, 0);
    buttons_->addWidget(cmdInOut, 1, 0);
    buttons_->addWidget(cmdCancel, okRow, 1);
    return row;
}

void NameSearchControls::setTabOrder() {
    const std::array<QWidget*, 12> order{
        Text[0], Text[1], cmdSearch, advancedSearch[0], lvList,   advancedSearch[1], cmdStop,
        cmdUDF,  lvUdf,   cmdOK,     cmdInOut,          cmdCancel};
    for (std::size_t i = 0; i + 1 < order.size(); ++i) {
        QWidget::setTabOrder(order.at(i), order.at(i + 1));
    }
}

QPushButton* NameSearchControls::makeLink(const char* name) {
    auto* link = makeButton(name, QStringLiteral("Click For Advanced Search"));
    link->setFlat(true);
    link->setCursor(Qt::PointingHandCursor);
    QPalette colours = link->palette();
    colours.setColor(QPalette::Active, QPalette::ButtonText, colours.color(QPalette::Link));
    colours.setColor(QPalette::Inactive, QPalette::ButtonText, colours.color(QPalette::Link));
    link->setPalette(colours);
    nameControl(*link, name, "label", link->text());
    return link;
}

QPushButton* NameSearchControls::makeButton(const char* name, const QString& caption) {
    auto* button = new QPushButton(caption, &form_);
    nameControl(*button, name, "button", caption);
    return button;
}

QLabel* NameSearchControls::makeCaption(const char* name, const QString& caption) {
    auto* label = new QLabel(&form_);
    makePlain(*label);
    label->setText(caption);
    // What a label shows is what a screen reader says: it needs no name of its own.
    nameControl(*label, name, "label", {});
    return label;
}

void NameSearchControls::applyMode(const ModeLayout& layout) {
    cmdOK->setVisible(layout.picking);
    cmdInOut->setVisible(!layout.picking);
    const int row = layout.cancelBesideOk
                        ? okRow
                        : leadingLong(cmdCancel->property(alternativeRow).toString().toStdString());
    removeFrom(*buttons_, *cmdCancel);
    buttons_->addWidget(cmdCancel, row, 1);
    for (QPushButton* link : advancedSearch) {
        link->setEnabled(layout.advancedSearch);
    }
}

void NameSearchControls::showBusy(bool busy) {
    busySign->setVisible(busy);
    cmdStop->setVisible(busy);
}

void NameSearchControls::setListColumnWidths(const std::vector<ListColumn>& columns) {
    for (std::size_t i = 0; i < columns.size(); ++i) {
        lvList->setColumnWidth(static_cast<int>(i), pixels(columns[i].width));
    }
}

void NameSearchControls::setUdfColumns(const std::vector<ListColumn>& columns) {
    QStringList captions;
    for (const ListColumn& column : columns) {
        captions << platform::oneLine(column.caption);
    }
    lvUdf->setColumnCount(static_cast<int>(columns.size()));
    lvUdf->setHeaderLabels(captions);
    lvUdf->header()->setStretchLastSection(false);
    for (std::size_t i = 0; i < columns.size(); ++i) {
        lvUdf->setColumnWidth(static_cast<int>(i), pixels(columns[i].width));
    }
}

void NameSearchControls::resetPhotoArea() {
    const QSize area(pixels(photoWidth), pixels(photoHeight));
    photoArea_->setFixedSize(area);
    Lead1->setGeometry(QRect(QPoint(0, 0), area));
}

void NameSearchControls::fitPhotoArea() {
    if (!Lead1->photo().isNull()) {
        Lead1->resize(Lead1->photo().size().scaled(photoArea_->size(), Qt::KeepAspectRatio));
    }
}

void NameSearchControls::setStatusLine(const QString& text) {
    lblCount->setText(text);
}

} // namespace kintar::search
