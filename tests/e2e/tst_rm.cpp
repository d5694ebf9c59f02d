#include "mixerfixture.h"

#include <QTest>

/// The RM panel in the running program.
class tst_Rm : public MixerFixture
{
    Q_OBJECT

public:
    tst_Rm()
        : MixerFixture("rm")
    { }
};

QTEST_GUILESS_MAIN(tst_Rm)
#include "tst_rm.moc"
