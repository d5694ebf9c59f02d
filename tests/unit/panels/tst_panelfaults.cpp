#include "panelfixture.h"

#include <QLabel>
#include <QRandomGenerator>

namespace {

/// A device that is broken and one that is gone.
constexpr DWORD errors[] = {ERROR_GEN_FAILURE, ERROR_DEVICE_NOT_CONNECTED};
constexpr int randomActions = 75;
constexpr int emissionsOfAClick = 2;

} // namespace

/// Every command of every panel fails, one after the other: what reaches the device, the log, the
/// settings file and the texts is what it ought to be.
class tst_PanelFaults : public PanelFixture
{
    Q_OBJECT

public:
    tst_PanelFaults()
        : PanelFixture("rx1")
    { }

private slots:
    void everyCommandOfConstructionFails_data() { addModelAndErrorRows(); }
    void everyCommandOfConstructionFails();
    void everyOpenFails_data() { addModelAndErrorRows(); }
    void everyOpenFails();
    void everyHandlersCommandFails_data() { addModelAndErrorRows(); }
    void everyHandlersCommandFails();
    void everyHandlerOfAnUnpluggedDeviceFails_data() { addModelRows(); }
    void everyHandlerOfAnUnpluggedDeviceFails();
    void everyCommandFailsForEver_data() { addModelRows(); }
    void everyCommandFailsForEver();
    void everyMeterReadFails_data() { addModelAndErrorRows(); }
    void everyMeterReadFails();
    void aFailedBlockIsMadeUpForByTheNext();
    void anyActionsAndFaultsInAnyOrder_data();
    void anyActionsAndFaultsInAnyOrder();
    void cleanupTestCase();

private:
    static void addModelAndErrorRows();
    void inject(const QString &command, int nth, DWORD error);
    void press(const PanelControl &control, ExpectedPanel &expected, int failing, DWORD error);
    void move(const PanelControl &control, int db, ExpectedPanel &expected, DWORD error);
    void actAtRandom(QRandomGenerator &random, ExpectedPanel &expected);

    int m_injected = 0;
};

void tst_PanelFaults::addModelAndErrorRows()
{
    QTest::addColumn<PanelModel>("model");
    QTest::addColumn<quint32>("error");
    for (const PanelModel &model : allPanelModels()) {
        for (const DWORD error : errors)
            QTest::addRow("%s, error %u", qPrintable(model.name), unsigned(error))
                << model << quint32(error);
    }
}

void tst_PanelFaults::inject(const QString &command, int nth, DWORD error)
{
    QVERIFY2(simulator().fail(command, nth, error), qPrintable(simulator().errorString()));
    ++m_injected;
}

/// Clicks a button; of the two requests the one numbered @p failing (from 1; 0 for none) fails.
void tst_PanelFaults::press(const PanelControl &control, ExpectedPanel &expected, int failing,
                            DWORD error)
{
    if (failing > 0)
        inject(control.command, failing, error);
    const bool on = !button(control.name).isSelected;
    click(control.name);
    for (int i = 1; i <= emissionsOfAClick; ++i)
        expected.act(control, on, i == failing ? quint32(error) : 0);
}

/// Sets a knob; its request fails unless @p error is 0.
void tst_PanelFaults::move(const PanelControl &control, int db, ExpectedPanel &expected,
                           DWORD error)
{
    if (error != 0)
        inject(control.command, 1, error);
    knob(control.name).setValue(db);
    expected.act(control, db, quint32(error));
}

void tst_PanelFaults::everyCommandOfConstructionFails()
{
    QFETCH(PanelModel, model);
    QFETCH(quint32, error);
    const QStringList commands = ExpectedPanel(model).constructionCommands();
    for (int failing = 0; failing < commands.size(); ++failing) {
        begin(model);
        const QString &command = commands.at(failing);
        inject(command, int(commands.mid(0, failing + 1).count(command)), DWORD(error));
        build();
        ExpectedPanel expected(model);
        expected.construct(failing, error);
        compare(expected);
        if (QTest::currentTestFailed())
            return;
    }
}

void tst_PanelFaults::everyOpenFails()
{
    if (!simulator().canRefuseOpens())
        QSKIP("Opening a device cannot be refused here.");
    QFETCH(PanelModel, model);
    QFETCH(quint32, error);
    begin(model);
    inject("open", 1, DWORD(error));
    build();
    QCOMPARE(takeEvents(), QStringList(QString("open !%1").arg(error)));
    QCOMPARE(takeLog(), QStringList(model.createFailure()));
    QCOMPARE(savedLines(), QStringList());
    QVERIFY(panel().children().isEmpty());
}

void tst_PanelFaults::everyHandlersCommandFails()
{
    QFETCH(PanelModel, model);
    QFETCH(quint32, error);
    begin(model);
    build();
    ExpectedPanel expected(model);
    expected.construct();
    compare(expected);
    for (const PanelControl &control : expected.controls()) {
        if (control.isKnob()) {
            for (const int db : {control.maximum, control.minimum, control.maximum - 1}) {
                move(control, db, expected, DWORD(error));
                compare(expected);
            }
        } else {
            // On and off, each with the first and with the second request failing.
            for (const int failing : {1, 1, 2, 2}) {
                press(control, expected, failing, DWORD(error));
                compare(expected);
            }
        }
        if (QTest::currentTestFailed())
            return;
    }
}

void tst_PanelFaults::everyHandlerOfAnUnpluggedDeviceFails()
{
    QFETCH(PanelModel, model);
    begin(model);
    buildQuietly();
    ExpectedPanel expected(model);
    expected.construct();
    expected.takeRequests();
    expected.takeLog();
    QVERIFY(simulator().unplug());
    QVERIFY(simulator().clearRecord());
    for (const PanelControl &control : expected.controls()) {
        const int value = control.isKnob() ? control.maximum : 1;
        setControl(panel(), control, value);
        expected.act(control, value, ERROR_DEVICE_NOT_CONNECTED);
        ++m_injected;
        compare(expected);
        if (QTest::currentTestFailed())
            return;
    }
}

void tst_PanelFaults::everyCommandFailsForEver()
{
    QFETCH(PanelModel, model);
    begin(model);
    ExpectedPanel expected(model);
    QStringList commands = expected.constructionCommands();
    commands.removeDuplicates();
    for (const QString &command : commands) {
        begin(model);
        QVERIFY(simulator().fail(command, 1, ERROR_GEN_FAILURE, 0));
        build();
        // The controls are all there and live.
        QVERIFY(panel().layout());
        QCOMPARE(takeLog().last(), "已从配置文件加载控件状态");
        QCOMPARE(saved().keys().size(), expected.controls().size());
        const QStringList sent = takeSent();
        QCOMPARE(sent.size(), expected.constructionCommands().size());
        for (const QString &line : sent) {
            const bool fails = line.section(' ', 0, 0) == command;
            QVERIFY2(line.endsWith(" !31") == fails, qPrintable(line));
            m_injected += fails;
        }
    }
}

void tst_PanelFaults::everyMeterReadFails()
{
    QFETCH(PanelModel, model);
    QFETCH(quint32, error);
    begin(model);
    buildQuietly();
    inject("readMeterData", 1, DWORD(error));
    const QStringList texts = meterTexts();
    tick();
    QCOMPARE(takeEvents(), QStringList(QString("readMeterData !%1").arg(error)));
    QCOMPARE(takeLog(), QStringList("Failed to read meter data from driver."));
    QCOMPARE(meterTexts(), texts);
    tick();
    QCOMPARE(takeLog(), QStringList());
    QCOMPARE(meterTexts(), QStringList(texts.size(), "-inf dB"));
}

void tst_PanelFaults::aFailedBlockIsMadeUpForByTheNext()
{
    buildQuietly();
    inject("sendMixerBlock", 1, ERROR_GEN_FAILURE);
    knob("Headphone").setValue(0);
    knob("OtgToHp").setValue(-20);
    QCOMPARE(takeSent(),
             QStringList({"sendMixerBlock gain[0]=1 gain[1]=1 !31",
                          "sendMixerBlock (64,2)=0.1 (65,3)=0.1 gain[0]=1 gain[1]=1"}));
    QCOMPARE(takeLog(),
             QStringList({"Failed to set headphone volume.", "OTG to HP volume set to: 0.1"}));
}

void tst_PanelFaults::anyActionsAndFaultsInAnyOrder_data()
{
    QTest::addColumn<PanelModel>("model");
    QTest::addColumn<quint32>("seed");
    for (const PanelModel &model : allPanelModels()) {
        for (const quint32 seed : {1u, 2u})
            QTest::addRow("%s, seed %u", qPrintable(model.name), seed) << model << seed;
    }
}

void tst_PanelFaults::actAtRandom(QRandomGenerator &random, ExpectedPanel &expected)
{
    const auto chance = [&] { return random.bounded(3) == 0; };
    const PanelControl control =
        expected.controls().at(random.bounded(int(expected.controls().size())));
    if (control.isKnob())
        move(control, random.bounded(-90, 70), expected, chance() ? ERROR_GEN_FAILURE : 0);
    else
        press(control, expected, chance() ? random.bounded(1, 3) : 0, ERROR_GEN_FAILURE);
}

void tst_PanelFaults::anyActionsAndFaultsInAnyOrder()
{
    QFETCH(PanelModel, model);
    QFETCH(quint32, seed);
    QRandomGenerator random(seed);
    begin(model);
    build();
    ExpectedPanel expected(model);
    expected.construct();
    for (int i = 0; i < randomActions && !QTest::currentTestFailed(); ++i) {
        actAtRandom(random, expected);
        compare(expected);
    }
}

void tst_PanelFaults::cleanupTestCase()
{
    qInfo("%d faults injected", m_injected);
}

QTEST_MAIN(tst_PanelFaults)
#include "tst_panelfaults.moc"
