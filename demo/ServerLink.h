// The workstation's side of the bus contract.
#pragma once

#include "demo/CardEvent.h"

#include <QDBusConnection>
#include <QDBusServiceWatcher>
#include <QDBusVariant>
#include <QObject>
#include <QTimer>

#include <optional>

class QDBusPendingCallWatcher;

namespace kintar::demo {

/// Holds one photo object of the server for as long as it lives. Calling the server starts it; when
/// it goes, it is called again after a moment, so it comes back by itself. Never blocks.
class ServerLink : public QObject {
    Q_OBJECT

public:
    enum class State : std::uint8_t { Starting, Ready, Gone };
    Q_ENUM(State)

    explicit ServerLink(const QDBusConnection& bus, QObject* parent = nullptr);
    ~ServerLink() override;

    void start();
    [[nodiscard]] State state() const { return state_; }
    /// A sentence for people.
    [[nodiscard]] QString stateText() const { return stateText_; }

    /// Shows the event's photo, or the latest such event as soon as the server is ready. Every
    /// property is set right before the one that triggers.
    void show(const CardEvent& event, int operatorId);

    /// How long to wait before a server that has gone is called again; milliseconds.
    void setRetryDelay(int delay) { retry_.setInterval(delay); }

Q_SIGNALS:
    void stateChanged();
    /// The server has taken the event of this person.
    void shown(int person);
    void refused(const QString& reason);

private:
    struct Request {
        CardEvent event;
        int operatorId = 0;
        int attempts = 0;
    };

    void createObject();
    void objectCreated(QDBusPendingCallWatcher* call);
    void askVersion();
    void serverWentAway();
    void sendWaiting();
    /// The pending answer to setting a property; a refusal is announced.
    QDBusPendingCallWatcher* set(const QString& property, const QVariant& value);
    void requestAnswered(QDBusPendingCallWatcher* call, int person);
    void setState(State state, const QString& text);

    QDBusConnection bus_;
    QDBusServiceWatcher watcher_;
    QTimer retry_;
    State state_ = State::Starting;
    QString stateText_;
    QString object_;
    std::optional<Request> waiting_; ///< not yet taken by a server
};

} // namespace kintar::demo
