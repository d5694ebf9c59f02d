#ifndef WINDOWSYSTEM_H
#define WINDOWSYSTEM_H

#include <QImage>
#include <QList>
#include <QRect>
#include <QString>

#include <memory>
#include <optional>

struct xcb_connection_t;

using WindowId = quint32;

/// A window as the X server knows it.
struct WindowInfo {
    WindowId id = 0;
    WindowId parent = 0;
    QString title; ///< empty when it has none
    QRect area;    ///< in the screen's coordinates, without the window manager's frame
    bool visible = false;
    bool popup = false; ///< not handled by the window manager: menus, tool tips
};

/// Reads an X display from outside: its windows and what is on the screen.
///
/// A display that goes away is no error: from then on there are no windows.
class WindowSystem
{
public:
    /// @p displayName as in $DISPLAY.
    explicit WindowSystem(const QString &displayName);
    ~WindowSystem();

    bool isConnected() const;
    QRect screen() const;

    /// All windows, parents before their children, in stacking order from the bottom.
    QList<WindowInfo> windows() const;
    /// The visible windows whose title begins with @p title.
    QList<WindowInfo> visibleWindows(const QString &title) const;
    std::optional<WindowInfo> visibleWindow(const QString &title) const;

    /// Asks the window to close as its frame's close button does.
    void close(WindowId window) const;
    /// Asks the window manager to turn the window into an icon.
    void minimise(WindowId window) const;
    /// Whether @p upper is stacked above @p lower.
    bool isAbove(WindowId upper, WindowId lower) const;
    /// What the screen shows there; a null image when @p area is outside.
    QImage picture(const QRect &area) const;

    bool hasProperty(WindowId window, const QByteArray &name) const;
    /// Whether some window of this display owns the selection @p name.
    bool hasSelectionOwner(const QByteArray &name) const;
    bool hasWindowManager() const;
    bool hasTrayManager() const;

private:
    using Connection = std::unique_ptr<xcb_connection_t, void (*)(xcb_connection_t *)>;

    void collect(WindowId window, WindowId parent, QList<WindowInfo> &found) const;
    std::optional<WindowInfo> describe(WindowId window, WindowId parent) const;
    QString title(WindowId window) const;
    QByteArray property(WindowId window, quint32 atomName) const;
    quint32 atom(const QByteArray &name) const;

    Connection m_connection;
    WindowId m_root = 0;
    QRect m_screen;
};

#endif
