#include "demo/Feed.h"

#include <QProcess>

namespace kintar::demo {

Feed::Feed(QString program, QString siteFolder, QObject* parent)
    : QObject(parent), program_(std::move(program)), siteFolder_(std::move(siteFolder)) {}

void Feed::load() {
    run({}, &Feed::takeEvents);
}

void Feed::findEvent(int person) {
    run({QStringLiteral("--person"), QString::number(person)}, &Feed::takeEvent);
}

void Feed::run(const QStringList& arguments, void (Feed::*take)(const FeedContent&)) {
    auto* process = new QProcess(this);
    connect(process, &QProcess::errorOccurred, this, [this, process](QProcess::ProcessError error) {
        if (error == QProcess::FailedToStart) {
            Q_EMIT failed(program_ + QStringLiteral(": ") + process->errorString());
            process->deleteLater();
        }
    });
    connect(process, &QProcess::finished, this,
            [this, process, take](int exitCode, QProcess::ExitStatus status) {
                process->deleteLater();
                const std::optional<FeedContent> content =
                    readFeed(process->readAllStandardOutput());
                if (status != QProcess::NormalExit || exitCode != 0) {
                    Q_EMIT failed(QString::fromUtf8(process->readAllStandardError()).trimmed());
                } else if (!content) {
                    Q_EMIT failed(program_ + QStringLiteral(": its output is no feed"));
                } else {
                    (this->*take)(*content);
                }
            });
    process->start(program_, QStringList{QStringLiteral("feed"), siteFolder_} + arguments);
}

void Feed::takeEvents(const FeedContent& content) {
    Q_EMIT loaded(content);
}

void Feed::takeEvent(const FeedContent& content) {
    if (content.events.isEmpty()) {
        Q_EMIT failed(program_ + QStringLiteral(": gave no event"));
        return;
    }
    Q_EMIT eventFound(content.events.first());
}

} // namespace kintar::demo
