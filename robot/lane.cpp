#include "lane.h"

#include "hostlane.h"
#include "waiting.h"
#include "winelane.h"

#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QFileInfo>
#include <QSettings>

namespace {

// Wine is slow to start on a loaded machine.
constexpr std::chrono::minutes simulatorDeadline{2};

/// Copies @p program and the libraries beside and below it to the folder @p to.
bool copyProgram(const QFileInfo &program, const QDir &to)
{
    const QDir from = program.dir();
    QDirIterator libraries(from.path(), {QStringLiteral("*.dll")}, QDir::Files,
                           QDirIterator::Subdirectories);
    QStringList files{program.filePath()};
    while (libraries.hasNext())
        files << libraries.next();
    for (const QString &file : std::as_const(files)) {
        const QString target = to.filePath(from.relativeFilePath(file));
        const bool copied = QDir().mkpath(QFileInfo(target).path())
            && (QFileInfo::exists(target) || QFile::copy(file, target));
        if (!copied)
            return false;
    }
    return true;
}

} // namespace

Lane::Lane(const Desktop &desktop, const LanePrograms &programs)
    : m_desktop(desktop)
    , m_programs(programs)
    , m_simulator([this](const QStringList &arguments) { return simctl(arguments); })
{ }

Lane::~Lane() = default;

std::unique_ptr<Lane> Lane::fromEnvironment(const Desktop &desktop)
{
    const LanePrograms programs{
        qEnvironmentVariable("VESMORA_PANEL"), qEnvironmentVariable("VESMORA_SIMULATOR"),
        qEnvironmentVariable("VESMORA_SIMCTL"), qEnvironmentVariable("VESMORA_ASIO")};
    if (qEnvironmentVariable("VESMORA_LANE") == QStringLiteral("windows"))
        return std::make_unique<WineLane>(desktop, programs);
    return std::make_unique<HostLane>(desktop, programs);
}

std::unique_ptr<PanelProgram> Lane::launch(const QString &locale)
{
    return launchProgram(m_programs.panel, locale);
}

std::unique_ptr<PanelProgram> Lane::launchWithoutTranslations(const QString &locale)
{
    const QFileInfo panel(m_programs.panel);
    const QDir copy(scratchFolder() + QStringLiteral("/untranslated"));
    if (!copyProgram(panel, copy)) {
        fail(QStringLiteral("cannot copy %1 to %2").arg(panel.path(), copy.path()));
        return nullptr;
    }
    return launchProgram(copy.filePath(panel.fileName()), locale);
}

std::unique_ptr<PanelProgram> Lane::launchProgram(const QString &program, const QString &locale)
{
    auto panel = std::make_unique<PanelProgram>(logEncoding());
    if (!startPanel(panel->m_process, program, locale)) {
        fail(QStringLiteral("%1: %2").arg(program, panel->m_process.errorString()));
        return nullptr;
    }
    panel->m_kill = [this, process = &panel->m_process] { killPanel(*process); };
    return panel;
}

bool Lane::startSimulator(const QProcessEnvironment &environment)
{
    m_simulatorProcess.setProcessEnvironment(environment);
    if (!m_simulatorProcess.launch(m_programs.simulator, {}))
        return fail(m_programs.simulator + QStringLiteral(": ") + m_simulatorProcess.errorString());
    const bool answered = waitUntil(
        [this] {
            return m_simulatorProcess.canReadLine()
                || m_simulatorProcess.state() == QProcess::NotRunning;
        },
        simulatorDeadline);
    if (answered && m_simulatorProcess.readLine().trimmed() == "ready")
        return true;
    return fail(QStringLiteral("the simulator did not become ready: %1")
                    .arg(QString::fromUtf8(m_simulatorProcess.readAllStandardError())));
}

void Lane::stopSimulator()
{
    m_simulatorProcess.stop(simulatorDeadline);
}

std::unique_ptr<ChildProcess> Lane::startBeside(const QString &program,
                                                const QStringList &arguments,
                                                const QProcessEnvironment &environment)
{
    auto process = std::make_unique<ChildProcess>();
    process->setProcessEnvironment(environment);
    if (process->launch(program, arguments))
        return process;
    fail(QStringLiteral("%1: %2").arg(program, process->errorString()));
    return nullptr;
}

QString Lane::settingsFile(const QString &name) const
{
    return settingsFolder() + u'/' + name;
}

QVariant Lane::setting(const QString &file, const QString &key) const
{
    return QSettings(settingsFile(file), QSettings::IniFormat).value(key);
}

bool Lane::clearSettings()
{
    return QDir(settingsFolder()).removeRecursively();
}

bool Lane::fail(const QString &why)
{
    m_error = why;
    return false;
}
