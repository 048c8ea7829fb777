#include "demo/NameFinder.h"

#include <QDBusObjectPath>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusVariant>

namespace kintar::demo {

namespace {

// A server whose start-up shows a message answers when somebody has closed it.
constexpr int callTimeout = 10 * 60 * 1000;
constexpr int browsingMode = 0;
constexpr int pickingMode = 1;

const QString serverName = QStringLiteral("net.tarnholm.Kintar3");
const QString rootPath = QStringLiteral("/net/tarnholm/Kintar3");
const QString rootInterface = QStringLiteral("net.tarnholm.Kintar3.Server");
const QString searchInterface = QStringLiteral("net.tarnholm.Kintar3.objNameSearch");
const QString propertiesInterface = QStringLiteral("org.freedesktop.DBus.Properties");

} // namespace

NameFinder::NameFinder(const QDBusConnection& bus, QObject* parent)
    : QObject(parent), bus_(bus),
      watcher_(serverName, bus, QDBusServiceWatcher::WatchForUnregistration) {
    connect(&watcher_, &QDBusServiceWatcher::serviceUnregistered, this, &NameFinder::forgetObject);
}

NameFinder::~NameFinder() {
    if (!object_.isEmpty()) {
        QDBusMessage release = QDBusMessage::createMethodCall(serverName, rootPath, rootInterface,
                                                              QStringLiteral("ReleaseObject"));
        release << QVariant::fromValue(QDBusObjectPath(object_));
        bus_.send(release);
    }
}

void NameFinder::find(int locGrp, const QString& locName, int operatorId) {
    mode_ = pickingMode;
    open(locGrp, locName, operatorId);
}

void NameFinder::browse(int locGrp, const QString& locName, int operatorId) {
    mode_ = browsingMode;
    open(locGrp, locName, operatorId);
}

void NameFinder::open(int locGrp, const QString& locName, int operatorId) {
    locGrp_ = locGrp;
    locName_ = locName;
    operatorId_ = operatorId;
    if (!object_.isEmpty()) {
        openDialog();
        return;
    }
    if (creating_) {
        return;
    }
    creating_ = true;
    QDBusMessage create = QDBusMessage::createMethodCall(serverName, rootPath, rootInterface,
                                                         QStringLiteral("CreateObject"));
    create << QStringLiteral("objNameSearch");
    QDBusPendingCallWatcher* answer = call(create);
    connect(answer, &QDBusPendingCallWatcher::finished, this, [this, answer] {
        creating_ = false;
        const QDBusPendingReply<QDBusObjectPath> reply = *answer;
        if (!reply.isError()) {
            object_ = reply.value().path();
            // The toolkit offers this connection by the names of signal and slot only.
            bus_.connect(serverName, object_, propertiesInterface,
                         QStringLiteral("PropertiesChanged"), this,
                         SLOT(propertiesChanged(QString, QVariantMap, QStringList)));
            openDialog();
        }
    });
}

void NameFinder::openDialog() {
    set(QStringLiteral("LocName"), locName_);
    set(QStringLiteral("OprID"), operatorId_);
    QDBusPendingCallWatcher* answer =
        set(QStringLiteral("NameSelMode"), QVariant::fromValue(static_cast<short>(mode_)));
    // What closed before this answer was another dialog: its signal has come by then.
    connect(answer, &QDBusPendingCallWatcher::finished, this, [this, answer] {
        if (!answer->isError()) {
            showDialog();
        }
    });
}

void NameFinder::showDialog() {
    // The dialog may be closed before the answer is here: the wait begins with the question.
    waiting_ = mode_ == pickingMode;
    QDBusPendingCallWatcher* answer = set(QStringLiteral("LocGrp"), locGrp_);
    connect(answer, &QDBusPendingCallWatcher::finished, this,
            [this, answer] { waiting_ = waiting_ && !answer->isError(); });
}

void NameFinder::propertiesChanged(const QString& interface, const QVariantMap& changed,
                                   const QStringList& /*invalidated*/) {
    const bool closed =
        interface == searchInterface && changed.value(QStringLiteral("SelNameReady")).toBool();
    if (waiting_ && closed) {
        waiting_ = false;
        readResult();
    }
}

void NameFinder::readResult() {
    QDBusMessage getAll = QDBusMessage::createMethodCall(serverName, object_, propertiesInterface,
                                                         QStringLiteral("GetAll"));
    getAll << searchInterface;
    QDBusPendingCallWatcher* answer = call(getAll);
    connect(answer, &QDBusPendingCallWatcher::finished, this, [this, answer] {
        const QDBusPendingReply<QVariantMap> reply = *answer;
        if (reply.isError()) {
            return;
        }
        const int person = reply.value().value(QStringLiteral("SelNameID")).toInt();
        if (person == 0) {
            Q_EMIT cancelled();
        } else {
            Q_EMIT found(person, reply.value().value(QStringLiteral("SelName")).toString());
        }
    });
}

QDBusPendingCallWatcher* NameFinder::call(const QDBusMessage& message) {
    auto* answer = new QDBusPendingCallWatcher(bus_.asyncCall(message, callTimeout), this);
    connect(answer, &QDBusPendingCallWatcher::finished, this, [this, answer] {
        answer->deleteLater();
        if (answer->isError()) {
            Q_EMIT refused(answer->error().message());
        }
    });
    return answer;
}

QDBusPendingCallWatcher* NameFinder::set(const QString& property, const QVariant& value) {
    QDBusMessage message = QDBusMessage::createMethodCall(serverName, object_, propertiesInterface,
                                                          QStringLiteral("Set"));
    message.setAutoStartService(false);
    message << searchInterface << property << QVariant::fromValue(QDBusVariant(value));
    return call(message);
}

void NameFinder::forgetObject() {
    object_.clear();
    waiting_ = false;
}

} // namespace kintar::demo
