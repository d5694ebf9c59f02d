#include <windows.h>

#include <QFile>
#include <QTemporaryDir>
#include <QTest>

#include <sys/wait.h>

#include <cerrno>
#include <cstdint>
#include <memory>

class tst_ShellExecute : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void aProgramOnThePathIsStarted();
    void aProgramIsStartedByItsPath();
    void theParametersAreSplitAtSpaces();
    void theProgramRunsInTheGivenFolder();
    void theProgramIsLetGo();
    void aMissingProgramIsNotFound();
    void aFileThatIsNoProgramIsDenied();
    void aLaterFolderOfThePathIsTried();
    void otherOperationsAreUnknown();

private:
    /// A program that writes its folder and arguments, a line each, to the file "ran".
    void writeProgram(const QString &name, bool executable = true);
    /// What it wrote, once it has.
    QByteArray output();
    intptr_t execute(const QByteArray &file, LPCSTR parameters = nullptr, LPCSTR folder = nullptr);

    std::unique_ptr<QTemporaryDir> m_folder;
    QByteArray m_path;
};

void tst_ShellExecute::init()
{
    m_folder = std::make_unique<QTemporaryDir>();
    QVERIFY(m_folder->isValid());
    m_path = qgetenv("PATH");
    qputenv("PATH", m_folder->path().toLocal8Bit() + ":/usr/bin:/bin");
}

void tst_ShellExecute::cleanup()
{
    qputenv("PATH", m_path);
}

void tst_ShellExecute::writeProgram(const QString &name, bool executable)
{
    const QByteArray folder = m_folder->path().toLocal8Bit();
    QFile program(m_folder->filePath(name));
    QVERIFY(program.open(QIODevice::WriteOnly));
    program.write("#!/bin/sh\n{ pwd; for word; do echo \"$word\"; done; } >" + folder + "/writing\n"
                  + "mv " + folder + "/writing " + folder + "/ran\n");
    program.close();
    if (executable)
        QVERIFY(program.setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner));
}

QByteArray tst_ShellExecute::output()
{
    QFile file(m_folder->filePath("ran"));
    if (!QTest::qWaitFor([&] { return file.exists(); }, 20000) || !file.open(QIODevice::ReadOnly))
        return "nothing ran";
    return file.readAll();
}

intptr_t tst_ShellExecute::execute(const QByteArray &file, LPCSTR parameters, LPCSTR folder)
{
    return reinterpret_cast<intptr_t>(
        ShellExecuteA(nullptr, "open", file.constData(), parameters, folder, SW_SHOWNORMAL));
}

void tst_ShellExecute::aProgramOnThePathIsStarted()
{
    writeProgram("control.exe");
    QVERIFY(execute("control.exe", "mmsys.cpl") > 32);
    QVERIFY(output().endsWith("\nmmsys.cpl\n"));
}

void tst_ShellExecute::aProgramIsStartedByItsPath()
{
    writeProgram("elsewhere");
    qputenv("PATH", "/usr/bin:/bin");
    QVERIFY(execute(m_folder->filePath("elsewhere").toLocal8Bit()) > 32);
    QCOMPARE(output().count('\n'), 1);
}

void tst_ShellExecute::theParametersAreSplitAtSpaces()
{
    writeProgram("program");
    QVERIFY(execute("program", " one  two three ") > 32);
    QVERIFY(output().endsWith("\none\ntwo\nthree\n"));
}

void tst_ShellExecute::theProgramRunsInTheGivenFolder()
{
    writeProgram("program");
    QVERIFY(execute("program", nullptr, "/usr") > 32);
    QCOMPARE(output(), QByteArray("/usr\n"));
}

void tst_ShellExecute::theProgramIsLetGo()
{
    writeProgram("program");
    QVERIFY(execute("program") > 32);
    output();
    QCOMPARE(waitpid(-1, nullptr, WNOHANG), -1);
    QCOMPARE(errno, ECHILD);
}

void tst_ShellExecute::aMissingProgramIsNotFound()
{
    QCOMPARE(execute("no-such-program"), intptr_t{SE_ERR_FNF});
    QCOMPARE(GetLastError(), ERROR_FILE_NOT_FOUND);
    QCOMPARE(execute("/no/such/program"), intptr_t{SE_ERR_FNF});
    QCOMPARE(execute(""), intptr_t{SE_ERR_FNF});
}

void tst_ShellExecute::aFileThatIsNoProgramIsDenied()
{
    writeProgram("text", false);
    QCOMPARE(execute("text"), intptr_t{SE_ERR_ACCESSDENIED});
    QCOMPARE(execute("/usr/bin/"), intptr_t{SE_ERR_ACCESSDENIED});
}

void tst_ShellExecute::aLaterFolderOfThePathIsTried()
{
    writeProgram("program");
    qputenv("PATH", "/no/such/folder:" + m_folder->path().toLocal8Bit() + ":/usr/bin:/bin");
    QVERIFY(execute("program") > 32);
    QCOMPARE(output().count('\n'), 1);
}

void tst_ShellExecute::otherOperationsAreUnknown()
{
    writeProgram("program");
    QCOMPARE(reinterpret_cast<intptr_t>(
                 ShellExecuteA(nullptr, "print", "program", nullptr, nullptr, SW_SHOWNORMAL)),
             intptr_t{SE_ERR_NOASSOC});
}

QTEST_GUILESS_MAIN(tst_ShellExecute)
#include "tst_shellexecute.moc"
