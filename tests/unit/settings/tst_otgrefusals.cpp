#include "enginefixture.h"
#include "refusingdriver.h"

namespace {

const QString offFailed = "关闭OTG芯片失败，可能是驱动未正确加载或设备未连接。";
const QString onFailed = "开启OTG芯片失败，可能是驱动未正确加载或设备未连接。";

} // namespace

/// OTG commands that report failure: the product's driver link never does, the sequences are
/// prepared for it all the same.
class tst_OtgRefusals : public EngineFixture
{
    Q_OBJECT

public:
    tst_OtgRefusals()
        : EngineFixture(Device::None)
    { }

private slots:
    void refusals_data();
    void refusals();
};

void tst_OtgRefusals::refusals_data()
{
    QTest::addColumn<QStringList>("refused");
    QTest::addColumn<bool>("isStart");
    QTest::addColumn<QStringList>("sent");
    QTest::addColumn<QStringList>("log");
    const QString initFailed = "初始化音频失败，可能是驱动未正确加载或设备未连接。";

    QTest::newRow("nothing, after a sample rate")
        << QStringList{} << false << QStringList{"setOtgOff", "setOtgOn"}
        << QStringList{"设置采样频率完成"};
    QTest::newRow("off, after a sample rate")
        << QStringList{"setOtgOff"} << false << QStringList{"setOtgOff"} << QStringList{offFailed};
    QTest::newRow("on, after a sample rate")
        << QStringList{"setOtgOn"} << false << QStringList{"setOtgOff", "setOtgOn"}
        << QStringList{onFailed, "设置采样频率完成"};
    QTest::newRow("nothing, at start-up")
        << QStringList{} << true << QStringList{"setOtgOff", "setOtgOn", "initAudio"}
        << QStringList{"设置初始化完成"};
    QTest::newRow("off, at start-up")
        << QStringList{"setOtgOff"} << true << QStringList{"setOtgOff"} << QStringList{offFailed};
    QTest::newRow("on, at start-up")
        << QStringList{"setOtgOn"} << true << QStringList{"setOtgOff", "setOtgOn", "initAudio"}
        << QStringList{onFailed, "设置初始化完成"};
    QTest::newRow("on and init, at start-up")
        << QStringList{"setOtgOn", "initAudio"} << true
        << QStringList{"setOtgOff", "setOtgOn", "initAudio"} << QStringList{onFailed, initFailed};
}

void tst_OtgRefusals::refusals()
{
    QFETCH(QStringList, refused);
    QFETCH(bool, isStart);
    QFETCH(QStringList, sent);
    QFETCH(QStringList, log);
    openEngine();
    refusingdriver::reset();
    for (const QString &command : refused)
        refusingdriver::refuseAll(command);

    if (isStart)
        engine().start(44100);
    else
        choose("SampleRate", "48000");
    QCOMPARE(refusingdriver::takeCommands().filter("Otg"), QStringList());
    // The change is saved before the chip is touched.
    const QStringList entries = isStart ? QStringList{} : QStringList{"SampleRate=48000"};
    QCOMPARE(kept(), entries);
    takeLog();

    finishOtgCycles();
    QCOMPARE(refusingdriver::takeCommands(), sent);
    QCOMPARE(takeLog(), log);
    QCOMPARE(kept(), entries);
}

QTEST_GUILESS_MAIN(tst_OtgRefusals)
#include "tst_otgrefusals.moc"
