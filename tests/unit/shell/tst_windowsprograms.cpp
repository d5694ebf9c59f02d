#include "boxwatcher.h"
#include "logcapture.h"
#include "logtext.h"
#include "trayicon.h"

#include <QAction>
#include <QDir>
#include <QMenu>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

namespace {

const QString refresh = "Refresh Audio Device";
const QString soundPannel = "Win Sound Pannel";

const QString restarted = "资源管理器已成功重启";
const QString timedOut = "重启资源管理器超时";

constexpr int patience = 30000; // milliseconds

} // namespace

/// The entries that start programs of Windows, with shell scripts in their place.
class tst_WindowsPrograms : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { m_path = qgetenv("PATH"); }
    void init();
    void cleanup();

    void theSoundPannelOpensWithItsOneParameter();
    void withoutASoundPannelAWarningIsShown();
    void aSoundPannelThatCannotBeRunShowsTheWarning();
    void refreshRunsOneCommandLine();
    void aFailingRefreshLogsCodeAndBothOutputs();
    void aSilentlyFailingRefreshLogsEmptyOutputs();
    void aHangingRefreshIsGivenUpAndStillLogsSuccess();
    void refreshWithoutAShellLogsTheErrorAndSuccess();

private:
    /// Puts a shell script of that name on the path. "$arguments" in it is the file to which it
    /// may write what it was called with.
    void addProgram(const QString &name, const QByteArray &script);
    QString argumentsFile() const { return m_folder->filePath("arguments"); }
    QByteArray arguments() const;
    /// What the log says when that entry is chosen.
    QStringList logOf(const QString &entry) const;

    QByteArray m_path;
    std::unique_ptr<QTemporaryDir> m_folder;
};

void tst_WindowsPrograms::init()
{
    m_folder = std::make_unique<QTemporaryDir>();
    QVERIFY(m_folder->isValid());
    // Nothing else is on the path, so that nothing else is found.
    qputenv("PATH", QFile::encodeName(m_folder->path()));
}

void tst_WindowsPrograms::cleanup()
{
    qputenv("PATH", m_path);
    m_folder.reset();
}

void tst_WindowsPrograms::addProgram(const QString &name, const QByteArray &script)
{
    QFile file(m_folder->filePath(name));
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write("#!/bin/sh\nPATH='" + m_path + "'\narguments='" + QFile::encodeName(argumentsFile())
               + "'\n" + script + '\n');
    QVERIFY(file.setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner));
}

QByteArray tst_WindowsPrograms::arguments() const
{
    QFile file(argumentsFile());
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

QStringList tst_WindowsPrograms::logOf(const QString &entry) const
{
    const TrayIcon tray;
    LogCapture log;
    const QList<QAction *> actions = tray.contextMenu()->actions();
    for (QAction *action : actions) {
        if (action->text() == entry)
            action->trigger();
    }
    return withoutPlatformRemarks(log.lines());
}

void tst_WindowsPrograms::theSoundPannelOpensWithItsOneParameter()
{
    addProgram("control.exe",
               "printf '%s|' \"$@\" >\"$arguments.new\"; mv \"$arguments.new\" \"$arguments\"");
    const BoxWatcher watcher;
    QCOMPARE(logOf(soundPannel), QStringList{"声音设置面板已打开。"});
    QTRY_VERIFY_WITH_TIMEOUT(QFile::exists(argumentsFile()), patience);
    QCOMPARE(arguments(), QByteArray("mmsys.cpl|"));
    QVERIFY(watcher.boxes().isEmpty());
}

void tst_WindowsPrograms::withoutASoundPannelAWarningIsShown()
{
    const BoxWatcher watcher;
    QCOMPARE(logOf(soundPannel), QStringList());
    verifyOneWarning(watcher, "错误", "无法打开声音设置面板，请检查系统设置。");
}

void tst_WindowsPrograms::aSoundPannelThatCannotBeRunShowsTheWarning()
{
    addProgram("control.exe", "exit 0");
    QVERIFY(QFile::setPermissions(m_folder->filePath("control.exe"), QFile::ReadOwner));
    const BoxWatcher watcher;
    QCOMPARE(logOf(soundPannel), QStringList());
    verifyOneWarning(watcher, "错误", "无法打开声音设置面板，请检查系统设置。");
}

void tst_WindowsPrograms::refreshRunsOneCommandLine()
{
    addProgram("cmd.exe", "printf '%s|' \"$@\" >\"$arguments\"; echo unheard; echo unheard >&2");
    QCOMPARE(logOf(refresh), QStringList{restarted});
    QCOMPARE(arguments(), QByteArray("/c|taskkill /f /im explorer.exe && start explorer.exe|"));
}

void tst_WindowsPrograms::aFailingRefreshLogsCodeAndBothOutputs()
{
    addProgram("cmd.exe", "echo killed; echo 'not \"found\"' >&2; exit 3");
    const QStringList expected{"命令执行失败，退出代码: 3", R"(输出: "killed\n")",
                               R"(错误输出: "not \"found\"\n")", restarted};
    QCOMPARE(logOf(refresh), expected);
}

void tst_WindowsPrograms::aSilentlyFailingRefreshLogsEmptyOutputs()
{
    addProgram("cmd.exe", "exit 255");
    const QStringList expected{"命令执行失败，退出代码: 255", R"(输出: "")", R"(错误输出: "")",
                               restarted};
    QCOMPARE(logOf(refresh), expected);
}

void tst_WindowsPrograms::aHangingRefreshIsGivenUpAndStillLogsSuccess()
{
    addProgram("cmd.exe", "exec tail -f /dev/null");
    // The last line is the framework's: the command is not left running.
    const QStringList expected{
        timedOut, R"(错误信息: "Process operation timed out")", restarted,
        R"(QProcess: Destroyed while process ("cmd.exe") is still running.)"};
    QCOMPARE(logOf(refresh), expected);
}

void tst_WindowsPrograms::refreshWithoutAShellLogsTheErrorAndSuccess()
{
    QProcess missing;
    missing.start("cmd.exe", QStringList());
    QVERIFY(!missing.waitForStarted());
    const QString error = QString("错误信息: \"%1\"").arg(missing.errorString());

    // The framework gives a process that did not start an exit code of its own.
    const QString code = QString("命令执行失败，退出代码: %1").arg(missing.exitCode());
    const QStringList expected{timedOut, error, code, R"(输出: "")", R"(错误输出: "")", restarted};
    QCOMPARE(logOf(refresh), expected);
}

QTEST_MAIN(tst_WindowsPrograms)
#include "tst_windowsprograms.moc"
