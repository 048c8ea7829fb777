#include "platform/qt/DesktopBrowser.h"

#include <QProcess>
#include <QStringList>

namespace kintar::platform {

bool DesktopBrowser::open(const std::string& address) {
    return QProcess::startDetached(QStringLiteral("xdg-open"),
                                   QStringList{QString::fromStdString(address)});
}

} // namespace kintar::platform
