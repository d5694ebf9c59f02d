#ifndef TRAY_H
#define TRAY_H

#include "menupicture.h"
#include "pointer.h"
#include "windowsystem.h"

/// The system tray and the program's icon in it, as a person sees and clicks them.
class Tray
{
public:
    /// The menu's entries from the top.
    enum Entry {
        Version,
        Quit,
        Setup,
        MainWindow,
        UpgradeFirmware,
        RefreshAudioDevice,
        SoundPanel,
        EntryCount
    };

    Tray(const WindowSystem &windows, Pointer &pointer);

    QList<WindowInfo> icons() const;
    /// Waits until exactly one icon is in its place, with its picture.
    bool waitForIcon() const;

    bool click(Pointer::Button button = Pointer::Left);
    bool doubleClick();

    /// The visible menu, if any.
    std::optional<WindowInfo> menu() const;
    MenuPicture menuPicture() const;
    /// Right-clicks the icon and waits for the complete menu.
    bool openMenu();
    /// Opens the menu and clicks an entry.
    bool choose(Entry entry);

private:
    bool hasPicture(const WindowInfo &icon) const;
    bool isDocked(const WindowInfo &window) const;

    const WindowSystem &m_windows;
    Pointer &m_pointer;
};

#endif
