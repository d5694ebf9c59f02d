#include "desktop.h"

#include "waiting.h"

namespace {

bool userHasX()
{
    const QString name = qEnvironmentVariable("DISPLAY");
    return !name.isEmpty() && WindowSystem(name).isConnected();
}

bool userHasWayland()
{
    return !qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY");
}

} // namespace

Desktop::Desktop() = default;

Desktop::~Desktop()
{
    m_windows.reset();
    while (!m_programs.empty())
        m_programs.pop_back();
}

bool Desktop::userHasOne()
{
    return userHasX() || userHasWayland();
}

bool Desktop::useExisting()
{
    return (userHasWayland() && !userHasX()) || connectTo(qEnvironmentVariable("DISPLAY"));
}

bool Desktop::startPrivate(QSize size)
{
    m_private = true;
    return startServer(size) && startWindowManager();
}

bool Desktop::ensureTray()
{
    if (!m_windows || m_windows->hasTrayManager())
        return true;
    m_ownTray = true;
    const QStringList arguments{QStringLiteral("--edge"),      QStringLiteral("bottom"),
                                QStringLiteral("--align"),     QStringLiteral("right"),
                                QStringLiteral("--widthtype"), QStringLiteral("request"),
                                QStringLiteral("--height"),    QStringLiteral("32"),
                                QStringLiteral("--expand"),    QStringLiteral("true")};
    return startProgram(QStringLiteral("trayer"), arguments)
        && (waitUntil([this] { return m_windows->hasTrayManager(); })
            || fail(QStringLiteral("trayer did not become the system tray")));
}

QProcessEnvironment Desktop::environment() const
{
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    if (!m_windows)
        return environment;
    environment.insert(QStringLiteral("DISPLAY"), m_name);
    if (m_private || m_ownTray) {
        environment.remove(QStringLiteral("DBUS_SESSION_BUS_ADDRESS"));
        environment.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("xcb"));
    }
    if (m_private) {
        environment.insert(QStringLiteral("HOME"), m_home.path());
        environment.remove(QStringLiteral("WAYLAND_DISPLAY"));
        environment.remove(QStringLiteral("XDG_CURRENT_DESKTOP"));
    }
    return environment;
}

bool Desktop::saveScreen(const QString &path) const
{
    return m_windows->picture(m_windows->screen()).save(path, "PNG");
}

bool Desktop::connectTo(const QString &name)
{
    m_name = name;
    m_windows = std::make_unique<WindowSystem>(name);
    return m_windows->isConnected()
        || fail(QStringLiteral("no X server answers on display '%1'").arg(name));
}

bool Desktop::startServer(QSize size)
{
    const QString screen = QStringLiteral("%1x%2x24").arg(size.width()).arg(size.height());
    const QStringList arguments{QStringLiteral("-displayfd"),
                                QStringLiteral("1"),
                                QStringLiteral("-screen"),
                                QStringLiteral("0"),
                                screen,
                                QStringLiteral("-nolisten"),
                                QStringLiteral("tcp"),
                                QStringLiteral("-noreset")};
    if (!startProgram(QStringLiteral("Xvfb"), arguments))
        return false;
    ChildProcess *const server = m_programs.back().get();
    // The server writes the number that it found free once it accepts connections.
    if (!waitUntil([&] { return server->canReadLine() || server->state() == QProcess::NotRunning; })
        || !server->canReadLine())
        return fail(QStringLiteral("Xvfb did not start: %1")
                        .arg(QString::fromLocal8Bit(server->readAllStandardError())));
    return connectTo(u':' + QString::fromLatin1(server->readLine().trimmed()));
}

bool Desktop::startWindowManager()
{
    return startProgram(QStringLiteral("openbox"), {QStringLiteral("--sm-disable")})
        && (waitUntil([this] { return m_windows->hasWindowManager(); })
            || fail(QStringLiteral("openbox did not become the window manager")));
}

bool Desktop::startProgram(const QString &program, const QStringList &arguments)
{
    auto process = std::make_unique<ChildProcess>();
    process->setProcessEnvironment(environment());
    if (!process->launch(program, arguments))
        return fail(QStringLiteral("%1: %2").arg(program, process->errorString()));
    m_programs.push_back(std::move(process));
    return true;
}

bool Desktop::fail(const QString &why)
{
    m_error = why;
    return false;
}
