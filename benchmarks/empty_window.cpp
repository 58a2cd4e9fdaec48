// The least that a program with a window can do. The start of mact is compared with it.
#include <QApplication>
#include <QWidget>

int main(int argc, char* argv[]) {
    const QApplication application(argc, argv);
    QWidget window;
    window.resize(600, 400);
    window.show();
    return QApplication::exec();
}
