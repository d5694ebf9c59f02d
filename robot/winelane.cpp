#include "winelane.h"

#include "waiting.h"

#include <QDir>
#include <QFileInfo>

namespace {

QString windowsPath(const QString &path)
{
    QString converted = QFileInfo(path).absoluteFilePath();
    converted.replace(u'/', u'\\');
    return QStringLiteral("Z:") + converted;
}

} // namespace

WineLane::WineLane(const Desktop &desktop, const LanePrograms &programs)
    : Lane(desktop, programs)
    , m_temporary(QStringLiteral("/tmp/vesmora-XXXXXX"))
    , m_prefix(qEnvironmentVariable("WINEPREFIX"))
{ }

WineLane::~WineLane()
{
    // The prefix is kept, for others.
    if (m_isScaled)
        WineLane::setScale(1);
    stopSimulator();
}

bool WineLane::open()
{
    if (m_prefix.isEmpty())
        return fail(QStringLiteral("WINEPREFIX names no Wine prefix"));
    return makeLocale(QStringLiteral("zh_CN")) && makeLocale(QStringLiteral("en_US"))
        && startSimulator(environment());
}

CommandResult WineLane::asio(const QStringList &arguments)
{
    return wine(QStringList(programs().asio) + arguments);
}

bool WineLane::setScale(double scale)
{
    constexpr int dotsPerInchAtFullSize = 96;
    m_isScaled = true;
    const CommandResult set =
        wine({QStringLiteral("reg"), QStringLiteral("add"),
              QStringLiteral("HKCU\\Control Panel\\Desktop"), QStringLiteral("/v"),
              QStringLiteral("LogPixels"), QStringLiteral("/t"), QStringLiteral("REG_DWORD"),
              QStringLiteral("/d"), QString::number(qRound(scale * dotsPerInchAtFullSize)),
              QStringLiteral("/f")});
    return set.succeeded() || fail(QString::fromLocal8Bit(set.errorOutput));
}

/// The shell that starts with Wine is a tray only; a new one shows its folders.
bool WineLane::hasRestartedShell() const
{
    return desktop().windows().visibleWindow(QStringLiteral("Desktop")).has_value();
}

std::unique_ptr<ChildProcess> WineLane::startAsio(const QStringList &arguments)
{
    return startBeside(QStringLiteral("wine"), QStringList(programs().asio) + arguments,
                       environment());
}

CommandResult WineLane::simctl(const QStringList &arguments)
{
    CommandResult result = wine(QStringList(programs().simctl) + arguments);
    result.output.replace("\r\n", "\n");
    return result;
}

QString WineLane::settingsFolder() const
{
    const QDir users(m_prefix + QStringLiteral("/drive_c/users"));
    const QStringList names = users.entryList(QDir::Dirs | QDir::NoDotAndDotDot);
    for (const QString &name : names) {
        if (name != QStringLiteral("Public"))
            return users.filePath(name + QStringLiteral("/AppData/Roaming/VesmoraDriver"));
    }
    return users.filePath(QStringLiteral("nobody"));
}

bool WineLane::startPanel(ChildProcess &process, const QString &program, const QString &locale)
{
    if (!makeLocale(locale))
        return false;
    // Wine keeps variables that begin with QT_ from Windows programs, so one is set inside.
    const QString command =
        QStringLiteral("set QT_FORCE_STDERR_LOGGING=1&& %1").arg(windowsPath(program));
    process.setProcessEnvironment(environment(locale));
    return process.launch(QStringLiteral("wine"),
                          {QStringLiteral("cmd"), QStringLiteral("/c"), command});
}

void WineLane::killPanel(ChildProcess &process)
{
    // On a busy machine the command sometimes misses the program.
    waitUntil([&] {
        if (process.state() != QProcess::NotRunning)
            wine({QStringLiteral("taskkill"), QStringLiteral("/f"), QStringLiteral("/im"),
                  QFileInfo(programs().panel).fileName()});
        return process.state() == QProcess::NotRunning;
    });
    process.stop();
}

/// Windows' language follows the C library's locale, which must exist. It is compiled into a folder
/// of ours: installing one for the whole machine takes root.
bool WineLane::makeLocale(const QString &locale)
{
    const QString folder = m_temporary.filePath(QStringLiteral("locales"));
    const QString target = folder + u'/' + locale + QStringLiteral(".UTF-8");
    if (QFileInfo::exists(target))
        return true;
    if (!QDir().mkpath(folder))
        return fail(QStringLiteral("cannot create %1").arg(folder));
    const CommandResult made = runCommand(
        QStringLiteral("localedef"),
        {QStringLiteral("-i"), locale, QStringLiteral("-f"), QStringLiteral("UTF-8"), target},
        QProcessEnvironment::systemEnvironment());
    return made.succeeded() || fail(QString::fromLocal8Bit(made.errorOutput));
}

CommandResult WineLane::wine(const QStringList &arguments) const
{
    return runCommand(QStringLiteral("wine"), arguments, environment());
}

/// Windows' code page follows the character type, its language the messages: so every panel writes
/// Chinese log lines that can be read, whatever its language.
QProcessEnvironment WineLane::environment(const QString &locale) const
{
    QProcessEnvironment environment = desktop().environment();
    environment.remove(QStringLiteral("LC_ALL"));
    environment.remove(QStringLiteral("LANGUAGE"));
    environment.insert(QStringLiteral("LOCPATH"), m_temporary.filePath(QStringLiteral("locales")));
    environment.insert(QStringLiteral("LANG"), locale + QStringLiteral(".UTF-8"));
    environment.insert(QStringLiteral("LC_CTYPE"), QStringLiteral("zh_CN.UTF-8"));
    environment.insert(QStringLiteral("LC_MESSAGES"), locale + QStringLiteral(".UTF-8"));
    // The simulator's programs use the libraries that are packed with the panel.
    environment.insert(QStringLiteral("WINEPATH"), windowsPath(QFileInfo(programs().panel).path()));
    return environment;
}
