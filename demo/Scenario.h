// Plays the workstation by steps that a script gives, a line each.
#pragma once

#include "demo/Feed.h"
#include "demo/ServerLink.h"
#include "demo/WorkstationWindow.h"

#include <QObject>
#include <QSocketNotifier>
#include <QTimer>

#include <functional>
#include <memory>

namespace kintar::demo {

/// Reads steps from a descriptor and does them one after another, each when the one before has been
/// done. A step done prints `done STEP`; one that cannot be done prints `failed STEP: REASON`, and
/// the scenario ends. Steps:
///
///     event ID             a card event of this person comes in; done when the server has taken it
///     choose ID            the latest event of this person is clicked on; done likewise
///     operator ID          this operator is working from now on
///     pause, resume        the feed
///     wait-server          the server is connected
///     wait-window TITLE    a window of this title is shown
///     quit                 ends the workstation
///
/// Empty lines and lines that begin with # are passed over; the end of the input ends it too.
class Scenario : public QObject {
    Q_OBJECT

public:
    Scenario(Feed& feed, ServerLink& link, WorkstationWindow& window, QObject* parent = nullptr);

    /// Takes steps from an open descriptor from now on.
    void readFrom(int descriptor);
    /// How long a step may take; milliseconds.
    void setTimeout(int timeout) { timeout_.setInterval(timeout); }
    /// Where lines go instead of standard output.
    void setOutput(std::function<void(const QString&)> output) { output_ = std::move(output); }

Q_SIGNALS:
    /// 0: every step was done.
    void ended(int status);

private:
    void readMore();
    void nextStep();
    void begin(const QString& verb, const QString& argument);
    void check();
    void done();
    void fail(const QString& reason);
    void end(int status);

    Feed& feed_;
    ServerLink& link_;
    WorkstationWindow& window_;
    std::unique_ptr<QSocketNotifier> notifier_;
    QByteArray unread_;
    bool inputEnded_ = false;
    bool ended_ = false;
    QString step_;                    ///< being done; empty: none
    int awaitedPerson_ = 0;           ///< whose event the server is to take; 0: nobody's
    std::function<bool()> condition_; ///< becomes true when the step is done
    QTimer following_;                ///< begins the next step from the event loop
    QTimer polling_;
    QTimer timeout_;
    std::function<void(const QString&)> output_;
};

} // namespace kintar::demo
