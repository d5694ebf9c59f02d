#include "hostfolder.h"

#include <QDir>
#include <QFileInfo>
#include <QTemporaryDir>
#include <QTest>

#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>

class tst_HostFolder : public QObject
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

void tst_HostFolder::init()
{
    QVERIFY(m_temporary.isValid());
    qunsetenv("VESMORA_HOST_DIR");
    qunsetenv("XDG_RUNTIME_DIR");
}

QString tst_HostFolder::makeFolder(const QString &name)
{
    QString path = m_temporary.filePath(name);
    QDir().mkdir(path);
    chmod(path.toLocal8Bit().constData(), 0700);
    return path;
}

int tst_HostFolder::open(const QString &folder)
{
    qputenv("VESMORA_HOST_DIR", folder.toLocal8Bit());
    UniqueFd opened;
    const int error = openHostFolder(opened);
    if (error == 0 && !opened)
        return -1;
    return error;
}

void tst_HostFolder::ourOwnVariableComesFirst()
{
    qputenv("XDG_RUNTIME_DIR", "/run/user/1");
    qputenv("VESMORA_HOST_DIR", "/somewhere/else");
    QCOMPARE(hostFolderPath(), std::string("/somewhere/else"));
}

void tst_HostFolder::theRuntimeFolderComesSecond()
{
    qputenv("XDG_RUNTIME_DIR", "/run/user/1");
    QCOMPARE(hostFolderPath(), std::string("/run/user/1/vesmora"));
}

void tst_HostFolder::theTemporaryFolderComesLast()
{
    QCOMPARE(hostFolderPath(), "/tmp/vesmora-" + std::to_string(geteuid()));
}

void tst_HostFolder::aMissingFolderIsMadePrivate()
{
    const QString path = m_temporary.filePath("missing");
    QCOMPARE(open(path), 0);
    struct stat status = {};
    QCOMPARE(stat(path.toLocal8Bit().constData(), &status), 0);
    QCOMPARE(status.st_mode & 07777u, 0700u);
}

void tst_HostFolder::aPrivateFolderIsTaken()
{
    QCOMPARE(open(makeFolder("private")), 0);
}

void tst_HostFolder::aFolderOpenToOthersIsRefused()
{
    const QString path = makeFolder("shared");
    for (const mode_t mode : {0710u, 0740u, 0701u, 0755u, 0777u}) {
        QCOMPARE(chmod(path.toLocal8Bit().constData(), mode), 0);
        QCOMPARE(open(path), EACCES);
    }
}

void tst_HostFolder::aFolderOfAnotherUserIsRefused()
{
    // Only root can give a folder away; everybody else has root's own to be refused.
    QString foreign = "/root";
    if (geteuid() == 0) {
        foreign = makeFolder("foreign");
        QCOMPARE(chown(foreign.toLocal8Bit().constData(), 65534, 65534), 0);
    }
    QCOMPARE(open(foreign), EACCES);
}

void tst_HostFolder::aSymbolicLinkIsRefused()
{
    const QString target = makeFolder("target");
    const QString link = m_temporary.filePath("link");
    QVERIFY(QFile::link(target, link));
    QCOMPARE(open(link), EACCES);
}

void tst_HostFolder::aFileIsRefused()
{
    QFile file(m_temporary.filePath("file"));
    QVERIFY(file.open(QIODevice::WriteOnly));
    QCOMPARE(open(file.fileName()), EACCES);
}

void tst_HostFolder::aMissingParentIsNotFound()
{
    QCOMPARE(open(m_temporary.filePath("no/such")), ENOENT);
}

QTEST_GUILESS_MAIN(tst_HostFolder)
#include "tst_hostfolder.moc"
