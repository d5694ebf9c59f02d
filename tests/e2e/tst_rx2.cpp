#include "mixerfixture.h"

#include <QTest>

/// The RX2 panel in the running program.
class tst_Rx2 : public MixerFixture
{
    Q_OBJECT

public:
    tst_Rx2()
        : MixerFixture("rx2")
    { }
};

QTEST_GUILESS_MAIN(tst_Rx2)
#include "tst_rx2.moc"
