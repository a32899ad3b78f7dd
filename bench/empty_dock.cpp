// An empty dock window of the toolkit and nothing else: what stands beside the program's start and memory.

#include <QApplication>
#include <QWidget>

int main(int argc, char** argv)
{
    QApplication application(argc, argv);
    QWidget dock(nullptr, Qt::FramelessWindowHint | Qt::WindowDoesNotAcceptFocus);
    dock.setAttribute(Qt::WA_X11NetWmWindowTypeDock);
    dock.setGeometry(0, 1017, 1920, 63);
    dock.show();
    return QApplication::exec();
}
