// The workstation: a running feed of card events, and the photo of whoever is chosen.
#pragma once

#include "demo/ActionsBar.h"
#include "demo/CardEvent.h"
#include "demo/EventModel.h"
#include "demo/Feed.h"
#include "demo/NameFinder.h"
#include "demo/ServerLink.h"

#include <QTimer>
#include <QWidget>

class QComboBox;
class QLabel;
class QPushButton;
class QTableView;
class QVBoxLayout;

namespace kintar::demo {

class WorkstationWindow : public QWidget {
    Q_OBJECT

public:
    WorkstationWindow(Feed& feed, ServerLink& link, NameFinder& finder, QWidget* parent = nullptr);

    /// Every event happens at this moment instead of now.
    void setFixedMoment(const QDateTime& moment) { fixedMoment_ = moment; }
    void setPaused(bool paused);
    /// False where the site has no such operator.
    bool chooseOperator(int id);
    /// Shows the latest event of this person again; false where the table has none.
    bool choosePerson(int id);
    /// Adds the event to the table and shows its photo.
    void play(CardEvent event);
    /// Puts further buttons below the events; they say what they have to say in the window's line.
    void addActions(ActionsBar& actions);
    /// Where the event chosen, or the latest one, was, and the operator who is chosen. The first
    /// location of a site's group has the group's number.
    [[nodiscard]] ActionPlace place() const;

private:
    void build();
    void buildTable();
    void connectControls();
    QWidget* makeControls();
    void takeFeed(const FeedContent& content);
    void playNext();
    void showRow(const QModelIndex& index);
    void openNames(void (NameFinder::*open)(int, const QString&, int));
    void refreshState();
    void say(const QString& text);
    [[nodiscard]] int operatorId() const;

    Feed& feed_;
    ServerLink& link_;
    NameFinder& finder_;
    EventModel model_;
    QTimer clock_;
    QList<CardEvent> events_;
    qsizetype next_ = 0;
    QDateTime fixedMoment_;

    QVBoxLayout* column_ = nullptr;
    QTableView* table_ = nullptr;
    QComboBox* operators_ = nullptr;
    QPushButton* pause_ = nullptr;
    QPushButton* showPhoto_ = nullptr;
    QPushButton* findName_ = nullptr;
    QPushButton* browse_ = nullptr;
    QLabel* lamp_ = nullptr;
    QLabel* state_ = nullptr;
    QLabel* found_ = nullptr;
    QLabel* message_ = nullptr;
};

} // namespace kintar::demo
