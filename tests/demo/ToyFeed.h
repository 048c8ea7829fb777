// A program that prints a feed without a site.
#pragma once

#include <QFile>
#include <QString>
#include <QTemporaryDir>

namespace kintar::testing {

/// An executable that answers as `kintar-site feed` does: two operators, a door and an input,
/// persons 1 and 2.
class ToyFeed {
public:
    explicit ToyFeed(const QByteArray& script = usual()) {
        QFile file(program());
        if (file.open(QIODevice::WriteOnly)) {
            file.write("#!/bin/sh\n" + script);
        }
        file.close();
        file.setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    }

    [[nodiscard]] QString program() const { return folder_.filePath(QStringLiteral("toy-feed")); }

    static QByteArray usual() {
        return "event() { echo \"{\\\"kind\\\":\\\"event\\\",\\\"ID\\\":$1,\\\"LocGrp\\\":1,"
               "\\\"LocName\\\":\\\"Office\\\",\\\"FName\\\":\\\"F$1\\\",\\\"LName\\\":\\\"L$1\\\","
               "\\\"Device\\\":\\\"Gate\\\",\\\"EventDesc\\\":\\\"Access granted\\\","
               "\\\"Code\\\":\\\"00$1\\\"}\"; }\n"
               "if [ \"$3\" = --person ]; then\n"
               "  [ \"$4\" -lt 100 ] || { echo \"no person $4\" >&2; exit 2; }\n"
               "  event \"$4\"; exit 0\n"
               "fi\n"
               "echo '{\"kind\":\"operator\",\"OprID\":1,\"rights\":\"all rights\"}'\n"
               "echo '{\"kind\":\"operator\",\"OprID\":5,\"rights\":\"no rights\"}'\n"
               "echo '{\"kind\":\"point\",\"PointID\":101,\"PointType\":0,"
               "\"PointName\":\"Door 101\",\"LocName\":\"R & D\"}'\n"
               "echo '{\"kind\":\"point\",\"PointID\":102,\"PointType\":1,"
               "\"PointName\":\"Input 102\",\"LocName\":\"Office\"}'\n"
               "event 1; event 2\n";
    }

private:
    QTemporaryDir folder_;
};

} // namespace kintar::testing
