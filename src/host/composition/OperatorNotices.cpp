#include "host/composition/OperatorNotices.h"

#include "platform/qt/FormWindow.h"

#include <QApplication>
#include <QMessageBox>
#include <QString>

namespace kintar::host {

void OperatorNotices::writeFailed(const std::string& reason) {
    auto* box = new QMessageBox;
    box->setAttribute(Qt::WA_DeleteOnClose);
    box->setObjectName(QStringLiteral("WriteFailedNotice"));
    box->setIcon(QMessageBox::Warning);
    box->setTextFormat(Qt::PlainText);
    box->setWindowTitle(QStringLiteral("Kintar3"));
    box->setText(QStringLiteral("The change was not saved."));
    box->setInformativeText(QString::fromStdString(reason));
    box->setModal(false);
    box->show();
}

void OperatorNotices::databaseAway(bool away) {
    QMetaObject::invokeMethod(
        qApp, [away] { platform::FormWindow::showNotUpToDate(away); }, Qt::QueuedConnection);
}

} // namespace kintar::host
