#ifndef FAKETRAY_H
#define FAKETRAY_H

/// Decides for the whole test program whether the desktop has a system tray.
void setSystemTrayAvailable(bool available);

#endif
