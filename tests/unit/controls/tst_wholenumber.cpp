#include "wholenumber.h"

#include <QTest>

#include <limits>

class tst_WholeNumber : public QObject
{
    Q_OBJECT

private slots:
    void decimalDigitsAreANumber_data();
    void decimalDigitsAreANumber();
    void beyond64BitsItIsTheNearestThatFits_data();
    void beyond64BitsItIsTheNearestThatFits();
    void anythingElseIsNoNumber_data();
    void anythingElseIsNoNumber();
};

void tst_WholeNumber::decimalDigitsAreANumber_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<qint64>("number");
    QTest::newRow("zero") << "0" << qint64{0};
    QTest::newRow("plus") << "+42" << qint64{42};
    QTest::newRow("minus") << "-80" << qint64{-80};
    QTest::newRow("minus zero") << "-0" << qint64{0};
    QTest::newRow("leading zeros") << "0000000000000000000000000000042" << qint64{42};
    QTest::newRow("space around") << " \t\n\v\f\r42 \t\n\v\f\r" << qint64{42};
    QTest::newRow("beyond 32 bits") << "4294967297" << qint64{4294967297};
    QTest::newRow("greatest") << "9223372036854775807" << std::numeric_limits<qint64>::max();
    QTest::newRow("least") << "-9223372036854775808" << std::numeric_limits<qint64>::min();
}

void tst_WholeNumber::decimalDigitsAreANumber()
{
    QFETCH(QString, text);
    QTEST(wholeNumber(text).value(), "number");
}

void tst_WholeNumber::beyond64BitsItIsTheNearestThatFits_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<qint64>("number");
    constexpr auto greatest = std::numeric_limits<qint64>::max();
    constexpr auto least = std::numeric_limits<qint64>::min();
    QTest::newRow("by one") << "9223372036854775808" << greatest;
    QTest::newRow("by one, with plus") << "+9223372036854775808" << greatest;
    QTest::newRow("by one, negative") << "-9223372036854775809" << least;
    QTest::newRow("in space") << " -99999999999999999999 " << least;
    QTest::newRow("a thousand digits") << QString(1000, '9') << greatest;
    QTest::newRow("a thousand digits, negative") << '-' + QString(1000, '9') << least;
}

void tst_WholeNumber::beyond64BitsItIsTheNearestThatFits()
{
    QFETCH(QString, text);
    QTEST(wholeNumber(text).value(), "number");
}

void tst_WholeNumber::anythingElseIsNoNumber_data()
{
    QTest::addColumn<QString>("text");
    QTest::newRow("nothing") << "";
    QTest::newRow("null") << QString();
    QTest::newRow("space") << "  ";
    QTest::newRow("plus alone") << "+";
    QTest::newRow("minus alone") << "-";
    QTest::newRow("two signs") << "--5";
    QTest::newRow("sign apart") << "- 5";
    QTest::newRow("sign behind") << "5-";
    QTest::newRow("space within") << "4 2";
    QTest::newRow("fraction") << "-20.5";
    QTest::newRow("exponent") << "1e1";
    QTest::newRow("hexadecimal") << "0x10";
    QTest::newRow("group separator") << "1,000";
    QTest::newRow("word") << "true";
    QTest::newRow("full-width digit") << "\uff15";
    QTest::newRow("Arabic digit") << "\u0665";
    QTest::newRow("minus of mathematics") << "\u22125";
    QTest::newRow("no-break space") << "\u00a05";
    QTest::newRow("zero byte behind") << QString::fromLatin1("5\0", 2);
    QTest::newRow("long, with a letter") << QString(1000, '9') + 'x';
}

void tst_WholeNumber::anythingElseIsNoNumber()
{
    QFETCH(QString, text);
    QVERIFY(!wholeNumber(text).has_value());
}

QTEST_APPLESS_MAIN(tst_WholeNumber)

#include "tst_wholenumber.moc"
