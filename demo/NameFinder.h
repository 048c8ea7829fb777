// Asks the server to let the operator find a person.
#pragma once

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusServiceWatcher>
#include <QObject>
#include <QVariantMap>

class QDBusPendingCallWatcher;

namespace kintar::demo {

/// Holds one name search object of the server, made when it is first needed and kept until the
/// workstation ends: ending an object would close all windows of the server. Never blocks.
class NameFinder : public QObject {
    Q_OBJECT

public:
    explicit NameFinder(const QDBusConnection& bus, QObject* parent = nullptr);
    ~NameFinder() override;

    /// Opens the dialog. Asked again before that has been closed, it opens it again.
    void find(int locGrp, const QString& locName, int operatorId);
    /// The same for looking at names and opening the In / Out board; what is chosen is not told.
    void browse(int locGrp, const QString& locName, int operatorId);

Q_SIGNALS:
    void found(int person, const QString& name);
    /// The operator has chosen nobody.
    void cancelled();
    void refused(const QString& reason);

private Q_SLOTS:
    void propertiesChanged(const QString& interface, const QVariantMap& changed,
                           const QStringList& invalidated);

private:
    void open(int locGrp, const QString& locName, int operatorId);
    void openDialog();
    void showDialog();
    void readResult();
    QDBusPendingCallWatcher* call(const QDBusMessage& message);
    QDBusPendingCallWatcher* set(const QString& property, const QVariant& value);
    void forgetObject();

    QDBusConnection bus_;
    QDBusServiceWatcher watcher_;
    QString object_;
    bool creating_ = false;
    bool waiting_ = false; ///< for the signal that follows our own setting of the group
    int mode_ = 0;
    int locGrp_ = 0;
    QString locName_;
    int operatorId_ = 0;
};

} // namespace kintar::demo
