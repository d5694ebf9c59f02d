#include "hostfolder.h"

#include <QDir>
#include <QFileInfo>
#include <QTemporaryDir>
#include <QTest>

#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>

class TestHostFolder : public QObject
{
    Q_OBJECT

private slots:
    void init();

    void ourOwnVariableComesFirst();
    void theRuntimeFolderComesSecond();
    void theTemporaryFolderComesLast();
    void aMissingFolderIsMadePrivate();
    void aPrivateFolderIsTaken();
    void aFolderOpenToOthersIsRefused();
    void aFolderOfAnotherUserIsRefused();
    void aSymbolicLinkIsRefused();
    void aFileIsRefused();
    void aMissingParentIsNotFound();

private:
    QString makeFolder(const QString &name);
    int open(const QString &folder);

    QTemporaryDir m_temporary;
};

void TestHostFolder::init()
{
    QVERIFY(m_temporary.isValid());
    qunsetenv("VESMORA_HOST_DIR");
    qunsetenv("XDG_RUNTIME_DIR");
}

QString TestHostFolder::makeFolder(const QString &name)
{
    QString path = m_temporary.filePath(name);
    QDir().mkdir(path);
    chmod(path.toLocal8Bit().constData(), 0700);
    return path;
}

int TestHostFolder::open(const QString &folder)
{
    qputenv("VESMORA_HOST_DIR", folder.toLocal8Bit());
    UniqueFd opened;
    const int error = openHostFolder(opened);
    if (error == 0 && !opened)
        return -1;
    return error;
}

void TestHostFolder::ourOwnVariableComesFirst()
{
    qputenv("XDG_RUNTIME_DIR", "/run/user/1");
    qputenv("VESMORA_HOST_DIR", "/somewhere/else");
    QCOMPARE(hostFolderPath(), std::string("/somewhere/else"));
}

void TestHostFolder::theRuntimeFolderComesSecond()
{
    qputenv("XDG_RUNTIME_DIR", "/run/user/1");
    QCOMPARE(hostFolderPath(), std::string("/run/user/1/vesmora"));
}

void TestHostFolder::theTemporaryFolderComesLast()
{
    QCOMPARE(hostFolderPath(), "/tmp/vesmora-" + std::to_string(geteuid()));
}

void TestHostFolder::aMissingFolderIsMadePrivate()
{
    const QString path = m_temporary.filePath(QStringLiteral("missing"));
    QCOMPARE(open(path), 0);
    struct stat status = {};
    QCOMPARE(stat(path.toLocal8Bit().constData(), &status), 0);
    QCOMPARE(status.st_mode & 07777u, 0700u);
}

void TestHostFolder::aPrivateFolderIsTaken()
{
    QCOMPARE(open(makeFolder(QStringLiteral("private"))), 0);
}

void TestHostFolder::aFolderOpenToOthersIsRefused()
{
    const QString path = makeFolder(QStringLiteral("shared"));
    for (const mode_t mode : {0710u, 0740u, 0701u, 0755u, 0777u}) {
        QCOMPARE(chmod(path.toLocal8Bit().constData(), mode), 0);
        QCOMPARE(open(path), EACCES);
    }
}

void TestHostFolder::aFolderOfAnotherUserIsRefused()
{
    // Only root can give a folder away; everybody else has root's own to be refused.
    QString foreign = QStringLiteral("/root");
    if (geteuid() == 0) {
        foreign = makeFolder(QStringLiteral("foreign"));
        QCOMPARE(chown(foreign.toLocal8Bit().constData(), 65534, 65534), 0);
    }
    QCOMPARE(open(foreign), EACCES);
}

void TestHostFolder::aSymbolicLinkIsRefused()
{
    const QString target = makeFolder(QStringLiteral("target"));
    const QString link = m_temporary.filePath(QStringLiteral("link"));
    QVERIFY(QFile::link(target, link));
    QCOMPARE(open(link), EACCES);
}

void TestHostFolder::aFileIsRefused()
{
    QFile file(m_temporary.filePath(QStringLiteral("file")));
    QVERIFY(file.open(QIODevice::WriteOnly));
    QCOMPARE(open(file.fileName()), EACCES);
}

void TestHostFolder::aMissingParentIsNotFound()
{
    QCOMPARE(open(m_temporary.filePath(QStringLiteral("no/such"))), ENOENT);
}

QTEST_GUILESS_MAIN(TestHostFolder)
#include "tst_hostfolder.moc"
