#include "opening.h"
#include "testsimulator.h"

#include <QTest>

/// A device that is there and refuses to be opened.
class tst_RefusedOpen : public QObject
{
    Q_OBJECT

private slots:
    void isReportedWithItsErrorAndTheNextPathIsTried_data();
    void isReportedWithItsErrorAndTheNextPathIsTried();
    void cleanupTestCase();

private:
    TestSimulator m_simulator;
    int m_faults = 0;
};

void tst_RefusedOpen::isReportedWithItsErrorAndTheNextPathIsTried_data()
{
    QTest::addColumn<quint32>("error");
    QTest::newRow("access denied") << 5u;
    QTest::newRow("general failure") << 31u;
    QTest::newRow("sharing violation") << 32u;
    QTest::newRow("I/O device") << 1117u;
    QTest::newRow("not connected") << 1167u;
    QTest::newRow("largest") << 65535u;
}

void tst_RefusedOpen::isReportedWithItsErrorAndTheNextPathIsTried()
{
    QFETCH(quint32, error);
    QVERIFY(m_simulator.reset() && m_simulator.plug(VESMORA_PID_RX1, 1));
    QVERIFY(m_simulator.fail("open", 1, error));
    ++m_faults;
    auto device = std::make_unique<VesmoraIoControl>();
    const Opening opening = openDevice(*device);
    QVERIFY(!opening.result);
    QStringList expected = failureLines(16);
    expected[1] = QString("Open device %1 failed, error: %2").arg(busPath(1)).arg(error);
    QCOMPARE(opening.lines, expected);
    QCOMPARE(opening.flushes, 16);
    QCOMPARE(textsOf(opening.calls), openTexts(15));
    QCOMPARE(textsOf(callsOfACommand(*device)), QStringList());
    QCOMPARE(textsOf(callsOfDeleting(std::move(device))), QStringList());
    QCOMPARE(m_simulator.events(), (QStringList{"plug 1 1", QString("open !%1").arg(error)}));
    QCOMPARE(m_simulator.state().openHandles, 0u);
}

void tst_RefusedOpen::cleanupTestCase()
{
    qInfo("%d faults injected", m_faults);
}

QTEST_GUILESS_MAIN(tst_RefusedOpen)
#include "tst_refusedopen.moc"
