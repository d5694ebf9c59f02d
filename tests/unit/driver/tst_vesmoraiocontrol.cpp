#include "vesmoraiocontrol.h"

#include <QTest>

#include <cmath>
#include <limits>
#include <type_traits>

namespace {

constexpr double infinity = std::numeric_limits<double>::infinity();
constexpr qint32 mostNegative = std::numeric_limits<qint32>::min();

/// Expected values are written with this many significant digits.
bool agrees(double actual, double expected)
{
    return std::abs(actual - expected) <= 1e-9 * std::abs(expected);
}

} // namespace

class tst_VesmoraIoControl : public QObject
{
    Q_OBJECT

private slots:
    void isAPlainClassThatHoldsAHandleAlone();

    void dbToGainIsTheLinearFactor_data();
    void dbToGainIsTheLinearFactor();
    void dbToGainIsSilenceAtTheBottomAndBelow_data();
    void dbToGainIsSilenceAtTheBottomAndBelow();
    void dbToGainIsNotSilenceJustAboveTheBottom();
    void dbToGainStaysWhatItIsAtSixAbove_data();
    void dbToGainStaysWhatItIsAtSixAbove();
    void dbToGainOfEveryKnobValue();

    void peakToDbIsRelativeToFullScale_data();
    void peakToDbIsRelativeToFullScale();
    void peakToDbIsTheSameForBothSigns();
    void peakToDbOfFullScaleIsZero();
    void peakToDbOfZeroIsMinusInfinity();
    void peakToDbOfTheMostNegativeValueIsNotANumber();
};

void tst_VesmoraIoControl::isAPlainClassThatHoldsAHandleAlone()
{
    QCOMPARE(sizeof(VesmoraIoControl), sizeof(HANDLE));
    QVERIFY(std::is_standard_layout_v<VesmoraIoControl>);
    QVERIFY(!std::is_polymorphic_v<VesmoraIoControl>);
    QVERIFY(!std::is_copy_constructible_v<VesmoraIoControl>);
}

void tst_VesmoraIoControl::dbToGainIsTheLinearFactor_data()
{
    QTest::addColumn<double>("db");
    QTest::addColumn<double>("gain");
    QTest::newRow("-79.9") << -79.9 << 1.011579454e-4;
    QTest::newRow("-79") << -79.0 << 1.122018454e-4;
    QTest::newRow("-60") << -60.0 << 0.001;
    QTest::newRow("-40") << -40.0 << 0.01;
    QTest::newRow("-20") << -20.0 << 0.1;
    QTest::newRow("-6") << -6.0 << 0.5011872336;
    QTest::newRow("-0.5") << -0.5 << 0.9440608763;
    QTest::newRow("0") << 0.0 << 1.0;
    QTest::newRow("1") << 1.0 << 1.122018454;
    QTest::newRow("6") << 6.0 << 1.995262315;
}

void tst_VesmoraIoControl::dbToGainIsTheLinearFactor()
{
    QFETCH(double, db);
    QFETCH(double, gain);
    const double actual = VesmoraIoControl::dbToGain(db);
    QVERIFY2(agrees(actual, gain), qPrintable(QString::number(actual, 'g', 17)));
}

void tst_VesmoraIoControl::dbToGainIsSilenceAtTheBottomAndBelow_data()
{
    QTest::addColumn<double>("db");
    QTest::newRow("-80") << -80.0;
    QTest::newRow("a trifle less") << std::nextafter(-80.0, -infinity);
    QTest::newRow("-81") << -81.0;
    QTest::newRow("-200") << -200.0;
    QTest::newRow("minus infinity") << -infinity;
}

void tst_VesmoraIoControl::dbToGainIsSilenceAtTheBottomAndBelow()
{
    QFETCH(double, db);
    const double gain = VesmoraIoControl::dbToGain(db);
    QVERIFY(gain == 0.0);
    QVERIFY(!std::signbit(gain));
}

void tst_VesmoraIoControl::dbToGainIsNotSilenceJustAboveTheBottom()
{
    QVERIFY(agrees(VesmoraIoControl::dbToGain(std::nextafter(-80.0, 0.0)), 1e-4));
}

void tst_VesmoraIoControl::dbToGainStaysWhatItIsAtSixAbove_data()
{
    QTest::addColumn<double>("db");
    QTest::newRow("a trifle more") << std::nextafter(6.0, infinity);
    QTest::newRow("7") << 7.0;
    QTest::newRow("12") << 12.0;
    QTest::newRow("infinity") << infinity;
}

void tst_VesmoraIoControl::dbToGainStaysWhatItIsAtSixAbove()
{
    QFETCH(double, db);
    QVERIFY(VesmoraIoControl::dbToGain(db) == VesmoraIoControl::dbToGain(6.0));
}

void tst_VesmoraIoControl::dbToGainOfEveryKnobValue()
{
    for (int db = -79; db <= 6; ++db)
        QVERIFY2(VesmoraIoControl::dbToGain(db) == std::pow(10.0, db / 20.0),
                 qPrintable(QString::number(db)));
}

void tst_VesmoraIoControl::peakToDbIsRelativeToFullScale_data()
{
    QTest::addColumn<qint32>("peak");
    QTest::addColumn<double>("db");
    QTest::newRow("half") << 1073741824 << -6.020599909;
    QTest::newRow("a quarter") << 536870912 << -12.04119982;
    QTest::newRow("a tenth") << 214748365 << -19.99999999;
    QTest::newRow("2147483") << 2147483 << -60.00000262;
    QTest::newRow("100") << 100 << -146.6385973;
    QTest::newRow("1") << 1 << -186.6385973;
}

void tst_VesmoraIoControl::peakToDbIsRelativeToFullScale()
{
    QFETCH(qint32, peak);
    QFETCH(double, db);
    const double actual = VesmoraIoControl::peakToDb(peak);
    QVERIFY2(agrees(actual, db), qPrintable(QString::number(actual, 'g', 17)));
}

void tst_VesmoraIoControl::peakToDbIsTheSameForBothSigns()
{
    for (const qint32 peak : {1, 2, 1000, 65536, 123456789, 2147483646})
        QVERIFY(VesmoraIoControl::peakToDb(-peak) == VesmoraIoControl::peakToDb(peak));
}

void tst_VesmoraIoControl::peakToDbOfFullScaleIsZero()
{
    QVERIFY(VesmoraIoControl::peakToDb(2147483647) == 0.0);
    QVERIFY(VesmoraIoControl::peakToDb(-2147483647) == 0.0);
}

void tst_VesmoraIoControl::peakToDbOfZeroIsMinusInfinity()
{
    QVERIFY(VesmoraIoControl::peakToDb(0) == -infinity);
}

void tst_VesmoraIoControl::peakToDbOfTheMostNegativeValueIsNotANumber()
{
    QVERIFY(std::isnan(VesmoraIoControl::peakToDb(mostNegative)));
}

QTEST_APPLESS_MAIN(tst_VesmoraIoControl)
#include "tst_vesmoraiocontrol.moc"
