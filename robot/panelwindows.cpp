#include "panelwindows.h"

std::optional<WindowInfo> panelWindow(const WindowSystem &windows)
{
    return windows.visibleWindow(QStringLiteral("Vesmora "));
}

std::optional<WindowInfo> settingsWindow(const WindowSystem &windows)
{
    return windows.visibleWindow(QStringLiteral("Settings"));
}

PanelPicture shownPanel(const WindowSystem &windows)
{
    const std::optional<WindowInfo> shown = panelWindow(windows);
    return shown ? PanelPicture(windows.picture(shown->area), shown->area.topLeft())
                 : PanelPicture();
}
