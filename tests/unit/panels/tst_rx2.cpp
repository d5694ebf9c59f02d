#include "modelfixture.h"

/// The RX2 panel.
class tst_Rx2 : public ModelFixture
{
    Q_OBJECT

public:
    tst_Rx2()
        : ModelFixture("rx2")
    { }

private slots:
    void aSavedGainAboveTheMaximumIsSentAndSavedClamped();
    void thePadOfMic2LogsChannel1();
    void mutingOneOutputLeavesTheOtherAlone();
    void theSpeakerPhoneFailsInTheHeadphonesWords();
};

void tst_Rx2::aSavedGainAboveTheMaximumIsSentAndSavedClamped()
{
    writeSettings("[Dial]\nMic1Value=57\nMic2Value=56\n");
    build();
    QCOMPARE(takeSent().filter("setMicVolume"),
             QStringList({"setMicVolume 1 112", "setMicVolume 2 112"}));
    QCOMPARE(saved().value("Dial/Mic1Value"), "56");
    QCOMPARE(saved().value("Dial/Mic2Value"), "56");
}

void tst_Rx2::thePadOfMic2LogsChannel1()
{
    buildQuietly();
    click("Mic220dB");
    QCOMPARE(takeSent(), twice("setMic20dB 2 1"));
    QCOMPARE(takeLog().filter("switched"), twice("Mic 20dB switched for channel 1."));
}

void tst_Rx2::mutingOneOutputLeavesTheOtherAlone()
{
    const auto gains = [this] {
        const QList<double> block = simulator().mixerBlock();
        return block.mid(8192, 2) + block.mid(8196, 2);
    };
    build();
    knob("Speaker").setValue(-20);
    knob("Headphone").setValue(0);
    QCOMPARE(gains(), QList<double>({0.1, 0.1, 1.0, 1.0}));
    click("SpeakerMute");
    QCOMPARE(gains(), QList<double>({0.0, 0.0, 1.0, 1.0}));
    click("SpeakerMute");
    click("HeadphoneMute");
    QCOMPARE(gains(), QList<double>({0.1, 0.1, 0.0, 0.0}));
}

void tst_Rx2::theSpeakerPhoneFailsInTheHeadphonesWords()
{
    buildQuietly();
    for (const char *name : {"OtgToSP", "OtgToHp"}) {
        QVERIFY(simulator().fail("sendMixerBlock", 1, ERROR_GEN_FAILURE));
        knob(name).setValue(-20);
        QCOMPARE(takeLog().first(), "Failed to set OTG to HP volume.");
    }
}

QTEST_MAIN(tst_Rx2)
#include "tst_rx2.moc"
