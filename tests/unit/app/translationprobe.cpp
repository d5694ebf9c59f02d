// Loads the translation that suits the system, as the program does, and prints a text of each kind.

#include "translation.h"

#include <QCoreApplication>
#include <QTranslator>

#include <cstdio>

int main(int argc, char *argv[])
{
    QCoreApplication application(argc, argv);
    QTranslator translator;
    installTranslation(translator);
    const QString english = QCoreApplication::translate("TrayIcon", "Quit");
    const QString chinese = QCoreApplication::translate("MainWindow", "声卡未连接！");
    std::printf("%s\n%s\n", qUtf8Printable(english), qUtf8Printable(chinese));
    return 0;
}
