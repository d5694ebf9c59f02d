#ifndef DESKTOP_H
#define DESKTOP_H

#include "childprocess.h"
#include "windowsystem.h"

#include <QTemporaryDir>

#include <memory>
#include <vector>

/// A desktop: an X display with a window manager and, if wanted, a system tray.
///
/// Everything that this object started ends with it.
class Desktop
{
public:
    Desktop();
    ~Desktop();

    /// Whether $DISPLAY names an X server that lets us in, or there is a Wayland session.
    static bool userHasOne();

    /// Uses the user's display as it is. In a Wayland session without X there are no windows() to
    /// look at, and the tray is the session's own affair.
    bool useExisting();
    /// Starts an X server without a screen, of @p size pixels, with a window manager.
    bool startPrivate(QSize size = {1280, 800});
    /// Starts a system tray if the display has none.
    bool ensureTray();
    /// Why the last operation returned false.
    QString errorString() const { return m_error; }

    /// Whether the display is ours alone.
    bool isPrivate() const { return m_private; }
    WindowSystem &windows() const { return *m_windows; }
    /// This process' environment, for programs that shall appear on this display. Where it or
    /// its tray is ours they get no session bus, over which their icon could go elsewhere.
    QProcessEnvironment environment() const;

    /// Saves the whole screen as a PNG file.
    bool saveScreen(const QString &path) const;

private:
    bool connectTo(const QString &name);
    bool startServer(QSize size);
    bool startWindowManager();
    bool startProgram(const QString &program, const QStringList &arguments);
    bool fail(const QString &why);

    QString m_name;
    QString m_error;
    bool m_private = false;
    bool m_ownTray = false;
    // Where helpers look for a configuration: nowhere, so that every machine gives one picture.
    QTemporaryDir m_home;
    std::vector<std::unique_ptr<ChildProcess>> m_programs;
    std::unique_ptr<WindowSystem> m_windows;
};

#endif
