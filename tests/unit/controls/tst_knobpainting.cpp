#include "knobfixture.h"

#include <QPainter>
#include <QtMath>

namespace {

/// The pixel on the middle of the arc, @p degrees counter-clockwise from three o'clock.
QColor arcPixel(const QImage &image, const Knob &knob, double degrees)
{
    const double radius = knob.width() / 2.0 - knob.arcWidth;
    const double angle = qDegreesToRadians(degrees);
    return image.pixelColor(qFloor(knob.width() / 2.0 + radius * qCos(angle)),
                            qFloor(knob.height() / 2.0 - radius * qSin(angle)));
}

/// How many degrees clockwise from 225 the value arc reaches, its end cap not counted.
double paintedSweep(const QImage &image, const Knob &knob)
{
    constexpr double step = 0.25;
    double sweep = 0;
    while (sweep < 300 && arcPixel(image, knob, 225 - sweep) == knob.arcColor)
        sweep += step;
    const double radius = knob.width() / 2.0 - knob.arcWidth;
    return sweep - qRadiansToDegrees(knob.arcWidth / 2.0 / radius);
}

bool contains(const QImage &image, const QColor &color)
{
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x)
            if (image.pixelColor(x, y) == color)
                return true;
    return false;
}

/// White light from the top-left corner, fading to @p shade at @p reach pixels.
QColor litColor(QPoint pixel, double reach, int shade)
{
    const double distance = qSqrt(qPow(pixel.x() + 0.5, 2) + qPow(pixel.y() + 0.5, 2));
    const int level = qRound(255 + (shade - 255) * qMin(1.0, distance / reach));
    return QColor(level, level, level);
}

bool similar(const QColor &a, const QColor &b)
{
    constexpr int tolerance = 3;
    return qAbs(a.red() - b.red()) <= tolerance && qAbs(a.green() - b.green()) <= tolerance
        && qAbs(a.blue() - b.blue()) <= tolerance;
}

QRect expectedTextRect(const Knob &knob, const QString &text)
{
    QImage image(knob.size(), QImage::Format_ARGB32_Premultiplied);
    QPainter painter(&image);
    painter.setFont(QFont(knob.fontFamily, knob.fontSize));
    return painter.boundingRect(knob.rect(), Qt::AlignCenter, text);
}

} // namespace

class tst_KnobPainting : public KnobFixture
{
    Q_OBJECT

private slots:
    void noArcAtTheMinimum();
    void arcSpans135DegreesAtTheMidpoint();
    void arcCoversTheWholeTrackAtTheMaximum();
    void noArcWithAnEmptyRange();
    void trackRunsFrom225DegreesOver270();
    void noTrackWhenItIsOff();
    void arcWidthIsWidthAndInset();
    void roundCapsAreNarrowerThanSquareOnes();
    void faceIsLitFromTheTopLeft();
    void shadowShowsAtTheFacesLowerRight();
    void faceRatioScalesTheFace();
    void textIsPaintedCentredInItsColour();
    void noTextWhenItIsOff();
    void textRectFollowsEveryPaint();
    void textShowsTheOffsetValue();
    void textForZeroIgnoresTheOffset();
    void textUsesTheSuffix();
    void accentColourChangesNothing();
    void aKnobSmallerThanItsArcPaintsWithoutComplaint();
};

void tst_KnobPainting::noArcAtTheMinimum()
{
    ObservedKnob knob(gains, 0);
    const QImage image = picture(knob);
    QVERIFY(!contains(image, knob.arcColor));
    QCOMPARE(arcPixel(image, knob, 225), knob.trackColor);
}

void tst_KnobPainting::arcSpans135DegreesAtTheMidpoint()
{
    ObservedKnob knob(gains, 21);
    const QImage image = picture(knob);
    QCOMPARE(arcPixel(image, knob, 225), knob.arcColor);
    QCOMPARE(arcPixel(image, knob, 180), knob.arcColor);
    QCOMPARE(arcPixel(image, knob, 82), knob.trackColor);
    QVERIFY(qAbs(paintedSweep(image, knob) - 135) < 2);
}

void tst_KnobPainting::arcCoversTheWholeTrackAtTheMaximum()
{
    ObservedKnob knob(decibels, 6);
    const QImage image = picture(knob);
    QVERIFY(!contains(image, knob.trackColor));
    QVERIFY(qAbs(paintedSweep(image, knob) - 270) < 2);
}

void tst_KnobPainting::noArcWithAnEmptyRange()
{
    ObservedKnob knob({3, 3}, 3);
    QVERIFY(!contains(picture(knob), knob.arcColor));
}

void tst_KnobPainting::trackRunsFrom225DegreesOver270()
{
    ObservedKnob knob(gains, 0);
    const QImage image = picture(knob);
    for (int degrees = 225; degrees >= -45; --degrees)
        QCOMPARE(arcPixel(image, knob, degrees), knob.trackColor);
    for (int degrees = -53; degrees >= -127; --degrees)
        QCOMPARE(arcPixel(image, knob, degrees), QColor(Qt::blue));
}

void tst_KnobPainting::noTrackWhenItIsOff()
{
    ObservedKnob knob(gains, 21);
    knob.showTrack = false;
    const QImage image = picture(knob);
    QVERIFY(!contains(image, knob.trackColor));
    QCOMPARE(arcPixel(image, knob, 180), knob.arcColor);
    QCOMPARE(arcPixel(image, knob, 45), QColor(Qt::blue));
}

void tst_KnobPainting::arcWidthIsWidthAndInset()
{
    ObservedKnob knob(gains, 42);
    knob.arcWidth = 12;
    const QImage image = picture(knob);
    // Around an inset of 12 the pen reaches from 6 to 18.
    QCOMPARE(image.pixelColor(4, side / 2), QColor(Qt::blue));
    QCOMPARE(image.pixelColor(8, side / 2), knob.arcColor);
    QCOMPARE(image.pixelColor(15, side / 2), knob.arcColor);
    QVERIFY(image.pixelColor(20, side / 2) != knob.arcColor);
}

void tst_KnobPainting::roundCapsAreNarrowerThanSquareOnes()
{
    ObservedKnob knob(gains, 0);
    const QImage round = picture(knob);
    knob.roundCap = false;
    const QImage square = picture(knob);
    const auto coverage = [&](const QImage &image) {
        int count = 0;
        for (int y = 0; y < side; ++y)
            for (int x = 0; x < side; ++x)
                count += image.pixelColor(x, y) == knob.trackColor;
        return count;
    };
    QVERIFY(coverage(square) > coverage(round));
}

void tst_KnobPainting::faceIsLitFromTheTopLeft()
{
    ObservedKnob knob(gains, 0);
    knob.showText = false;
    const QImage image = picture(knob);
    // The face's circle has its centre at (59, 59) and a radius of 42; its light reaches 53.
    const QPoint topLeft(31, 31);
    QVERIFY(litColor(topLeft, 53, 30) != QColor(30, 30, 30));
    QVERIFY(similar(image.pixelColor(topLeft), litColor(topLeft, 53, 30)));
    QCOMPARE(image.pixelColor(59, 59), QColor(30, 30, 30));
    QCOMPARE(image.pixelColor(85, 85), QColor(30, 30, 30));
    QVERIFY(image.pixelColor(topLeft).red() > image.pixelColor(85, 85).red());
}

void tst_KnobPainting::shadowShowsAtTheFacesLowerRight()
{
    ObservedKnob knob(gains, 0);
    const QImage image = picture(knob);
    // The face ends at 101 below, the shadow two pixels further; its light reaches 63.6.
    const QColor shade(20, 20, 20);
    QCOMPARE(image.pixelColor(60, 99), QColor(30, 30, 30));
    QVERIFY(similar(image.pixelColor(60, 102), shade));
    QVERIFY(similar(image.pixelColor(102, 60), shade));
    QCOMPARE(image.pixelColor(60, 104), QColor(Qt::blue));
    QVERIFY(!contains(image.copy(0, 0, side / 2, side / 2), shade));
}

void tst_KnobPainting::faceRatioScalesTheFace()
{
    ObservedKnob knob(gains, 0);
    knob.showText = false;
    knob.faceRatio = 0.5;
    const QImage image = picture(knob);
    // The face spans 33..86, its shadow 34..87.
    QCOMPARE(image.pixelColor(30, 60), QColor(Qt::blue));
    QVERIFY(image.pixelColor(36, 60) != QColor(Qt::blue));
    QVERIFY(image.pixelColor(84, 60) != QColor(Qt::blue));
    QCOMPARE(image.pixelColor(91, 60), QColor(Qt::blue));
}

void tst_KnobPainting::textIsPaintedCentredInItsColour()
{
    ObservedKnob knob(decibels, -20);
    knob.textColor = QColor("#00ff7f");
    const QImage image = picture(knob);
    QCOMPARE(knob.textRect, expectedTextRect(knob, "-20dB"));
    QVERIFY(qAbs(knob.textRect.center().x() - side / 2) <= 1);
    QVERIFY(qAbs(knob.textRect.center().y() - side / 2) <= 1);

    QImage bare = image;
    QPainter(&bare).fillRect(knob.textRect, Qt::black);
    QVERIFY(contains(image, knob.textColor));
    QVERIFY(!contains(bare, knob.textColor));
}

void tst_KnobPainting::noTextWhenItIsOff()
{
    ObservedKnob knob(decibels, -20);
    knob.showText = false;
    QVERIFY(!contains(picture(knob), knob.textColor));
    QCOMPARE(knob.textRect, QRect());
}

void tst_KnobPainting::textRectFollowsEveryPaint()
{
    ObservedKnob knob(decibels, -20);
    picture(knob);
    QCOMPARE(knob.textRect, expectedTextRect(knob, "-20dB"));
    knob.setValue(5);
    picture(knob);
    QCOMPARE(knob.textRect, expectedTextRect(knob, "5dB"));
    knob.fontSize = 20;
    picture(knob);
    QCOMPARE(knob.textRect, expectedTextRect(knob, "5dB"));
    knob.resize(90, 90);
    picture(knob);
    QCOMPARE(knob.textRect, expectedTextRect(knob, "5dB"));
}

void tst_KnobPainting::textShowsTheOffsetValue()
{
    ObservedKnob knob({-80, 80}, -20);
    ObservedKnob offset({-80, 80}, -20);
    offset.displayOffset = 33;
    ObservedKnob thirteen({-80, 80}, 13);
    const QImage plainText = picture(knob).copy(knob.textRect);
    const QImage offsetText = picture(offset).copy(offset.textRect);
    const QImage thirteenText = picture(thirteen).copy(thirteen.textRect);
    QCOMPARE(offsetText, thirteenText);
    QVERIFY(offsetText != plainText);
}

void tst_KnobPainting::textForZeroIgnoresTheOffset()
{
    ObservedKnob knob(decibels, 0);
    const QImage plain = picture(knob);
    knob.displayOffset = 33;
    QCOMPARE(picture(knob), plain);
    QCOMPARE(knob.textRect, expectedTextRect(knob, "0dB"));
}

void tst_KnobPainting::textUsesTheSuffix()
{
    ObservedKnob knob(decibels, -20);
    const QImage decibel = picture(knob);
    knob.suffix = " units";
    QVERIFY(picture(knob) != decibel);
    QCOMPARE(knob.textRect, expectedTextRect(knob, "-20 units"));
}

void tst_KnobPainting::accentColourChangesNothing()
{
    ObservedKnob knob(decibels, -20);
    const QImage before = picture(knob);
    knob.accentColor = Qt::red;
    QCOMPARE(picture(knob), before);
}

void tst_KnobPainting::aKnobSmallerThanItsArcPaintsWithoutComplaint()
{
    ObservedKnob knob(decibels, -20);
    knob.resize(10, 10);
    QCOMPARE(picture(knob).size(), QSize(10, 10));
}

QTEST_MAIN(tst_KnobPainting)

#include "tst_knobpainting.moc"
