// A minimal Qt program with a tray icon, as a baseline.

#include <QApplication>
#include <QPixmap>
#include <QSystemTrayIcon>

int main(int argc, char *argv[])
{
    QApplication application(argc, argv);
    QPixmap pixmap(22, 22);
    pixmap.fill(Qt::green);
    QSystemTrayIcon icon{QIcon(pixmap)};
    icon.show();
    return QApplication::exec();
}
