#include "modelfixture.h"

/// The RM panel.
class tst_Rm : public ModelFixture
{
    Q_OBJECT

public:
    tst_Rm()
        : ModelFixture("rm")
    { }

private slots:
    void turningTheHeadphoneKnobLogsNothing();
    void thePhoneStaysAtUnityWhateverIsDone();
};

void tst_Rm::turningTheHeadphoneKnobLogsNothing()
{
    buildQuietly();
    turn("Headphone", 5);
    QCOMPARE(takeSent().size(), 5);
    QCOMPARE(takeLog(), QStringList());
}

void tst_Rm::thePhoneStaysAtUnityWhateverIsDone()
{
    build();
    for (const PanelControl &control : model().controls) {
        if (control.isKnob())
            turn(control.name, 1);
        else
            click(control.name);
        QCOMPARE(simulator().mixerBlock().at(2050), 1.0);
        QCOMPARE(simulator().mixerBlock().at(2083), 1.0);
    }
}

QTEST_MAIN(tst_Rm)
#include "tst_rm.moc"
