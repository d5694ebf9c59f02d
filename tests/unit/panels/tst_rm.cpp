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
};

void tst_Rm::turningTheHeadphoneKnobLogsNothing()
{
    buildQuietly();
    turn("Headphone", 5);
    QCOMPARE(takeSent().size(), 5);
    QCOMPARE(takeLog(), QStringList());
}

QTEST_MAIN(tst_Rm)
#include "tst_rm.moc"
