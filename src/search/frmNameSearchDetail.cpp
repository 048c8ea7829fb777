// The detail half of the name search window: photo, card status, user-defined fields.
#include "base/Number.h"
#include "platform/Platform.h"
#include "platform/qt/PlainText.h"
#include "search/CardStatus.h"
#include "search/ItemKey.h"
#include "search/PhotoChoice.h"
#include "search/WebAddress.h"
#include "search/frmNameSearch.h"
#include "server/IgnoringErrors.h"

namespace kintar::search {

void frmNameSearch::ShowPhoto() {
    if (leadingLong(photoTag_) == 0) {
        std::string fileName;
        ignoringErrors([&] {
            const std::int32_t id = idOfKey(model_.list().currentItem().key);
            fileName = choosePhoto(database(), id, imageType_, locGrp_);
        });
        controls_.resetPhotoArea();
        if (fileName.empty() || !globals_.gSys) {
            controls_.Lead1->showNoImage();
        } else {
            controls_.Lead1->load(platform::rulePath(globals_.gSys->DataPath(), R"(\Images)"),
                                  fileName);
        }
        photoTag_ = "1";
    }
    ShowCardStatus();
}

void frmNameSearch::ShowCardStatus() {
    CardStatus shown;
    if (model_.list().hasCurrent()) {
        ignoringErrors([&] {
            const NameList::Item item = model_.list().currentItem();
            shown = readCardStatus(database(), item.tag, idOfKey(item.key), surroundings_.formats);
        });
    }
    controls_.status->setText(platform::oneLine(shown.status));
    controls_.lastUse->setText(platform::oneLine(shown.lastUse));
    // The status of a visitor's card takes the label; a visitor is to be seen all the same.
    controls_.visitorMark->setVisible(shown.visitor && shown.status != visitorStatus);
    if (controls_.lvUdf->isVisibleTo(this)) {
        ignoringErrors([this] { fillUdfList(); });
    }
}

void frmNameSearch::clearDetail() {
    photoTag_ = "0";
    controls_.resetPhotoArea();
    controls_.Lead1->clear();
    controls_.status->clear();
    controls_.lastUse->clear();
    controls_.visitorMark->hide();
    hideUdfs();
}

void frmNameSearch::hideUdfs() {
    controls_.lvUdf->hide();
    controls_.lvUdf->clear();
    udfRows_.clear();
}

void frmNameSearch::cmdUDF_Click() {
    if (controls_.lvUdf->isVisibleTo(this)) {
        controls_.lvUdf->hide();
        return;
    }
    if (!model_.list().hasCurrent()) {
        controls_.setStatusLine(QStringLiteral("No name is selected."));
        return;
    }
    fillUdfList();
    controls_.lvUdf->show();
}

void frmNameSearch::fillUdfList() {
    controls_.lvUdf->clear();
    udfRows_.clear();
    const std::int32_t id = idOfKey(model_.list().currentItem().key);
    udfRows_ = readUdfRows(database(), locGrp_, id, canViewUdf_);
    for (const UdfRow& row : udfRows_) {
        auto* item = new QTreeWidgetItem(controls_.lvUdf);
        item->setText(0, platform::oneLine(row.name));
        item->setText(1, platform::oneLine(row.value));
        item->setToolTip(0, platform::tooltipText(row.name));
        item->setToolTip(1, platform::tooltipText(row.value));
    }
}

void frmNameSearch::lvUdf_DblClick(int row) {
    const WebAddress decided = webAddress(udfRows_.at(static_cast<std::size_t>(row)).value);
    switch (decided.kind) {
    case WebAddress::Kind::None:
        break;
    case WebAddress::Kind::Refused:
        controls_.setStatusLine(QStringLiteral("Only web addresses can be opened."));
        break;
    case WebAddress::Kind::Open:
        if (!surroundings_.browser.open(decided.address)) {
            controls_.setStatusLine(QStringLiteral("The web browser could not be started."));
        }
        break;
    }
}

} // namespace kintar::search
