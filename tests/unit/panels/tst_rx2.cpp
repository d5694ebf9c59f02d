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
    void theSpeakerPhoneFailsInTheHeadphonesWords();
};

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
