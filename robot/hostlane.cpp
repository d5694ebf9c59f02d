#include "hostlane.h"

#include "waiting.h"

#include <QDir>
#include <QFile>
#include <QSharedMemory>
#include <QSystemSemaphore>

namespace {

/// Names the folder in which Qt's inter-process objects have their keys, for one scope.
class TemporaryFolderScope
{
public:
    explicit TemporaryFolderScope(const QString &folder)
        : m_before(qgetenv("TMPDIR"))
        , m_wasSet(qEnvironmentVariableIsSet("TMPDIR"))
    {
        qputenv("TMPDIR", folder.toLocal8Bit());
    }

    ~TemporaryFolderScope()
    {
        if (m_wasSet)
            qputenv("TMPDIR", m_before);
        else
            qunsetenv("TMPDIR");
    }

    TemporaryFolderScope(const TemporaryFolderScope &) = delete;
    TemporaryFolderScope &operator=(const TemporaryFolderScope &) = delete;

private:
    QByteArray m_before;
    bool m_wasSet;
};

/// A marker goes when its last user detaches. Returns whether there was one, and it is gone.
bool removeUnusedMarker(const QString &key)
{
    QSharedMemory marker(key);
    return marker.attach() && marker.detach() && !marker.attach();
}

} // namespace

// Short, because socket paths must be.
HostLane::HostLane(const Desktop &desktop, const LanePrograms &programs)
    : Lane(desktop, programs)
    , m_temporary(QStringLiteral("/tmp/vesmora-XXXXXX"))
    , m_folder(m_temporary.path())
{ }

HostLane::~HostLane()
{
    stopSimulator();
    clearStaleMarkers();
}

bool HostLane::open()
{
    if (!makeFolders())
        return fail(QStringLiteral("cannot create folders in %1").arg(m_folder));
    clearStaleMarkers();
    return startSimulator(environment());
}

CommandResult HostLane::asio(const QStringList &arguments)
{
    return runCommand(programs().asio, arguments, environment());
}

bool HostLane::setScale(double scale)
{
    m_scale = scale;
    return true;
}

/// Each writes down what it was called with.
bool HostLane::provideWindowsPrograms()
{
    const QDir folder(windowsFolder());
    bool provided = folder.mkpath(QStringLiteral("."));
    for (const QString &name : {QStringLiteral("cmd.exe"), QStringLiteral("control.exe")}) {
        QFile program(folder.filePath(name));
        provided = provided && program.open(QIODevice::WriteOnly)
            && program.write("#!/bin/sh\nprintf '%s' \"$*\" >\"$0.called\"\n") > 0
            && program.setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    }
    return provided || fail(QStringLiteral("cannot write to %1").arg(folder.path()));
}

bool HostLane::hasRestartedShell() const
{
    QFile called(windowsFolder() + QStringLiteral("/cmd.exe.called"));
    return called.open(QIODevice::ReadOnly)
        && called.readAll() == "/c taskkill /f /im explorer.exe && start explorer.exe";
}

std::unique_ptr<ChildProcess> HostLane::startAsio(const QStringList &arguments)
{
    return startBeside(programs().asio, arguments, environment());
}

CommandResult HostLane::simctl(const QStringList &arguments)
{
    return runCommand(programs().simctl, arguments, environment());
}

QString HostLane::settingsFolder() const
{
    return sub(QStringLiteral("data/VesmoraDriver"));
}

bool HostLane::startPanel(ChildProcess &process, const QString &program, const QString &locale)
{
    process.setProcessEnvironment(panelEnvironment(locale));
    return process.launch(program, {});
}

void HostLane::killPanel(ChildProcess &process)
{
    process.stop();
    clearStaleMarkers();
}

bool HostLane::makeFolders()
{
    const QDir folder(m_folder);
    const QDir sockets(m_temporary.path());
    constexpr auto ours = QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner;
    return m_temporary.isValid() && folder.mkpath(QStringLiteral("data"))
        && folder.mkpath(QStringLiteral("tmp")) && sockets.mkpath(QStringLiteral("devices"))
        && sockets.mkpath(QStringLiteral("runtime"))
        && QFile::setPermissions(sockets.filePath(QStringLiteral("devices")), ours)
        && QFile::setPermissions(sockets.filePath(QStringLiteral("runtime")), ours);
}

/// A panel that was killed leaves its marker behind, and the next one would think that it still
/// runs. Two semaphores stay, too: the program's own, and the one that guards the marker.
void HostLane::clearStaleMarkers() const
{
    const TemporaryFolderScope scope(sub(QStringLiteral("tmp")));
    const QString marker = QStringLiteral("VesmoraQtDriverSharedMemory");
    if (!removeUnusedMarker(marker))
        return;
    for (const QString &key : {QStringLiteral("VesmoraQtDriverSemaphore"), marker})
        const QSystemSemaphore removedAtOnce(key, 1, QSystemSemaphore::Create);
}

QProcessEnvironment HostLane::environment() const
{
    QProcessEnvironment environment = desktop().environment();
    environment.insert(QStringLiteral("VESMORA_HOST_DIR"),
                       m_temporary.filePath(QStringLiteral("devices")));
    return environment;
}

QProcessEnvironment HostLane::panelEnvironment(const QString &locale) const
{
    QProcessEnvironment environment = this->environment();
    const QStringList names = environment.keys();
    for (const QString &name : names) {
        if (name.startsWith(QStringLiteral("LC_")) || name == QStringLiteral("LANGUAGE"))
            environment.remove(name);
    }
    environment.insert(QStringLiteral("PATH"),
                       windowsFolder() + u':' + environment.value(QStringLiteral("PATH")));
    environment.insert(QStringLiteral("QT_SCALE_FACTOR"), QString::number(m_scale));
    environment.insert(QStringLiteral("LANG"), locale);
    environment.insert(QStringLiteral("LC_CTYPE"), QStringLiteral("C.UTF-8"));
    environment.insert(QStringLiteral("XDG_DATA_HOME"), sub(QStringLiteral("data")));
    environment.insert(QStringLiteral("TMPDIR"), sub(QStringLiteral("tmp")));
    environment.insert(QStringLiteral("QT_FORCE_STDERR_LOGGING"), QStringLiteral("1"));
    if (desktop().isPrivate())
        environment.insert(QStringLiteral("XDG_RUNTIME_DIR"),
                           m_temporary.filePath(QStringLiteral("runtime")));
    return environment;
}
