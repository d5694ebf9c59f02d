#include "enginefixture.h"

#include <QSet>

namespace {

/// A command of a sequence and what the log says after it.
struct Step {
    QString command;
    QStringList onSuccess;
    QStringList onFailure;
    int afterFailure = 1000; ///< the step at which the sequence goes on then; most end
};

struct Sequence {
    const char *name;
    QString choice; ///< empty for the start-up sequence
    QString text;   ///< what is chosen
    quint32 driverLatency;
    QString latencyText; ///< the latency chosen before
    QStringList before;  ///< what the log says before the first command
    QList<Step> steps;
    QMap<int, QString> kept; ///< by the step after whose success it is
};

const QString otherwise = "，可能是驱动未正确加载或设备未连接。";

Step stop()
{
    return {"stopAudio", {}, {"停止音频失败" + otherwise}};
}

Step restart(const QStringList &onSuccess)
{
    return {"restartAudio", onSuccess, {"重新启动音频失败" + otherwise}};
}

QList<Step> otgCycle(int firstStep)
{
    // The answer to these two is not examined, so a driver that refuses them goes unnoticed.
    return {{"setOtgOff", {}, {}, firstStep + 1}, {"setOtgOn", {}, {}, firstStep + 2}};
}

Step logging(Step step, const QString &line)
{
    step.onSuccess << line;
    step.onFailure << line;
    return step;
}

/// 96 samples, with a driver latency that may stay.
Sequence bufferSize()
{
    return {
        "buffer size",
        "BufferSize",
        "96",
        8,
        "8",
        {"设置音频缓冲区大小为： 96 samples"},
        {{"getBufferSize",
          {"Buffer size: (address)", "当前音频缓冲区大小： 256", "设置USB延迟大小为： 16 Frame"},
          {"当前音频缓冲区大小： 0", "获取音频缓冲区大小失败" + otherwise}},
         {"getUsbLatency", {"当前USB延迟大小： 8"}, {"获取USB延迟大小失败" + otherwise}},
         stop(),
         {"setBufferSize 96", {}, {"设置音频缓冲区大小失败" + otherwise}},
         restart({"音频缓冲区大小设置成功： 96 samples", "kept BufferSize=96"})},
        {{4, "BufferSize=96"}}};
}

/// 64 samples with 32 frames: the latency sequence within may fail without ending the outer one.
Sequence cappingBufferSize()
{
    Step innerStop = stop();
    innerStop.afterFailure = 6;
    Step innerRestart = restart({"kept UsbLatency=8"});
    innerRestart.afterFailure = 6;
    return {"capping buffer size",
            "BufferSize",
            "64",
            32,
            "32",
            {"设置音频缓冲区大小为： 64 samples"},
            {{"getBufferSize",
              {"Buffer size: (address)", "当前音频缓冲区大小： 256", "设置USB延迟大小为： 8 Frame"},
              {"当前音频缓冲区大小： 0", "获取音频缓冲区大小失败" + otherwise}},
             {"getUsbLatency",
              {"当前USB延迟大小： 32", "设置USB延迟大小为： 8 Frame"},
              {"获取USB延迟大小失败" + otherwise}},
             {"getUsbLatency", {"当前USB延迟大小： 32"}, {"当前USB延迟大小： 0"}, 3},
             innerStop,
             {"setUsbLatency 8", {}, {"设置USB延迟大小失败" + otherwise}, 6},
             innerRestart,
             stop(),
             {"setBufferSize 64", {}, {"设置音频缓冲区大小失败" + otherwise}},
             restart({"音频缓冲区大小设置成功： 64 samples", "kept BufferSize=64"})},
            {{5, "UsbLatency=8"}, {8, "BufferSize=64"}}};
}

Sequence usbLatency()
{
    return {"USB latency",
            "UsbLatency",
            "24",
            8,
            "8",
            {"设置USB延迟大小为： 24 Frame"},
            {{"getUsbLatency", {"当前USB延迟大小： 8"}, {"当前USB延迟大小： 0"}, 1},
             stop(),
             {"setUsbLatency 24", {}, {"设置USB延迟大小失败" + otherwise}},
             restart({"kept UsbLatency=24"})},
            {{3, "UsbLatency=24"}}};
}

Sequence sampleRate()
{
    Step first = stop();
    first.onSuccess << "设置音频采样率为： 48000 Hz";
    QList<Step> steps{first,
                      {"setSampleRate 48000", {}, {"设置音频采样率失败" + otherwise}},
                      {"setWdmChannelCount 4", {}, {"设置WDM通道数量失败" + otherwise}},
                      {"initAudio", {"kept SampleRate=48000"}, {"重新启动音频失败" + otherwise}}};
    const QList<Step> cycle = otgCycle(4);
    steps << cycle.first() << logging(cycle.last(), "设置采样频率完成");
    return {"sample rate", "SampleRate", "48000", 8, "8", {}, steps, {{3, "SampleRate=48000"}}};
}

Sequence safeMode(const QString &text, const QString &command)
{
    return {text == "Enabled" ? "safe mode on" : "safe mode off",
            "SafeMode",
            text,
            8,
            "8",
            {},
            {stop(),
             {command, {}, {"设置USB慢速模式失败" + otherwise}},
             restart({"kept SafeMode=" + text})},
            {{2, "SafeMode=" + text}}};
}

Sequence start()
{
    Step first = stop();
    first.onSuccess << "停止音频成功，开始加载控件状态";
    QList<Step> steps{{"getSampleRate", {}, {}, 1},
                      first,
                      {"setSampleRate 44100", {}, {"设置音频采样率失败" + otherwise}},
                      {"setWdmChannelCount 4", {}, {"设置WDM通道数量失败" + otherwise}}};
    steps << otgCycle(4);
    steps << Step{"initAudio", {"设置初始化完成"}, {"初始化音频失败" + otherwise}};
    return {"start-up", {}, {}, 8, "8", {}, steps, {}};
}

QList<Sequence> allSequences()
{
    return {bufferSize(),
            cappingBufferSize(),
            usbLatency(),
            sampleRate(),
            safeMode("Enabled", "enableUsbSlowMode"),
            safeMode("Disabled", "disableUsbSlowMode"),
            start()};
}

/// What is to be seen of a sequence of which one step fails.
struct Outcome {
    QStringList sent;
    QStringList log;
    QStringList kept;
    bool engineRuns = true;
};

bool startsEngine(const QString &command)
{
    return command == "restartAudio" || command == "initAudio";
}

Outcome outcomeOf(const Sequence &sequence, int failing, DWORD error)
{
    Outcome outcome;
    outcome.log = sequence.before;
    for (int i = 0; i < sequence.steps.size();) {
        const Step &step = sequence.steps.at(i);
        const bool fails = i == failing;
        outcome.sent << (fails ? QString("%1 !%2").arg(step.command).arg(error) : step.command);
        outcome.log << (fails ? step.onFailure : step.onSuccess);
        if (!fails && sequence.kept.contains(i))
            outcome.kept << sequence.kept.value(i);
        if (!fails && step.command == "stopAudio")
            outcome.engineRuns = false;
        else if (!fails && startsEngine(step.command))
            outcome.engineRuns = true;
        i = fails ? step.afterFailure : i + 1;
    }
    outcome.kept.sort();
    return outcome;
}

} // namespace

class tst_EngineFaults : public EngineFixture
{
    Q_OBJECT

private slots:
    void eachCommandFailing_data();
    void eachCommandFailing();
    void unpluggedEverythingFails();
    void cleanupTestCase();

private:
    void prepare(const Sequence &sequence);
    int injectFault(const Sequence &sequence, int failing, DWORD error);
    void run(const Sequence &sequence);

    int m_faults = 0;
};

void tst_EngineFaults::eachCommandFailing_data()
{
    QTest::addColumn<int>("sequenceIndex");
    QTest::addColumn<int>("failing");
    QTest::addColumn<quint32>("error");
    const QList<Sequence> sequences = allSequences();
    for (int i = 0; i < sequences.size(); ++i) {
        const Sequence &sequence = sequences.at(i);
        QTest::addRow("%s, all well", sequence.name) << i << -1 << 0u;
        for (int step = 0; step < sequence.steps.size(); ++step) {
            for (const quint32 error : {ERROR_GEN_FAILURE, ERROR_DEVICE_NOT_CONNECTED})
                QTest::addRow("%s, %d %s, error %u", sequence.name, step,
                              qPrintable(sequence.steps.at(step).command), error)
                    << i << step << error;
        }
    }
}

/// Has the driver fail at that step, which for its command may be a later than the next one.
int tst_EngineFaults::injectFault(const Sequence &sequence, int failing, DWORD error)
{
    if (failing < 0)
        return 0;
    const QString command = sequence.steps.at(failing).command;
    int nth = 1;
    for (int i = 0; i < failing; ++i)
        nth += sequence.steps.at(i).command == command ? 1 : 0;
    return simulator().fail(command.section(u' ', 0, 0), nth, error) ? 1 : 0;
}

void tst_EngineFaults::prepare(const Sequence &sequence)
{
    openConnectedEngine();
    simulator().setUsbLatency(sequence.driverLatency);
    preset("UsbLatency", sequence.latencyText);
}

void tst_EngineFaults::run(const Sequence &sequence)
{
    if (sequence.choice.isEmpty()) {
        engine().sampleRate();
        engine().start(44100);
    } else {
        choose(sequence.choice, sequence.text);
    }
    finishOtgCycles();
}

void tst_EngineFaults::eachCommandFailing()
{
    QFETCH(int, sequenceIndex);
    QFETCH(int, failing);
    QFETCH(quint32, error);
    const Sequence sequence = allSequences().at(sequenceIndex);
    prepare(sequence);
    const int injected = injectFault(sequence, failing, error);
    QCOMPARE(injected, failing < 0 ? 0 : 1);
    m_faults += injected;

    run(sequence);

    const Outcome outcome = outcomeOf(sequence, failing, error);
    QCOMPARE(takeSent(), outcome.sent);
    QCOMPARE(takeLog(), outcome.log);
    QCOMPARE(kept(), outcome.kept);
    QCOMPARE(simulator().state().engineRunning, outcome.engineRuns);
    QCOMPARE(simulator().state().faults, 0u);
    // A cap is chosen once the driver's latency is known.
    const bool isCapped = sequence.driverLatency == 32 && (failing < 0 || failing > 1);
    const bool isChosen = sequence.choice == "UsbLatency";
    QCOMPARE(texts().at(1), isCapped ? "8" : isChosen ? sequence.text : sequence.latencyText);
}

void tst_EngineFaults::unpluggedEverythingFails()
{
    openConnectedEngine();
    QVERIFY(simulator().unplug());
    choose("BufferSize", "96");
    choose("UsbLatency", "24");
    choose("SampleRate", "48000");
    choose("SafeMode", "Enabled");
    QCOMPARE(takeSent(),
             (QStringList{"getBufferSize !1167", "getUsbLatency !1167", "stopAudio !1167",
                          "stopAudio !1167", "stopAudio !1167"}));
    QCOMPARE(takeLog(),
             (QStringList{"设置音频缓冲区大小为： 96 samples", "当前音频缓冲区大小： 0",
                          "获取音频缓冲区大小失败" + otherwise, "设置USB延迟大小为： 24 Frame",
                          "当前USB延迟大小： 0", "停止音频失败" + otherwise,
                          "停止音频失败" + otherwise, "停止音频失败" + otherwise}));
    QCOMPARE(kept(), QStringList());
    QCOMPARE(texts(), (QStringList{"96", "24", "48000", "Enabled"}));
    m_faults += 5;
}

void tst_EngineFaults::cleanupTestCase()
{
    qInfo("%d faults injected", m_faults);
}

QTEST_GUILESS_MAIN(tst_EngineFaults)
#include "tst_enginefaults.moc"
