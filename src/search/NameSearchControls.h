// The controls of the name search and where they stand.
#pragma once

#include "platform/qt/PhotoBox.h"
#include "search/ListColumns.h"
#include "search/ModeLayout.h"
#include "search/NameListView.h"

#include <QLabel>
#include <QLineEdit>
#include <QProgressBar>
#include <QPushButton>
#include <QTreeWidget>

#include <array>
#include <string>
#include <vector>

class QGridLayout;

namespace kintar::search {

/// Makes the controls, names them and lays them out; knows nothing of what they do. All belong to
/// `form`, which must outlive this.
class NameSearchControls {
public:
    NameSearchControls(QWidget& form, platform::PhotoLoader& photos);

    std::array<QLineEdit*, 2> Text{}; ///< 0 last name, 1 first name
    QPushButton* cmdSearch = nullptr;
    /// Members 0 and 2 of `Label`: they are clicked, so they are buttons that look like links.
    std::array<QPushButton*, 2> advancedSearch{};
    NameListView* lvList = nullptr;
    QLabel* lblCount = nullptr; ///< the status line
    QProgressBar* busySign = nullptr;
    QPushButton* cmdStop = nullptr;
    platform::PhotoBox* Lead1 = nullptr;
    QLabel* status = nullptr;  ///< `Label_1`
    QLabel* lastUse = nullptr; ///< `Label_3`
    QLabel* visitorMark = nullptr;
    QPushButton* cmdUDF = nullptr;
    QTreeWidget* lvUdf = nullptr;
    QPushButton* cmdOK = nullptr;
    QPushButton* cmdInOut = nullptr;
    QPushButton* cmdCancel = nullptr;

    /// Twips as pixels, grown with the font: a large font widens windows and columns alike.
    [[nodiscard]] int pixels(int twips) const;
    /// Shows the buttons of a mode and puts Cancel where it belongs.
    void applyMode(const ModeLayout& layout);
    void showBusy(bool busy);
    void setListColumnWidths(const std::vector<ListColumn>& columns);
    void setUdfColumns(const std::vector<ListColumn>& columns);
    /// The photo's area at its full size, and cut to the proportions of the photo that it shows.
    void resetPhotoArea();
    void fitPhotoArea();
    /// Plain text; an empty one leaves the line's height as it is.
    void setStatusLine(const QString& text);

private:
    void makeSearchRow(QGridLayout& grid);
    QWidget* makeList();
    QWidget* makeStatusRow();
    QWidget* makeDetail(platform::PhotoLoader& photos);
    void makeUdfList();
    QWidget* makeButtons();
    void setTabOrder();
    QPushButton* makeLink(const char* name);
    QPushButton* makeButton(const char* name, const QString& caption);
    QLabel* makeCaption(const char* name, const QString& caption);

    QWidget& form_;
    QWidget* photoArea_ = nullptr;
    QGridLayout* buttons_ = nullptr;
};

} // namespace kintar::search
