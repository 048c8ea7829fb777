#include "demo/ServerLink.h"

#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QDBusPendingCall>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>

namespace kintar::demo {

namespace {

// A server whose start-up shows a message answers when somebody has closed it.
constexpr int creationTimeout = 10 * 60 * 1000;
constexpr int callTimeout = 30 * 1000;
constexpr int defaultRetryDelay = 1500;

QString serverName() {
    return QStringLiteral("net.tarnholm.Kintar3");
}

QString rootPath() {
    return QStringLiteral("/net/tarnholm/Kintar3");
}

QString rootInterface() {
    return QStringLiteral("net.tarnholm.Kintar3.Server");
}

QString photoClass() {
    return QStringLiteral("objKintar");
}

QString photoInterface() {
    return QStringLiteral("net.tarnholm.Kintar3.objKintar");
}

/// Errors that say that nobody answered; the state of the link tells that already.
bool isLostServer(const QDBusError& error) {
    switch (error.type()) {
    case QDBusError::NoReply:
    case QDBusError::ServiceUnknown:
    case QDBusError::Disconnected:
    case QDBusError::NoServer:
        return true;
    default:
        return error.name() == QLatin1String("org.freedesktop.DBus.Error.NameHasNoOwner");
    }
}

QString propertiesInterface() {
    return QStringLiteral("org.freedesktop.DBus.Properties");
}

} // namespace

ServerLink::ServerLink(const QDBusConnection& bus, QObject* parent)
    : QObject(parent), bus_(bus),
      watcher_(serverName(), bus, QDBusServiceWatcher::WatchForUnregistration) {
    retry_.setSingleShot(true);
    retry_.setInterval(defaultRetryDelay);
    connect(&watcher_, &QDBusServiceWatcher::serviceUnregistered, this,
            &ServerLink::serverWentAway);
    connect(&retry_, &QTimer::timeout, this, &ServerLink::createObject);
}

ServerLink::~ServerLink() {
    if (!object_.isEmpty()) {
        QDBusMessage release = QDBusMessage::createMethodCall(
            serverName(), rootPath(), rootInterface(), QStringLiteral("ReleaseObject"));
        release << QVariant::fromValue(QDBusObjectPath(object_));
        bus_.send(release);
    }
}

void ServerLink::start() {
    if (!bus_.isConnected()) {
        setState(State::Gone, tr("There is no session bus"));
        return;
    }
    createObject();
}

void ServerLink::createObject() {
    setState(State::Starting, tr("Starting the server"));
    QDBusMessage create = QDBusMessage::createMethodCall(serverName(), rootPath(), rootInterface(),
                                                         QStringLiteral("CreateObject"));
    create << photoClass();
    auto* call = new QDBusPendingCallWatcher(bus_.asyncCall(create, creationTimeout), this);
    connect(call, &QDBusPendingCallWatcher::finished, this, &ServerLink::objectCreated);
}

void ServerLink::objectCreated(QDBusPendingCallWatcher* call) {
    call->deleteLater();
    const QDBusPendingReply<QDBusObjectPath> reply = *call;
    if (reply.isError()) {
        setState(State::Gone, tr("No connection to the server: %1").arg(reply.error().message()));
        retry_.start();
        return;
    }
    object_ = reply.value().path();
    setState(State::Ready, tr("Connected to the server"));
    askVersion();
    sendWaiting();
}

void ServerLink::askVersion() {
    QDBusMessage get = QDBusMessage::createMethodCall(serverName(), rootPath(),
                                                      propertiesInterface(), QStringLiteral("Get"));
    get << rootInterface() << QStringLiteral("Version");
    auto* call = new QDBusPendingCallWatcher(bus_.asyncCall(get, callTimeout), this);
    connect(call, &QDBusPendingCallWatcher::finished, this, [this, call] {
        call->deleteLater();
        const QDBusPendingReply<QDBusVariant> reply = *call;
        if (reply.isValid() && state_ == State::Ready) {
            setState(
                State::Ready,
                tr("Connected to the server, version %1").arg(reply.value().variant().toString()));
        }
    });
}

void ServerLink::serverWentAway() {
    object_.clear();
    setState(State::Gone, tr("The server has gone; it is called again in a moment"));
    retry_.start();
}

void ServerLink::show(const CardEvent& event, int operatorId) {
    waiting_ = {event, operatorId, 0};
    if (state_ == State::Ready) {
        sendWaiting();
    }
}

void ServerLink::sendWaiting() {
    // An event that ended the server twice is not tried a third time.
    if (!waiting_ || ++waiting_->attempts > 2) {
        waiting_.reset();
        return;
    }
    const CardEvent& event = waiting_->event;
    set(QStringLiteral("LocGrp"), event.locGrp);
    set(QStringLiteral("LocName"), event.locName);
    set(QStringLiteral("FName"), event.firstName);
    set(QStringLiteral("LName"), event.lastName);
    set(QStringLiteral("Device"), event.device);
    set(QStringLiteral("EventDesc"), event.eventDesc);
    set(QStringLiteral("DateTime"), event.moment.toString(QStringLiteral("yyyy-MM-ddTHH:mm:ss")));
    set(QStringLiteral("Code"), event.code);
    set(QStringLiteral("OprID"), waiting_->operatorId);
    QDBusPendingCallWatcher* call = set(QStringLiteral("ID"), event.id);
    const int person = event.id;
    connect(call, &QDBusPendingCallWatcher::finished, this,
            [this, call, person] { requestAnswered(call, person); });
}

void ServerLink::requestAnswered(QDBusPendingCallWatcher* call, int person) {
    if (call->isError() && isLostServer(call->error())) {
        return;
    }
    // A later event may be waiting by now.
    if (waiting_ && waiting_->event.id == person) {
        waiting_.reset();
    }
    if (!call->isError()) {
        Q_EMIT shown(person);
    }
}

QDBusPendingCallWatcher* ServerLink::set(const QString& property, const QVariant& value) {
    QDBusMessage message = QDBusMessage::createMethodCall(
        serverName(), object_, propertiesInterface(), QStringLiteral("Set"));
    // A server that has just gone is started by CreateObject; its old objects do not come back.
    message.setAutoStartService(false);
    message << photoInterface() << property << QVariant::fromValue(QDBusVariant(value));
    auto* call = new QDBusPendingCallWatcher(bus_.asyncCall(message, callTimeout), this);
    connect(call, &QDBusPendingCallWatcher::finished, this, [this, call, property] {
        call->deleteLater();
        if (call->isError() && !isLostServer(call->error())) {
            Q_EMIT refused(property + QStringLiteral(": ") + call->error().message());
        }
    });
    return call;
}

void ServerLink::setState(State state, const QString& text) {
    state_ = state;
    stateText_ = text;
    Q_EMIT stateChanged();
}

} // namespace kintar::demo
