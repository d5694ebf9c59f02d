#include "modelfixture.h"

/// The RX1 panel.
class tst_Rx1 : public ModelFixture
{
    Q_OBJECT

public:
    tst_Rx1()
        : ModelFixture("rx1")
    { }

private slots:
    void theInstrumentButtonNamesTheInput();
    void aSavedGainAboveTheMaximumIsSentAndSavedClamped();
};

void tst_Rx1::theInstrumentButtonNamesTheInput()
{
    build();
    QCOMPARE(button("MicInstr").text(), "MIC");
    click("MicInstr");
    QCOMPARE(button("MicInstr").text(), "INST");
    click("MicInstr");
    QCOMPARE(button("MicInstr").text(), "MIC");
}

void tst_Rx1::aSavedGainAboveTheMaximumIsSentAndSavedClamped()
{
    writeSettings("[Dial]\nMicValue=50\n");
    build();
    QCOMPARE(takeSent().filter("setMicVolume"), QStringList("setMicVolume 1 84"));
    QCOMPARE(saved().value("Dial/MicValue"), "42");
}

QTEST_MAIN(tst_Rx1)
#include "tst_rx1.moc"
