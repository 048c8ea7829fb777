// Where the workstation's events come from.
#pragma once

#include "demo/CardEvent.h"

#include <QObject>
#include <QStringList>

namespace kintar::demo {

/// Asks `kintar-site feed` for a site's operators and events: the workstation itself opens neither
/// database nor files of a site.
class Feed : public QObject {
    Q_OBJECT

public:
    /// `program` is run for every request.
    Feed(QString program, QString siteFolder, QObject* parent = nullptr);

    /// Ends with `loaded` or `failed`.
    void load();
    /// Ends with `eventFound` or `failed`.
    void findEvent(int person);

Q_SIGNALS:
    void loaded(const kintar::demo::FeedContent& content);
    void eventFound(const kintar::demo::CardEvent& event);
    /// A sentence for people.
    void failed(const QString& reason);

private:
    void run(const QStringList& arguments, void (Feed::*take)(const FeedContent&));
    void takeEvents(const FeedContent& content);
    void takeEvent(const FeedContent& content);

    QString program_;
    QString siteFolder_;
};

} // namespace kintar::demo
