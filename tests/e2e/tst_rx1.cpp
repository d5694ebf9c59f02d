#include "paneltest.h"
#include "waiting.h"

#include <QDir>
#include <QSettings>
#include <QTest>

namespace {

enum Knobs { Gain, Headphone, Phone, KnobCount };
enum Buttons { Instrument, Pad, Phantom, Direct, Mute, Dim, ButtonCount };

const QString firstCommand = QStringLiteral("setOutVolume");

/// A diagonal of the matrix at unity, as the record writes it.
QString diagonal(int row, int column, int length)
{
    QString text;
    for (int i = 0; i < length; ++i)
        text += QStringLiteral(" (%1,%2)=1").arg(row + i).arg(column + i);
    return text;
}

/// The first mixer block of a panel against the silent one of a device that was just plugged in.
QString firstBlock(const QString &monitor = {})
{
    QString text = QStringLiteral("sendMixerBlock") + diagonal(4, 0, 8) + monitor
        + diagonal(96, 0, 2) + diagonal(128, 0, 2) + diagonal(130, 0, 2) + diagonal(160, 0, 8);
    for (int output = 0; output < 96; ++output)
        text += QStringLiteral(" gain[%1]=1").arg(output);
    return text;
}

const QString sameBlock = QStringLiteral("sendMixerBlock");

QByteArray packet(const char *hexBegin)
{
    return QByteArray::fromHex(hexBegin).leftJustified(37, '\0');
}

} // namespace

/// The RX1 panel in the running program: what the mouse does reaches the interface and the file.
class tst_Rx1 : public PanelTest
{
    Q_OBJECT

private slots:
    void theFirstStartSendsTheDefaultsInOrder();
    void theFirstStartSendsThesePackets();
    void theFirstStartBringsTheEngineUp();
    void theFirstStartWritesAllNineKeys();
    void theWheelTurnsOneStepANotchAndSendsTheGainDoubled();
    void theWheelAtTheMaximumStaysAndStillSends();
    void aDragTurnsOneStepAMove();
    void controlClickSetsTheMinimum();
    void aDoubleClickOnTheNumberEditsIt_data();
    void aDoubleClickOnTheNumberEditsIt();
    void aDoubleClickOnTheRingSetsTheMinimum();
    void eachClickOnAButtonIsSentTwiceAndSaved_data();
    void eachClickOnAButtonIsSentTwiceAndSaved();
    void muteWinsOverDimAndBothComeBack();
    void aStoredGainAboveTheMaximumIsClamped();
    void pluggingInAgainReplaysTheState();
    void aMeterThatCannotBeReadIsOnlyLogged();

private:
    bool showPanel();
    bool save(const QMap<QString, QVariant> &values);
    QVariant saved(const QString &key) { return lane().setting(QStringLiteral("rx1.ini"), key); }
    bool waitForSaved(const QString &key, const QVariant &value);
    /// Waits until the panel has sent exactly @p expected since the record was last cleared.
    void compareSent(const QStringList &expected);
    QPoint knob(Knobs which)
    {
        return pictureWith(KnobCount, ButtonCount).knobs().at(which).centre;
    }
    QPoint button(Buttons which)
    {
        return pictureWith(KnobCount, ButtonCount).buttons().at(which).centre;
    }
};

/// Starts the panel with a plugged RX1 and its window open, and an empty record.
bool tst_Rx1::showPanel()
{
    return start() && openWindow() && plug(QStringLiteral("rx1"))
        && pictureWith(KnobCount, ButtonCount).knobs().size() == KnobCount
        && log().waitFor(QStringLiteral("设置初始化完成")) && simulator().clearRecord();
}

bool tst_Rx1::save(const QMap<QString, QVariant> &values)
{
    if (!QDir().mkpath(lane().settingsFolder()))
        return false;
    QSettings file(lane().settingsFile(QStringLiteral("rx1.ini")), QSettings::IniFormat);
    for (auto value = values.cbegin(); value != values.cend(); ++value)
        file.setValue(value.key(), value.value());
    file.sync();
    return file.status() == QSettings::NoError;
}

bool tst_Rx1::waitForSaved(const QString &key, const QVariant &value)
{
    return waitUntil([&] { return saved(key).toString() == value.toString(); });
}

void tst_Rx1::compareSent(const QStringList &expected)
{
    // The meters tell which handle is the panel's.
    const auto sent = [this] { return sentBesides(QStringLiteral("readMeterData")); };
    waitUntil([&] { return sent().size() >= expected.size(); });
    QCOMPARE(sent(), expected);
}

void tst_Rx1::theFirstStartSendsTheDefaultsInOrder()
{
    QVERIFY(start());
    QVERIFY(plug(QStringLiteral("rx1")));
    QCOMPARE(sentBesides(firstCommand),
             QStringList({QStringLiteral("open"), QStringLiteral("setOutVolume 1 100"),
                          QStringLiteral("setOutVolume 2 100"),
                          QStringLiteral("switchMicInstruction 1 0"),
                          QStringLiteral("setMic20dB 1 0"), QStringLiteral("setMic48V 1 0"),
                          firstBlock(), QStringLiteral("setMicVolume 1 0"),
                          QStringLiteral("sendMixerBlock gain[0]=0 gain[1]=0"), sameBlock,
                          sameBlock, QStringLiteral("sendMixerBlock (64,2)=1 (65,3)=1")}));
}

void tst_Rx1::theFirstStartSendsThesePackets()
{
    QVERIFY(start());
    QVERIFY(plug(QStringLiteral("rx1")));
    QList<QByteArray> packets;
    const QList<RecordEntry> entries = entriesBesides(firstCommand);
    for (const RecordEntry &entry : entries) {
        if (!entry.bytes().isEmpty())
            packets << entry.bytes();
    }
    QCOMPARE(packets,
             QList<QByteArray>({packet("01030002016400"), packet("01030002026400"),
                                packet("01640000010000"), packet("015a0000010000"),
                                packet("015b0000010000"), packet("01070002010000")}));
}

void tst_Rx1::theFirstStartBringsTheEngineUp()
{
    QVERIFY(start());
    QVERIFY(plug(QStringLiteral("rx1")));
    QVERIFY(log().waitFor(QStringLiteral("设置初始化完成")));
    QCOMPARE(sentBesides(QStringLiteral("setWdmChannelCount")),
             QStringList({QStringLiteral("open"), QStringLiteral("getBufferSize"),
                          QStringLiteral("getUsbLatency"), QStringLiteral("stopAudio"),
                          QStringLiteral("setBufferSize 192"), QStringLiteral("restartAudio"),
                          QStringLiteral("getSampleRate"), QStringLiteral("stopAudio"),
                          QStringLiteral("setSampleRate 44100"),
                          QStringLiteral("setWdmChannelCount 4"), QStringLiteral("setOtgOff"),
                          QStringLiteral("setOtgOn"), QStringLiteral("initAudio")}));
    QCOMPARE(sentBesides(QStringLiteral("getFirmwareVersion")),
             QStringList({QStringLiteral("open"), QStringLiteral("getDevicePid"),
                          QStringLiteral("getFirmwareVersion"), QStringLiteral("close")}));
    QCOMPARE(lane().setting(QStringLiteral("setting.ini"), QStringLiteral("Audio/BufferSize")),
             QVariant(QStringLiteral("192")));
}

void tst_Rx1::theFirstStartWritesAllNineKeys()
{
    const QMap<QString, QString> expected{
        {QStringLiteral("Button/HeadphoneDimIsChecked"), QStringLiteral("false")},
        {QStringLiteral("Button/HeadphoneMuteIsChecked"), QStringLiteral("false")},
        {QStringLiteral("Button/Mic20dBIsChecked"), QStringLiteral("false")},
        {QStringLiteral("Button/Mic48VIsChecked"), QStringLiteral("false")},
        {QStringLiteral("Button/MicInstrIsChecked"), QStringLiteral("false")},
        {QStringLiteral("Button/MonitorMicIsChecked"), QStringLiteral("false")},
        {QStringLiteral("Dial/HeadphoneValue"), QStringLiteral("-80")},
        {QStringLiteral("Dial/MicValue"), QStringLiteral("0")},
        {QStringLiteral("Dial/OtgToHpValue"), QStringLiteral("0")}};
    QVERIFY(start());
    QVERIFY(plug(QStringLiteral("rx1")));
    QMap<QString, QString> found;
    const QSettings file(lane().settingsFile(QStringLiteral("rx1.ini")), QSettings::IniFormat);
    const QStringList keys = file.allKeys();
    for (const QString &key : keys)
        found.insert(key, file.value(key).toString());
    QCOMPARE(found, expected);
}

void tst_Rx1::theWheelTurnsOneStepANotchAndSendsTheGainDoubled()
{
    QVERIFY(showPanel());
    QVERIFY(pointer().wheel(knob(Gain), 3));
    QVERIFY(waitForSaved(QStringLiteral("Dial/MicValue"), 3));
    QVERIFY(pointer().wheel(knob(Gain), -1));
    QVERIFY(waitForSaved(QStringLiteral("Dial/MicValue"), 2));
    compareSent({QStringLiteral("setMicVolume 1 2"), QStringLiteral("setMicVolume 1 4"),
                 QStringLiteral("setMicVolume 1 6"), QStringLiteral("setMicVolume 1 4")});
}

void tst_Rx1::theWheelAtTheMaximumStaysAndStillSends()
{
    QVERIFY(save({{QStringLiteral("Dial/MicValue"), 41}}));
    QVERIFY(showPanel());
    QVERIFY(pointer().wheel(knob(Gain), 3));
    compareSent({QStringLiteral("setMicVolume 1 84"), QStringLiteral("setMicVolume 1 84"),
                 QStringLiteral("setMicVolume 1 84")});
    QCOMPARE(saved(QStringLiteral("Dial/MicValue")).toInt(), 42);
    QVERIFY(pictureWith(KnobCount, ButtonCount).knobs().at(Gain).turned > 0.97);
}

void tst_Rx1::aDragTurnsOneStepAMove()
{
    QVERIFY(save({{QStringLiteral("Dial/MicValue"), 10}}));
    QVERIFY(showPanel());
    const QPoint centre = knob(Gain);
    // The first move counts from the knob's corner, so it goes down and right: one down, one up.
    // Then two up, one up and right, one left.
    QVERIFY(pointer().drag({centre, centre + QPoint(0, -4), centre + QPoint(0, -8),
                            centre + QPoint(0, -12), centre + QPoint(4, -16),
                            centre + QPoint(0, -16)}));
    compareSent({QStringLiteral("setMicVolume 1 20"), QStringLiteral("setMicVolume 1 22"),
                 QStringLiteral("setMicVolume 1 24"), QStringLiteral("setMicVolume 1 28"),
                 QStringLiteral("setMicVolume 1 26")});
    QVERIFY(waitForSaved(QStringLiteral("Dial/MicValue"), 13));
}

void tst_Rx1::controlClickSetsTheMinimum()
{
    QVERIFY(save({{QStringLiteral("Dial/HeadphoneValue"), -20}}));
    QVERIFY(showPanel());
    QVERIFY(pointer().controlClick(knob(Headphone)));
    QVERIFY(waitForSaved(QStringLiteral("Dial/HeadphoneValue"), -80));
    compareSent({QStringLiteral("sendMixerBlock gain[0]=0 gain[1]=0")});
}

void tst_Rx1::aDoubleClickOnTheNumberEditsIt_data()
{
    QTest::addColumn<QString>("typed");
    QTest::addColumn<int>("value");
    QTest::newRow("a number") << QStringLiteral("12") << 12;
    QTest::newRow("with its unit") << QStringLiteral("12dB") << 12;
    QTest::newRow("above the maximum") << QStringLiteral("99") << 42;
    QTest::newRow("letters change nothing") << QStringLiteral("loud") << 5;
}

void tst_Rx1::aDoubleClickOnTheNumberEditsIt()
{
    QFETCH(QString, typed);
    QFETCH(int, value);
    QVERIFY(save({{QStringLiteral("Dial/MicValue"), 5}}));
    QVERIFY(showPanel());
    QVERIFY(pointer().doubleClick(knob(Gain)));
    QVERIFY(pointer().type(typed));
    QVERIFY(sentBesides(QStringLiteral("setMicVolume")).isEmpty());
    QVERIFY(pointer().key(QStringLiteral("Return")));
    QVERIFY(waitUntil([this] { return !sentBesides(QStringLiteral("setMicVolume")).isEmpty(); }));
    QCOMPARE(sentBesides(QStringLiteral("setMicVolume")).last(),
             QStringLiteral("setMicVolume 1 %1").arg(2 * value));
    QVERIFY(waitForSaved(QStringLiteral("Dial/MicValue"), value));
}

void tst_Rx1::aDoubleClickOnTheRingSetsTheMinimum()
{
    QVERIFY(save({{QStringLiteral("Dial/MicValue"), 21}}));
    QVERIFY(showPanel());
    const PanelPicture::Knob gain = pictureWith(KnobCount, ButtonCount).knobs().at(Gain);
    QVERIFY(gain.turned > 0.4 && gain.turned < 0.6);
    QVERIFY(pointer().doubleClick(gain.ring));
    QVERIFY(waitForSaved(QStringLiteral("Dial/MicValue"), 0));
    compareSent({QStringLiteral("setMicVolume 1 0")});
    QVERIFY(waitUntil([this] { return picture().knobs().at(Gain).turned == 0.0; }));
}

void tst_Rx1::eachClickOnAButtonIsSentTwiceAndSaved_data()
{
    QTest::addColumn<int>("which");
    QTest::addColumn<QString>("key");
    QTest::addColumn<QStringList>("sent");
    const auto twice = [](const char *text) {
        return QStringList({QLatin1String(text), QLatin1String(text)});
    };
    const auto once = [](const char *text) {
        return QStringList({QLatin1String(text), sameBlock});
    };
    QTest::newRow("MIC/INST") << int(Instrument) << QStringLiteral("Button/MicInstrIsChecked")
                              << twice("switchMicInstruction 1 1");
    QTest::newRow("20dB") << int(Pad) << QStringLiteral("Button/Mic20dBIsChecked")
                          << twice("setMic20dB 1 1");
    QTest::newRow("48V") << int(Phantom) << QStringLiteral("Button/Mic48VIsChecked")
                         << twice("setMic48V 1 1");
    QTest::newRow("DIRECT") << int(Direct) << QStringLiteral("Button/MonitorMicIsChecked")
                            << once("sendMixerBlock (64,0)=1 (65,1)=1");
    QTest::newRow("MUTE") << int(Mute) << QStringLiteral("Button/HeadphoneMuteIsChecked")
                          << once("sendMixerBlock gain[0]=0 gain[1]=0");
    QTest::newRow("DIM") << int(Dim) << QStringLiteral("Button/HeadphoneDimIsChecked")
                         << once("sendMixerBlock gain[0]=0.01 gain[1]=0.01");
}

void tst_Rx1::eachClickOnAButtonIsSentTwiceAndSaved()
{
    QFETCH(int, which);
    QFETCH(QString, key);
    QFETCH(QStringList, sent);
    QVERIFY(save({{QStringLiteral("Dial/HeadphoneValue"), -20}}));
    QVERIFY(showPanel());
    QVERIFY(!pictureWith(KnobCount, ButtonCount).buttons().at(which).lit);

    QVERIFY(pointer().click(button(Buttons(which))));
    compareSent(sent);
    QVERIFY(waitForSaved(key, true));
    QVERIFY(waitUntil([&] { return picture().buttons().at(which).lit; }));

    QVERIFY(pointer().click(button(Buttons(which))));
    QVERIFY(waitForSaved(key, false));
    QVERIFY(waitUntil([&] { return !picture().buttons().at(which).lit; }));
}

void tst_Rx1::muteWinsOverDimAndBothComeBack()
{
    QVERIFY(save({{QStringLiteral("Dial/HeadphoneValue"), -20}}));
    QVERIFY(showPanel());
    for (const Buttons which : {Dim, Mute, Dim, Dim, Mute, Dim})
        QVERIFY(pointer().click(button(which)));
    compareSent({QStringLiteral("sendMixerBlock gain[0]=0.01 gain[1]=0.01"), sameBlock,
                 QStringLiteral("sendMixerBlock gain[0]=0 gain[1]=0"), sameBlock, sameBlock,
                 sameBlock, sameBlock, sameBlock,
                 QStringLiteral("sendMixerBlock gain[0]=0.01 gain[1]=0.01"), sameBlock,
                 QStringLiteral("sendMixerBlock gain[0]=0.1 gain[1]=0.1"), sameBlock});
    QCOMPARE(saved(QStringLiteral("Dial/HeadphoneValue")).toInt(), -20);
}

void tst_Rx1::aStoredGainAboveTheMaximumIsClamped()
{
    QVERIFY(save({{QStringLiteral("Dial/MicValue"), 50}}));
    QVERIFY(start());
    QVERIFY(plug(QStringLiteral("rx1")));
    QVERIFY(sentBesides(firstCommand).contains(QStringLiteral("setMicVolume 1 84")));
    QCOMPARE(saved(QStringLiteral("Dial/MicValue")).toInt(), 42);
}

void tst_Rx1::pluggingInAgainReplaysTheState()
{
    const QStringList replay{QStringLiteral("open"),
                             QStringLiteral("setOutVolume 1 100"),
                             QStringLiteral("setOutVolume 2 100"),
                             QStringLiteral("switchMicInstruction 1 1"),
                             QStringLiteral("setMic20dB 1 1"),
                             QStringLiteral("setMic48V 1 1"),
                             firstBlock(diagonal(64, 0, 2)),
                             QStringLiteral("setMicVolume 1 40"),
                             QStringLiteral("sendMixerBlock gain[0]=0.1 gain[1]=0.1"),
                             sameBlock,
                             QStringLiteral("sendMixerBlock gain[0]=0.01 gain[1]=0.01"),
                             QStringLiteral("sendMixerBlock (64,2)=0.01 (65,3)=0.01")};
    QVERIFY(showPanel());
    for (const Buttons which : {Instrument, Pad, Phantom, Direct, Dim})
        QVERIFY(pointer().click(button(which)));
    QVERIFY(pointer().wheel(knob(Gain), 20));
    QVERIFY(pointer().wheel(knob(Headphone), 60));
    QVERIFY(pointer().wheel(knob(Phone), -40));
    QVERIFY(waitForSaved(QStringLiteral("Dial/OtgToHpValue"), -40));

    QVERIFY(unplug());
    QVERIFY(plug(QStringLiteral("rx1")));
    QCOMPARE(sentBesides(firstCommand), replay);
    const PanelPicture panel = pictureWith(KnobCount, ButtonCount);
    for (int i = 0; i < ButtonCount; ++i)
        QCOMPARE(panel.buttons().at(i).lit, i != Mute);
}

void tst_Rx1::aMeterThatCannotBeReadIsOnlyLogged()
{
    QVERIFY(showPanel());
    QVERIFY(simulator().fail(QStringLiteral("readMeterData"), 2));
    QVERIFY(log().waitFor(QStringLiteral("Failed to read meter data from driver."), 2));
    QVERIFY(simulator().clearRecord());
    QVERIFY(waitUntil([this] {
        const QList<RecordEntry> entries = simulator().record();
        return std::any_of(entries.cbegin(), entries.cend(), [](const RecordEntry &entry) {
            return entry.text() == QStringLiteral("readMeterData");
        });
    }));
    QCOMPARE(log().count(QStringLiteral("Failed to read meter data from driver.")), 2);
    QCOMPARE(pictureWith(KnobCount, ButtonCount).knobs().size(), int(KnobCount));
}

QTEST_GUILESS_MAIN(tst_Rx1)
#include "tst_rx1.moc"
