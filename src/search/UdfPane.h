// The tab "Search UDFs": a grid of fields and the box that edits its values in place.
#pragma once

#include "search/CriteriaPane.h"
#include "search/SelectionCompanion.h"

#include <QKeyEvent>
#include <QTableWidget>
#include <vector>

namespace kintar::search {

/// Columns: the field's number, its name, the value to look for. The grid's heading counts as row 0
/// where rows are numbered, so that its first field stands in row 1.
class UdfPane : public CriteriaPane {
public:
    explicit UdfPane(QWidget* parent);

    /// Replaces the rows: at least the designed 21, more where there are more fields. Without any
    /// field the grid and the editor are disabled.
    void fill(const std::vector<selection::UdfName>& names);

    /// Stores a pending edit into its cell and empties the editor.
    void leaveCell();
    /// The values as the cells hold them; a pending edit is not among them.
    void read(selection::SelectionCriteria& criteria) const;
    /// Places the editor over the current cell's value and gives it the focus.
    void enterGrid();

    bool eventFilter(QObject* watched, QEvent* event) override;

protected:
    void resizeEvent(QResizeEvent* event) override;
    void hideEvent(QHideEvent* event) override;

private:
    void connectGrid();
    void fillRow(int row, const selection::UdfName* field);
    void setWidths();
    [[nodiscard]] bool canEditCurrent() const;
    void placeEditor();
    void moveEditorOverCell();
    void putEditorAway();
    bool editorEvent(const QEvent& event);
    bool gridEvent(QEvent& event);
    /// Moves the grid by a key that the editor leaves to it; false where it is another key.
    bool moveGridBy(const QKeyEvent& key);
    void sendToGrid(int key);

    QTableWidget* grdUdf_;
    QLineEdit* mskUDFEdit_;
    int editedRow_ = -1;  ///< the row whose value the editor holds, or -1
    bool moving_ = false; ///< the grid has the focus only to be moved
};

} // namespace kintar::search
