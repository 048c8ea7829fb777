// The least program with a window: says when it has painted for the first time, and ends.
#include <QApplication>
#include <QPainter>
#include <QWidget>

#include <cstdio>

namespace {

class BareWindow final : public QWidget {
protected:
    void paintEvent(QPaintEvent*) override {
        QPainter(this).drawText(20, 20, QStringLiteral("painted"));
        std::puts("painted");
        std::fflush(stdout);
        QCoreApplication::quit();
    }
};

} // namespace

int main(int argc, char** argv) {
    QApplication application(argc, argv);
    BareWindow window;
    window.show();
    return QApplication::exec();
}
