#include "waysout.h"

#include <QDir>
#include <QSystemSemaphore>
#include <QTest>
#include <QUuid>

#include <sys/ipc.h>
#include <sys/sem.h>

namespace {

/// The value of the semaphore whose key has those letters in it, read from the system; -1 when
/// there is none.
int valueOf(const QString &letters)
{
    const QStringList files =
        QDir(QDir::tempPath()).entryList({QString("qipc_systemsem_%1*").arg(letters)});
    if (files.size() != 1)
        return -1;
    const QByteArray path = QFile::encodeName(QDir::temp().filePath(files.constFirst()));
    const int id = semget(ftok(path.constData(), 'Q'), 1, 0600);
    return semctl(id, 0, GETVAL);
}

/// A key of letters alone, which is what remains of it in the file's name.
QString letterKey()
{
    QString key;
    const QByteArray bytes = QUuid::createUuid().toRfc4122();
    for (const char byte : bytes)
        key += QChar(u'a' + static_cast<uchar>(byte) % 26);
    return key;
}

} // namespace

/// Start-up takes the semaphore once and releases it once, whatever it finds.
class tst_InstanceSemaphore : public QObject
{
    Q_OBJECT

private slots:
    void isReleasedExactlyOnce_data() { addWaysOut(); }
    void isReleasedExactlyOnce();
};

void tst_InstanceSemaphore::isReleasedExactlyOnce()
{
    const QString key = letterKey();
    QSystemSemaphore semaphore(key, 1, QSystemSemaphore::Open);
    QCOMPARE(valueOf(key), 1);
    QVERIFY(semaphore.acquire());
    QCOMPARE(valueOf(key), 0);
    QVERIFY(semaphore.release());

    // Another key: shared memory has a semaphore of its own under its.
    takeWayOut(semaphore, letterKey());
    QCOMPARE(valueOf(key), 1);
}

QTEST_GUILESS_MAIN(tst_InstanceSemaphore)
#include "tst_instancesemaphore.moc"
