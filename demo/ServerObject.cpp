#include "demo/ServerObject.h"

#include <QDBusObjectPath>
#include <QDBusPendingCall>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusVariant>

#include <utility>

namespace kintar::demo {
namespace {

constexpr int creationTimeout = 10 * 60 * 1000;
constexpr int callTimeout = 30 * 1000;

QString serverName() {
    return QStringLiteral("net.tarnholm.Kintar3");
}

QDBusMessage rootCall(const QString& member) {
    return QDBusMessage::createMethodCall(serverName(), QStringLiteral("/net/tarnholm/Kintar3"),
                                          QStringLiteral("net.tarnholm.Kintar3.Server"), member);
}

} // namespace

ServerObject::ServerObject(const QDBusConnection& bus, QString publicClass, QObject* parent)
    : QObject(parent), bus_(bus),
      watcher_(serverName(), bus, QDBusServiceWatcher::WatchForUnregistration),
      publicClass_(std::move(publicClass)) {
    connect(&watcher_, &QDBusServiceWatcher::serviceUnregistered, this, [this] { path_.clear(); });
}

ServerObject::~ServerObject() {
    if (!path_.isEmpty()) {
        QDBusMessage release = rootCall(QStringLiteral("ReleaseObject"));
        release << QVariant::fromValue(QDBusObjectPath(path_));
        bus_.send(release);
    }
}

QString ServerObject::ownInterface() const {
    return serverName() + QLatin1Char('.') + publicClass_;
}

void ServerObject::set(const QString& property, const QVariant& value) {
    send({QStringLiteral("org.freedesktop.DBus.Properties"),
          QStringLiteral("Set"),
          {ownInterface(), property, QVariant::fromValue(QDBusVariant(value))}});
}

void ServerObject::call(const QString& method, const QVariantList& arguments) {
    send({ownInterface(), method, arguments});
}

void ServerObject::send(Request request) {
    waiting_.append(std::move(request));
    if (!path_.isEmpty()) {
        sendWaiting();
    } else if (!creating_) {
        create();
    }
}

void ServerObject::create() {
    creating_ = true;
    QDBusMessage message = rootCall(QStringLiteral("CreateObject"));
    message << publicClass_;
    auto* call = new QDBusPendingCallWatcher(bus_.asyncCall(message, creationTimeout), this);
    connect(call, &QDBusPendingCallWatcher::finished, this, &ServerObject::created);
}

void ServerObject::created(QDBusPendingCallWatcher* call) {
    call->deleteLater();
    creating_ = false;
    const QDBusPendingReply<QDBusObjectPath> reply = *call;
    if (reply.isError()) {
        waiting_.clear();
        Q_EMIT refused(reply.error().message());
        return;
    }
    path_ = reply.value().path();
    // No name: every signal of the interface. The toolkit takes the slot by its name only.
    bus_.connect(serverName(), path_, ownInterface(), QString(), this, SLOT(hear(QDBusMessage)));
    sendWaiting();
}

void ServerObject::hear(const QDBusMessage& message) {
    Q_EMIT told(message.member(), message.arguments());
}

void ServerObject::sendWaiting() {
    for (const Request& request : std::exchange(waiting_, {})) {
        QDBusMessage message =
            QDBusMessage::createMethodCall(serverName(), path_, request.interface, request.member);
        message.setAutoStartService(false);
        message.setArguments(request.arguments);
        auto* call = new QDBusPendingCallWatcher(bus_.asyncCall(message, callTimeout), this);
        connect(call, &QDBusPendingCallWatcher::finished, this, [this, call] {
            call->deleteLater();
            if (call->isError()) {
                Q_EMIT refused(call->error().message());
            }
        });
    }
}

} // namespace kintar::demo
