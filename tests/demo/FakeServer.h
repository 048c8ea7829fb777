// A bus of a test's own, and on it a server that records what it is asked for.
#pragma once

#include "Waiting.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QDBusVariant>
#include <QDBusVirtualObject>
#include <QProcess>
#include <QStringList>

#include <stdexcept>

namespace kintar::testing {

class PrivateBus {
public:
    PrivateBus() {
        daemon_.start(QStringLiteral("dbus-daemon"),
                      {QStringLiteral("--session"), QStringLiteral("--nofork"),
                       QStringLiteral("--nopidfile"), QStringLiteral("--print-address=1")});
        if (!waitFor([this] { return daemon_.canReadLine(); })) {
            throw std::runtime_error("the test's bus did not come up");
        }
        address_ = QString::fromUtf8(daemon_.readLine()).trimmed();
    }
    PrivateBus(const PrivateBus&) = delete;
    PrivateBus& operator=(const PrivateBus&) = delete;
    ~PrivateBus() {
        for (const QString& name : std::as_const(names_)) {
            QDBusConnection::disconnectFromBus(name);
        }
        daemon_.kill();
        daemon_.waitForFinished();
    }

    /// A connection of its own each time.
    QDBusConnection connect() {
        names_.append(QStringLiteral("test-%1").arg(++count_));
        return QDBusConnection::connectToBus(address_, names_.last());
    }

private:
    QProcess daemon_;
    QString address_;
    QStringList names_;
    static inline int count_ = 0;
};

class FakeServer : public QDBusVirtualObject {
public:
    explicit FakeServer(const QDBusConnection& bus) : bus_(bus) {
        bus_.registerVirtualObject(QStringLiteral("/net/tarnholm/Kintar3"), this,
                                   QDBusConnection::SubPath);
    }

    void appear() { bus_.registerService(QStringLiteral("net.tarnholm.Kintar3")); }
    void vanish() { bus_.unregisterService(QStringLiteral("net.tarnholm.Kintar3")); }

    /// What happened, in order: `create objKintar`, `LName=O'Brien`, `release PATH`.
    QStringList log;
    /// A property whose setting is refused; empty: none.
    QString refused;
    /// What GetAll answers.
    QVariantMap result;

    /// Tells of a change of the object at `path` of the class `name`.
    void change(const QString& path, const QString& name, const QVariantMap& values) {
        QDBusMessage signal =
            QDBusMessage::createSignal(path, QStringLiteral("org.freedesktop.DBus.Properties"),
                                       QStringLiteral("PropertiesChanged"));
        signal << QStringLiteral("net.tarnholm.Kintar3.") + name << values << QStringList();
        bus_.send(signal);
    }

    /// Sends a signal of the class `name` from its object at `path`.
    void tell(const QString& path, const QString& name, const QString& signal,
              const QVariantList& arguments) {
        QDBusMessage message = QDBusMessage::createSignal(
            path, QStringLiteral("net.tarnholm.Kintar3.") + name, signal);
        message.setArguments(arguments);
        bus_.send(message);
    }

    [[nodiscard]] QString introspect(const QString&) const override { return {}; }

    bool handleMessage(const QDBusMessage& message, const QDBusConnection& connection) override {
        const QVariantList arguments = message.arguments();
        if (message.member() == QLatin1String("CreateObject")) {
            log.append(QStringLiteral("create ") + arguments.value(0).toString());
            const QString path = QStringLiteral("/net/tarnholm/Kintar3/%1/%2")
                                     .arg(arguments.value(0).toString())
                                     .arg(++objects_);
            return connection.send(message.createReply(QVariant::fromValue(QDBusObjectPath(path))));
        }
        if (message.member() == QLatin1String("ReleaseObject")) {
            log.append(QStringLiteral("release ") +
                       arguments.value(0).value<QDBusObjectPath>().path());
            return connection.send(message.createReply());
        }
        if (message.member() == QLatin1String("GetAll")) {
            return connection.send(message.createReply(QVariant(result)));
        }
        if (message.member() == QLatin1String("Get")) {
            return connection.send(
                message.createReply(QVariant::fromValue(QDBusVariant(QStringLiteral("4.4.12")))));
        }
        if (message.member() != QLatin1String("Set")) {
            log.append(message.member());
            return connection.send(message.createReply());
        }
        return set(message, connection);
    }

private:
    bool set(const QDBusMessage& message, const QDBusConnection& connection) {
        const QString property = message.arguments().value(1).toString();
        const QVariant value = message.arguments().value(2).value<QDBusVariant>().variant();
        log.append(property + QLatin1Char('=') + value.toString());
        paths_.append(message.path());
        if (property == refused) {
            return connection.send(
                message.createErrorReply(QStringLiteral("net.tarnholm.Kintar3.Error.RunTime"),
                                         QStringLiteral("Run-time error '13': Type mismatch")));
        }
        return connection.send(message.createReply());
    }

    QDBusConnection bus_;
    int objects_ = 0;
    QStringList paths_;
};

} // namespace kintar::testing
