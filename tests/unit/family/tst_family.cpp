#include "expectedpanel.h"
#include "goldenstart.h"
#include "modelnames.h"

#include <QTest>

/// What the family has to do, judged by the starts that are written out.
class tst_Family : public QObject
{
    Q_OBJECT

private slots:
    void everyNamedModelIsDescribed();
    void startsAreGolden_data();
    void startsAreGolden();
};

void tst_Family::everyNamedModelIsDescribed()
{
    QStringList described;
    for (const PanelModel &model : allPanelModels())
        described << model.name;
    QStringList named;
    for (const ModelName &known : modelNames())
        named << known.name;
    QCOMPARE(described.join(' '), named.join(' '));
}

void tst_Family::startsAreGolden_data()
{
    QTest::addColumn<PanelModel>("model");
    QTest::addColumn<bool>("isReplay");
    for (const PanelModel &model : allPanelModels()) {
        QTest::addRow("%s first", qPrintable(model.name)) << model << false;
        QTest::addRow("%s with a saved state", qPrintable(model.name)) << model << true;
    }
}

void tst_Family::startsAreGolden()
{
    QFETCH(PanelModel, model);
    QFETCH(bool, isReplay);
    const GoldenStart golden = isReplay ? goldenReplay(model.name) : goldenFirstStart(model.name);
    ExpectedPanel panel(model, isReplay ? golden.values() : QMap<QString, QString>());
    panel.construct();
    QCOMPARE(QStringList("open") + panel.takeRequests(), golden.requests);
    QCOMPARE(panel.takeLog(), golden.log);
    QCOMPARE(panel.saved(), golden.values());
}

QTEST_GUILESS_MAIN(tst_Family)
#include "tst_family.moc"
