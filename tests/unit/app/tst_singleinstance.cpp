#include "logcapture.h"
#include "singleinstance.h"
#include "waysout.h"

#include <QSharedMemory>
#include <QSystemSemaphore>
#include <QTest>
#include <QUuid>

#include <atomic>
#include <thread>
#include <vector>

/// How a starting process learns whether it is the only one.
class tst_SingleInstance : public QObject
{
    Q_OBJECT

private slots:
    void init();

    void theFirstCopyGoesOn();
    void aSecondCopyEndsWithZeroAndLeavesTheFirstAlone();
    void aMarkerThatCannotBeMadeEndsWithMinusOne();
    void theMarkGoesWithTheFirstCopy();
    void ofCopiesThatStartTogetherOneGoesOn();
    void theSemaphoreIsFreeAfterEachWayOut_data() { addWaysOut(); }
    void theSemaphoreIsFreeAfterEachWayOut();

private:
    QString m_semaphoreKey;
    QString m_markerKey;
};

void tst_SingleInstance::init()
{
    const QString unique = QUuid::createUuid().toString(QUuid::Id128);
    m_semaphoreKey = QString("semaphore") + unique;
    m_markerKey = QString("marker") + unique;
}

void tst_SingleInstance::theFirstCopyGoesOn()
{
    QSystemSemaphore semaphore(m_semaphoreKey, 1, QSystemSemaphore::Open);
    QSharedMemory marker(m_markerKey);
    LogCapture log;
    QCOMPARE(claimSingleInstance(semaphore, marker), std::optional<int>());
    QCOMPARE(log.lines(), QStringList());
    QVERIFY(marker.isAttached());
    QVERIFY(marker.size() >= 1);
}

void tst_SingleInstance::aSecondCopyEndsWithZeroAndLeavesTheFirstAlone()
{
    QSystemSemaphore semaphore(m_semaphoreKey, 1, QSystemSemaphore::Open);
    QSharedMemory first(m_markerKey);
    QCOMPARE(claimSingleInstance(semaphore, first), std::optional<int>());

    for (int copy = 0; copy < 2; ++copy) {
        QSystemSemaphore copysSemaphore(m_semaphoreKey, 1, QSystemSemaphore::Open);
        QSharedMemory second(m_markerKey);
        LogCapture log;
        QCOMPARE(claimSingleInstance(copysSemaphore, second), std::optional<int>(0));
        QCOMPARE(log.lines(), QStringList{"Vesmora Mixer 已经在运行中。"});
    }
    QVERIFY(first.isAttached());
}

void tst_SingleInstance::aMarkerThatCannotBeMadeEndsWithMinusOne()
{
    QSystemSemaphore semaphore(m_semaphoreKey, 1, QSystemSemaphore::Open);
    QSharedMemory nameless;
    LogCapture log;
    QCOMPARE(claimSingleInstance(semaphore, nameless), std::optional<int>(-1));
    QCOMPARE(log.lines(), QStringList{"无法创建共享内存，程序退出。"});
}

void tst_SingleInstance::theMarkGoesWithTheFirstCopy()
{
    QSystemSemaphore semaphore(m_semaphoreKey, 1, QSystemSemaphore::Open);
    for (int run = 0; run < 2; ++run) {
        QSharedMemory marker(m_markerKey);
        QCOMPARE(claimSingleInstance(semaphore, marker), std::optional<int>());
    }
}

void tst_SingleInstance::ofCopiesThatStartTogetherOneGoesOn()
{
    constexpr int copies = 8;
    const QSystemSemaphore keepsTheKey(m_semaphoreKey, 1, QSystemSemaphore::Open);
    std::vector<std::unique_ptr<QSharedMemory>> markers;
    for (int copy = 0; copy < copies; ++copy)
        markers.push_back(std::make_unique<QSharedMemory>(m_markerKey));

    LogCapture log;
    std::atomic<int> going = 0;
    std::atomic<int> ending = 0;
    std::vector<std::thread> threads;
    for (const auto &marker : markers) {
        threads.emplace_back([this, &marker, &going, &ending] {
            QSystemSemaphore semaphore(m_semaphoreKey, 1, QSystemSemaphore::Open);
            const auto exitCode = claimSingleInstance(semaphore, *marker);
            ++(exitCode ? ending : going);
        });
    }
    for (std::thread &thread : threads)
        thread.join();
    QCOMPARE(going.load(), 1);
    QCOMPARE(ending.load(), copies - 1);
    QCOMPARE(log.lines(), QStringList(copies - 1, "Vesmora Mixer 已经在运行中。"));
}

void tst_SingleInstance::theSemaphoreIsFreeAfterEachWayOut()
{
    QSystemSemaphore semaphore(m_semaphoreKey, 1, QSystemSemaphore::Open);
    LogCapture log;
    takeWayOut(semaphore, m_markerKey);

    std::atomic<bool> acquired = false;
    std::thread next([this, &acquired] {
        QSystemSemaphore(m_semaphoreKey, 1, QSystemSemaphore::Open).acquire();
        acquired = true;
    });
    const bool wasFree = QTest::qWaitFor([&acquired] { return acquired.load(); }, 30000);
    if (!wasFree)
        semaphore.release(); // so that the thread can be joined
    next.join();
    QVERIFY(wasFree);
}

QTEST_GUILESS_MAIN(tst_SingleInstance)
#include "tst_singleinstance.moc"
