// The least program with a window: says when it has painted for the first time, and ends.
#include <QApplication>
#include <QPainter>
#include <QTimer>
#include <QWidget>

#include <cstdio>

namespace {

class BareWindow final : public QWidget {
protected:
    void paintEvent(QPaintEvent*) override {
        QPainter(this).drawText(20, 20, QStringLiteral("painted"));
        std::puts("painted");
        std::fflush(stdout);
        // Not from inside of painting: the window must stay until that has ended.
        QTimer::singleShot(0, qApp, &QCoreApplication::quit);
    }
};

} // namespace

int main(int argc, char** argv) {
    QApplication application(argc, argv);
    BareWindow window;
    window.show();
    return QApplication::exec();
}
