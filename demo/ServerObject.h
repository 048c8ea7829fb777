// One object of the server that is made when it is first needed.
#pragma once

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusServiceWatcher>
#include <QList>
#include <QObject>
#include <QVariant>

class QDBusPendingCallWatcher;

namespace kintar::demo {

/// Holds an object of a public class from its first use for as long as it lives; ending it would
/// close every window of the server. What is asked of it is sent in order, as soon as there is an
/// object; a server that has gone is started by the next use. Never blocks.
class ServerObject : public QObject {
    Q_OBJECT

public:
    ServerObject(const QDBusConnection& bus, QString publicClass, QObject* parent = nullptr);
    ~ServerObject() override;

    void set(const QString& property, const QVariant& value);
    void call(const QString& method, const QVariantList& arguments = {});

Q_SIGNALS:
    void refused(const QString& reason);
    /// A signal of the object's own interface.
    void told(const QString& signal, const QVariantList& arguments);

private Q_SLOTS:
    void hear(const QDBusMessage& message);

private:
    struct Request {
        QString interface;
        QString member;
        QVariantList arguments;
    };

    void send(Request request);
    void create();
    void created(QDBusPendingCallWatcher* call);
    void sendWaiting();
    [[nodiscard]] QString ownInterface() const;

    QDBusConnection bus_;
    QDBusServiceWatcher watcher_;
    QString publicClass_;
    QString path_;
    bool creating_ = false;
    QList<Request> waiting_;
};

} // namespace kintar::demo
