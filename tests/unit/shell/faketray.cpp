#include "faketray.h"

#include <QSystemTrayIcon>

namespace {

bool isAvailable = false;

} // namespace

void setSystemTrayAvailable(bool available)
{
    isAvailable = available;
}

// Stands before the library's own, which asks the desktop.
bool QSystemTrayIcon::isSystemTrayAvailable()
{
    return isAvailable;
}
