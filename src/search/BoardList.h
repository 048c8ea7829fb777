// The board's list: the rows of a Board, kept steady while states change.
#pragma once

#include "search/Board.h"

#include <QAbstractTableModel>
#include <QIcon>
#include <QTreeView>
#include <array>
#include <cstddef>
#include <optional>

namespace kintar::search {

/// Rows are places: when the order changes, the places show other items. Column 0 is the name with
/// its icon, column 1 the sort text.
class BoardModel final : public QAbstractTableModel {
public:
    explicit BoardModel(const board::Board& board);

    [[nodiscard]] int rowCount(const QModelIndex& parent) const override;
    [[nodiscard]] int columnCount(const QModelIndex& parent) const override;
    [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;
    [[nodiscard]] QVariant headerData(int section, Qt::Orientation orientation,
                                      int role) const override;

    /// Other names: `change` is run between the notices of a reset.
    template <class Change>
    void reset(Change&& change) {
        // The list goes on where the change fails: with as many rows as there are then.
        struct Notices {
            BoardModel& model;
            explicit Notices(BoardModel& changing) : model(changing) { model.beginResetModel(); }
            ~Notices() { model.endResetModel(); }
            Notices(const Notices&) = delete;
            Notices& operator=(const Notices&) = delete;
        } notices(*this);
        change();
    }
    /// Other states or another order.
    void statesChanged();

private:
    const board::Board& board_;
    std::array<QIcon, 3> icons_;
};

/// `lvNames`: one item can be selected.
class BoardList final : public QTreeView {
public:
    BoardList(const board::Board& board, QWidget* parent);

    BoardModel& rows() { return rows_; }
    /// Runs a change of states and order. The selected item stays selected, and the item under the
    /// mouse stays there as far as the list can be scrolled; without one, or where no state was
    /// known before, the list stays scrolled as it is.
    template <class Change>
    void keepSteady(Change&& change) {
        const Steady before = steady();
        change();
        rows_.statesChanged();
        restore(before);
    }
    void selectNothing();

private:
    struct Steady {
        std::optional<std::size_t> selected;
        std::optional<std::size_t> hovered;
    };
    [[nodiscard]] Steady steady() const;
    void restore(const Steady& before);
    [[nodiscard]] std::optional<std::size_t> itemOf(const QModelIndex& index) const;

    const board::Board& board_;
    BoardModel rows_;
};

} // namespace kintar::search
