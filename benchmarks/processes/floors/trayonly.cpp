// A program that is nothing but an icon in the tray.

#include <QApplication>
#include <QSystemTrayIcon>

int main(int argc, char *argv[])
{
    QApplication application(argc, argv);
    QSystemTrayIcon tray(QIcon(QStringLiteral(":/icon/icon.png")));
    tray.setVisible(true);
    return QApplication::exec();
}
