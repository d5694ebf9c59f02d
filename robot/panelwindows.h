#ifndef PANELWINDOWS_H
#define PANELWINDOWS_H

#include "panelpicture.h"
#include "windowsystem.h"

/// The panel's windows as they are on the screen now; none while they are hidden.
std::optional<WindowInfo> panelWindow(const WindowSystem &windows);
std::optional<WindowInfo> settingsWindow(const WindowSystem &windows);

/// What the panel's window shows; empty while it is hidden.
PanelPicture shownPanel(const WindowSystem &windows);

#endif
