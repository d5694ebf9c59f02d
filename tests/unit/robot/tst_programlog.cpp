#include "childprocess.h"
#include "programlog.h"
#include "waiting.h"

#include <QTest>

class tst_ProgramLog : public QObject
{
    Q_OBJECT

private slots:
    void bothChannelsAreCollectedAsLines();
    void aLineCountsOnlyWhenItIsComplete();
    void gbkBecomesText();
    void aBrokenGbkCharacterIsSeen();
    void waitingForALineThatNeverComesEnds();
};

namespace {

/// What a shell command writes.
void collect(ProgramLog &log, const char *command)
{
    ChildProcess process;
    log.follow(&process);
    QVERIFY(process.launch("/bin/sh", {"-c", QString::fromUtf8(command)}));
    QVERIFY(waitUntil([&] { return process.state() == QProcess::NotRunning; }));
}

} // namespace

void tst_ProgramLog::bothChannelsAreCollectedAsLines()
{
    ProgramLog log;
    collect(log, "printf 'one\\r\\ntwo \\n'; printf 'three\\n' >&2");
    QCOMPARE(log.outputLines(), QStringList({"one", "two"}));
    QCOMPARE(log.errorLines(), QStringList("three"));
    QCOMPARE(log.lines().size(), 3);
    QCOMPARE(log.linesWith("t").size(), 2);
    QVERIFY(log.waitFor("three"));
}

void tst_ProgramLog::aLineCountsOnlyWhenItIsComplete()
{
    ProgramLog log;
    collect(log, "printf 'complete\\nhalf'");
    QCOMPARE(log.lines(), QStringList("complete"));
}

void tst_ProgramLog::gbkBecomesText()
{
    ProgramLog log(ProgramLog::Encoding::Gbk);
    collect(log, "printf '\\327\\324\\nPID 1\\n'");
    QCOMPARE(log.lines(), QStringList({"自", "PID 1"}));
}

void tst_ProgramLog::aBrokenGbkCharacterIsSeen()
{
    ProgramLog log(ProgramLog::Encoding::Gbk);
    collect(log, "printf 'a\\377b\\n'");
    QCOMPARE(log.lines(), QStringList("a?b"));
}

void tst_ProgramLog::waitingForALineThatNeverComesEnds()
{
    const ProgramLog log;
    QVERIFY(!log.waitFor("anything", 1, std::chrono::milliseconds(1)));
}

QTEST_GUILESS_MAIN(tst_ProgramLog)
#include "tst_programlog.moc"
