#include "levelmeters.h"
#include "panelfixture.h"

#include <QSignalSpy>
#include <QTimer>

#include <limits>

namespace {

constexpr qint32 fullScale = std::numeric_limits<qint32>::max();
constexpr qint32 lowest = std::numeric_limits<qint32>::min();

const QString failedRead = "Failed to read meter data from driver.";

/// The knobs with a meter, in the panel's order.
QList<PanelControl> metered(const PanelModel &model)
{
    QList<PanelControl> knobs = model.knobs();
    knobs.removeIf([](const PanelControl &knob) { return knob.levels.isEmpty(); });
    return knobs;
}

QStringList placeholders(const PanelModel &model)
{
    return QStringList(metered(model).size(), "-160 dB");
}

} // namespace

/// The level readouts of all panels.
class tst_LevelMeters : public PanelFixture
{
    Q_OBJECT

public:
    tst_LevelMeters()
        : PanelFixture("rx2")
    { }

private slots:
    void aPeakReadsAsDecibels_data();
    void aPeakReadsAsDecibels();
    void theMeanOfTwoPeaksWrapsAndTruncates_data();
    void theMeanOfTwoPeaksWrapsAndTruncates();

    void showPlaceholdersUntilTheFirstRead_data() { addModelRows(); }
    void showPlaceholdersUntilTheFirstRead();
    void eachMeterShowsItsField_data() { addModelRows(); }
    void eachMeterShowsItsField();
    void aTickReadsTheRecordOnce();
    void bothPhoneMetersAlwaysShowTheSame();
    void thePhoneShowsTheMeanOfTheRawPeaks_data();
    void thePhoneShowsTheMeanOfTheRawPeaks();
    void noOtherFieldCounts();
    void silenceIsMinusInfinityAndNotThePlaceholder();
    void theLowestPeakIsNotANumber();

    void refreshTwiceASecond_data() { addModelRows(); }
    void refreshTwiceASecond();
    void followTheDeviceByThemselves();
    void everyFailingReadIsLoggedAndKeepsTheTexts_data() { addModelRows(); }
    void everyFailingReadIsLoggedAndKeepsTheTexts();
    void readsThatFailFromTheStartLeaveThePlaceholders();
    void goOnAfterAFailure();
    void theFailureOfAnUnpluggedDeviceIsLoggedEachTick();
};

void tst_LevelMeters::aPeakReadsAsDecibels_data()
{
    QTest::addColumn<qint32>("peak");
    QTest::addColumn<QString>("text");
    QTest::newRow("full scale") << fullScale << "0.0 dB";
    QTest::newRow("negative full scale") << -fullScale << "0.0 dB";
    QTest::newRow("half scale") << fullScale / 2 << "-6.0 dB";
    QTest::newRow("negative half scale") << -(fullScale / 2) << "-6.0 dB";
    QTest::newRow("a tenth of full scale") << fullScale / 10 << "-20.0 dB";
    QTest::newRow("a hundredth of full scale") << fullScale / 100 << "-40.0 dB";
    QTest::newRow("one") << 1 << "-186.6 dB";
    QTest::newRow("minus one") << -1 << "-186.6 dB";
    QTest::newRow("silence") << 0 << "-inf dB";
    QTest::newRow("lowest") << lowest << "nan dB";
}

void tst_LevelMeters::aPeakReadsAsDecibels()
{
    QFETCH(qint32, peak);
    QTEST(LevelMeters::text(peak), "text");
    // And the whole way from the device.
    QVERIFY(simulator().setMeters({{0, peak}}));
    build();
    tick();
    QTEST(meterTexts().first(), "text");
}

void tst_LevelMeters::theMeanOfTwoPeaksWrapsAndTruncates_data()
{
    QTest::addColumn<qint32>("left");
    QTest::addColumn<qint32>("right");
    QTest::addColumn<qint32>("mean");
    QTest::newRow("silence") << 0 << 0 << 0;
    QTest::newRow("equal") << 100 << 100 << 100;
    QTest::newRow("odd sum") << 2 << 1 << 1;
    QTest::newRow("negative odd sum") << -2 << -1 << -1;
    QTest::newRow("opposite") << 1000 << -1000 << 0;
    QTest::newRow("one above opposite") << 1000 << -999 << 0;
    QTest::newRow("one below opposite") << -1000 << 999 << 0;
    QTest::newRow("full scale wraps") << fullScale << fullScale << -1;
    QTest::newRow("just too much wraps") << fullScale << 1 << lowest / 2;
    QTest::newRow("lowest wraps to silence") << lowest << lowest << 0;
    QTest::newRow("lowest and minus one wrap") << lowest << -1 << fullScale / 2;
}

void tst_LevelMeters::theMeanOfTwoPeaksWrapsAndTruncates()
{
    QFETCH(qint32, left);
    QFETCH(qint32, right);
    QTEST(LevelMeters::mean(left, right), "mean");
    QTEST(LevelMeters::mean(right, left), "mean");
}

void tst_LevelMeters::showPlaceholdersUntilTheFirstRead()
{
    QFETCH(PanelModel, model);
    begin(model);
    QVERIFY(simulator().setMeters({{0, fullScale}, {1, fullScale}, {2, fullScale}}));
    build();
    QCOMPARE(meterTexts(), placeholders(model));
}

void tst_LevelMeters::eachMeterShowsItsField()
{
    QFETCH(PanelModel, model);
    begin(model);
    QVERIFY(simulator().setMeters(
        {{0, fullScale / 2}, {1, fullScale / 10}, {2, fullScale / 100}, {3, fullScale / 100}}));
    build();
    tick();
    const QStringList shown{"-6.0 dB", "-20.0 dB", "-40.0 dB", "-40.0 dB"};
    QStringList expected;
    const QList<PanelControl> knobs = metered(model);
    for (const PanelControl &knob : knobs)
        expected << shown.at(knob.levels.first());
    QCOMPARE(meterTexts(), expected);
}

void tst_LevelMeters::aTickReadsTheRecordOnce()
{
    buildQuietly();
    tick();
    QCOMPARE(takeEvents(), QStringList("readMeterData"));
    QCOMPARE(takeLog(), QStringList());
}

void tst_LevelMeters::bothPhoneMetersAlwaysShowTheSame()
{
    build();
    for (const qint32 left : {0, 1, 123456789, fullScale, lowest}) {
        for (const qint32 right : {0, -5, 987654321, fullScale, lowest}) {
            QVERIFY(simulator().setMeters({{2, left}, {3, right}}));
            tick();
            const QStringList texts = meterTexts();
            QCOMPARE(texts.size(), 4);
            QCOMPARE(texts.at(2), texts.at(3));
            QCOMPARE(texts.at(2), LevelMeters::text(LevelMeters::mean(left, right)));
        }
    }
}

void tst_LevelMeters::thePhoneShowsTheMeanOfTheRawPeaks_data()
{
    QTest::addColumn<qint32>("left");
    QTest::addColumn<qint32>("right");
    QTest::addColumn<QString>("text");
    QTest::newRow("both at full scale wrap") << fullScale << fullScale << "-186.6 dB";
    QTest::newRow("one side at full scale") << fullScale << 0 << "-6.0 dB";
    QTest::newRow("both at a tenth") << fullScale / 10 << fullScale / 10 << "-20.0 dB";
    QTest::newRow("opposite cancel out") << fullScale << -fullScale << "-inf dB";
    QTest::newRow("both lowest") << lowest << lowest << "-inf dB";
}

void tst_LevelMeters::thePhoneShowsTheMeanOfTheRawPeaks()
{
    QFETCH(qint32, left);
    QFETCH(qint32, right);
    QFETCH(QString, text);
    for (const PanelModel &model : allPanelModels()) {
        if (metered(model).last().levels.size() < 2)
            continue;
        begin(model);
        QVERIFY(simulator().setMeters({{2, left}, {3, right}}));
        build();
        tick();
        QCOMPARE(meterTexts().last(), text);
    }
}

void tst_LevelMeters::noOtherFieldCounts()
{
    QMap<int, qint32> others;
    for (int i = 4; i < 192; ++i)
        others.insert(i, fullScale);
    QVERIFY(simulator().setMeters(others));
    build();
    tick();
    QCOMPARE(meterTexts(), QStringList(4, "-inf dB"));
}

void tst_LevelMeters::silenceIsMinusInfinityAndNotThePlaceholder()
{
    build();
    tick();
    QCOMPARE(meterTexts(), QStringList(4, "-inf dB"));
}

void tst_LevelMeters::theLowestPeakIsNotANumber()
{
    QVERIFY(simulator().setMeters({{0, lowest}, {1, lowest}, {2, lowest}}));
    build();
    tick();
    // Half of the lowest is a number again.
    QCOMPARE(meterTexts(), QStringList({"nan dB", "nan dB", "-6.0 dB", "-6.0 dB"}));
}

void tst_LevelMeters::refreshTwiceASecond()
{
    QFETCH(PanelModel, model);
    begin(model);
    build();
    const QList<QTimer *> timers = panel().findChildren<QTimer *>();
    QCOMPARE(timers.size(), 1);
    QVERIFY(timers.first()->isActive());
    QVERIFY(!timers.first()->isSingleShot());
    QCOMPARE(timers.first()->interval(), 500);
}

void tst_LevelMeters::followTheDeviceByThemselves()
{
    build();
    QVERIFY(simulator().setMeters({{0, fullScale}}));
    QTRY_COMPARE(meterTexts().first(), "0.0 dB");
    QVERIFY(simulator().setMeters({{0, fullScale / 10}}));
    QTRY_COMPARE(meterTexts().first(), "-20.0 dB");
}

void tst_LevelMeters::everyFailingReadIsLoggedAndKeepsTheTexts()
{
    QFETCH(PanelModel, model);
    begin(model);
    QVERIFY(simulator().setMeters({{0, fullScale}, {1, fullScale}, {2, fullScale}}));
    buildQuietly();
    tick();
    const QStringList shown = meterTexts();
    QVERIFY(shown != placeholders(model));

    QVERIFY(simulator().setMeters({{0, 1}, {1, 1}, {2, 1}, {3, 1}}));
    QVERIFY(simulator().fail("readMeterData", 1, ERROR_GEN_FAILURE, 0));
    takeEvents();
    for (int i = 1; i <= 3; ++i) {
        tick();
        QCOMPARE(takeEvents(), QStringList("readMeterData !31"));
        QCOMPARE(takeLog(), QStringList(failedRead));
        QCOMPARE(meterTexts(), shown);
    }
}

void tst_LevelMeters::readsThatFailFromTheStartLeaveThePlaceholders()
{
    QVERIFY(simulator().fail("readMeterData", 1, ERROR_GEN_FAILURE, 0));
    buildQuietly();
    tick();
    tick();
    QCOMPARE(takeLog(), QStringList({failedRead, failedRead}));
    QCOMPARE(meterTexts(), placeholders(model()));
}

void tst_LevelMeters::goOnAfterAFailure()
{
    QVERIFY(simulator().fail("readMeterData", 2, ERROR_GEN_FAILURE, 1));
    QVERIFY(simulator().setMeters({{0, fullScale}}));
    buildQuietly();
    // The timer's own ticks, so that a failure is seen not to stop it.
    QTRY_COMPARE(log(), QStringList(failedRead));
    QVERIFY(simulator().setMeters({{0, fullScale / 10}}));
    QTRY_COMPARE(meterTexts().first(), "-20.0 dB");
    QCOMPARE(log(), QStringList(failedRead));
}

void tst_LevelMeters::theFailureOfAnUnpluggedDeviceIsLoggedEachTick()
{
    buildQuietly();
    QVERIFY(simulator().unplug());
    takeEvents();
    tick();
    tick();
    QCOMPARE(takeEvents(), twice("readMeterData !1167"));
    QCOMPARE(takeLog(), twice(failedRead));
}

QTEST_MAIN(tst_LevelMeters)
#include "tst_levelmeters.moc"
