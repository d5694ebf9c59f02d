#include "knoblook.h"
#include "knobpicture.h"
#include "plainground.h"

#include <QPainter>
#include <QTest>

#include <functional>

namespace {

constexpr QSize extent(70, 70);
constexpr QPoint place(5, 7);

QImage groundImage(QImage::Format format = QImage::Format_RGB32, const QColor &color = "#2c313c")
{
    QImage image(100, 100, format);
    image.fill(color);
    return image;
}

/// The ground at place on @p image, for a painter that was set up beforehand.
std::optional<PlainGround> groundOn(
    QImage image, const std::function<void(QPainter &)> &setUp = [](QPainter &) {})
{
    QPainter painter(&image);
    painter.translate(place);
    setUp(painter);
    return PlainGround::under(painter, extent);
}

KnobLook phoneLook()
{
    return {extent, 3, true, true, "#44475a", "#00ffff", 0.8};
}

/// What @p look has to be on the usual ground.
QImage painted(const KnobLook &look, int arcSpan)
{
    QImage image = groundImage().copy(QRect(QPoint(), extent));
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    look.paint(painter, arcSpan);
    painter.end();
    return image;
}

} // namespace

class tst_KnobPicture : public QObject
{
    Q_OBJECT

private slots:
    void knobsThatLookAlikeShareOne();
    void anotherLookHasAnother();
    void anotherGroundHasAnother_data();
    void anotherGroundHasAnother();
    void theSameGroundElsewhereHasTheSame();
    void goesWithTheLastOfThem();
    void showsEveryArcThatIsAskedFor();
    void showsEveryArcHoweverManyThereAre();
    void forgetsArcsBeforeTheyTakeTooMuch();
    void aGroundIsPlainWhenItIsOfOneColour();
    void aGroundOfAnotherFormatIsNotPlain();
    void aTranslucentGroundIsNotPlain();
    void aGroundThatEndsBeforeTheKnobIsNotPlain();
    void noGroundIsPlainForAPainterThatDoesMoreThanPaint_data();
    void noGroundIsPlainForAPainterThatDoesMoreThanPaint();
};

void tst_KnobPicture::knobsThatLookAlikeShareOne()
{
    const PlainGround ground = groundOn(groundImage()).value();
    const auto first = KnobPicture::of(phoneLook(), ground, nullptr);
    QCOMPARE(KnobPicture::of(phoneLook(), ground, nullptr), first);
    QCOMPARE(KnobPicture::of(phoneLook(), ground, first), first);
}

void tst_KnobPicture::anotherLookHasAnother()
{
    const PlainGround ground = groundOn(groundImage()).value();
    const auto first = KnobPicture::of(phoneLook(), ground, nullptr);
    KnobLook other = phoneLook();
    other.arcColor = Qt::red;
    QVERIFY(KnobPicture::of(other, ground, first) != first);
}

void tst_KnobPicture::anotherGroundHasAnother_data()
{
    QTest::addColumn<QColor>("color");
    QTest::addColumn<QTransform>("transform");
    const QColor usual("#2c313c");
    QTest::newRow("colour") << QColor(Qt::white) << QTransform();
    QTest::newRow("wider") << usual << QTransform::fromScale(1.01, 1);
    QTest::newRow("higher") << usual << QTransform::fromScale(1, 1.01);
    QTest::newRow("part of a pixel to the right") << usual << QTransform::fromTranslate(0.5, 0);
    QTest::newRow("part of a pixel down") << usual << QTransform::fromTranslate(0, 0.5);
}

void tst_KnobPicture::anotherGroundHasAnother()
{
    QFETCH(const QColor, color);
    QFETCH(const QTransform, transform);
    const auto first = KnobPicture::of(phoneLook(), groundOn(groundImage()).value(), nullptr);
    const auto ground = groundOn(groundImage(QImage::Format_RGB32, color),
                                 [&](QPainter &painter) { painter.setTransform(transform, true); });
    QVERIFY(KnobPicture::of(phoneLook(), ground.value(), first) != first);
}

void tst_KnobPicture::theSameGroundElsewhereHasTheSame()
{
    const auto first = KnobPicture::of(phoneLook(), groundOn(groundImage()).value(), nullptr);
    const auto ground =
        groundOn(groundImage(), [](QPainter &painter) { painter.translate(11, 4); });
    QCOMPARE(KnobPicture::of(phoneLook(), ground.value(), nullptr), first);
}

void tst_KnobPicture::goesWithTheLastOfThem()
{
    const PlainGround ground = groundOn(groundImage()).value();
    auto first = KnobPicture::of(phoneLook(), ground, nullptr);
    auto second = KnobPicture::of(phoneLook(), ground, nullptr);
    const std::weak_ptr<KnobPicture> picture = first;
    first.reset();
    QVERIFY(!picture.expired());
    second.reset();
    QVERIFY(picture.expired());
}

void tst_KnobPicture::showsEveryArcThatIsAskedFor()
{
    const PlainGround ground = groundOn(groundImage()).value();
    for (const double faceRatio : {0.8, 1.0}) { // arc beside the face, and below it
        KnobLook look = phoneLook();
        look.faceRatio = faceRatio;
        KnobPicture picture(look, ground);
        for (const int span :
             {0, -50, -100, -150, -100, 70, -4320, -50, -100, 30, -50, 0, -200, -4320, 70, 0})
            QCOMPARE(picture.withArc(span), painted(look, span));
    }
}

void tst_KnobPicture::showsEveryArcHoweverManyThereAre()
{
    KnobPicture picture(phoneLook(), groundOn(groundImage()).value());
    constexpr int spans = 4320;
    constexpr int past = 300;    // beyond no arc, on the other side
    constexpr int stride = 1777; // has no divisor in common with their number
    for (int i = 0; i < 600; ++i) {
        const int span = past - i * stride % spans;
        QCOMPARE(picture.withArc(span), painted(phoneLook(), span));
        const int again = past - i / 2 * stride % spans;
        QCOMPARE(picture.withArc(again), painted(phoneLook(), again));
    }
}

void tst_KnobPicture::forgetsArcsBeforeTheyTakeTooMuch()
{
    KnobPicture picture(phoneLook(), groundOn(groundImage()).value());
    const qsizetype image = qsizetype{4} * extent.width() * extent.height();
    QCOMPARE(picture.mostSizeOfArcs(), image + 32768);
    QCOMPARE(picture.sizeOfArcs(), 0);
    qsizetype most = 0;
    bool hasForgotten = false;
    for (int span = -4320; span <= 0; ++span) {
        const qsizetype before = picture.sizeOfArcs();
        picture.withArc(span);
        hasForgotten = hasForgotten || picture.sizeOfArcs() < before / 2;
        most = qMax(most, picture.sizeOfArcs());
    }
    QVERIFY(hasForgotten);
    QVERIFY(most < picture.mostSizeOfArcs() + image);
}

void tst_KnobPicture::aGroundIsPlainWhenItIsOfOneColour()
{
    QImage image = groundImage();
    image.setPixelColor(place - QPoint(1, 0), Qt::red);
    image.setPixelColor(place + QPoint(extent.width(), 0), Qt::red);
    QVERIFY(groundOn(image));
    for (const QPoint blot :
         {QPoint(0, 0), QPoint(69, 0), QPoint(0, 69), QPoint(69, 69), QPoint(30, 40)}) {
        QImage blotted = image;
        blotted.setPixelColor(place + blot, Qt::red);
        QVERIFY(!groundOn(blotted));
    }
}

void tst_KnobPicture::aGroundOfAnotherFormatIsNotPlain()
{
    QVERIFY(groundOn(groundImage(QImage::Format_ARGB32_Premultiplied)));
    QVERIFY(!groundOn(groundImage(QImage::Format_ARGB32)));
    QVERIFY(!groundOn(groundImage(QImage::Format_RGB16)));
}

void tst_KnobPicture::aTranslucentGroundIsNotPlain()
{
    constexpr auto format = QImage::Format_ARGB32_Premultiplied;
    QVERIFY(groundOn(groundImage(format, Qt::transparent)));
    QVERIFY(!groundOn(groundImage(format, QColor(0, 0, 0, 128))));
}

void tst_KnobPicture::aGroundThatEndsBeforeTheKnobIsNotPlain()
{
    QVERIFY(groundOn(groundImage().copy(QRect(QPoint(), QSize(75, 77)))));
    QVERIFY(!groundOn(groundImage().copy(QRect(QPoint(), QSize(74, 77)))));
    QVERIFY(!groundOn(groundImage().copy(QRect(QPoint(), QSize(75, 76)))));
}

void tst_KnobPicture::noGroundIsPlainForAPainterThatDoesMoreThanPaint_data()
{
    QTest::addColumn<std::function<void(QPainter &)>>("setUp");
    const auto row = [](const char *name, const std::function<void(QPainter &)> &setUp) {
        QTest::newRow(name) << setUp;
    };
    row("translucent", [](QPainter &painter) { painter.setOpacity(0.5); });
    row("replacing",
        [](QPainter &painter) { painter.setCompositionMode(QPainter::CompositionMode_Source); });
    row("with a brush from elsewhere", [](QPainter &painter) { painter.setBrushOrigin(1, 0); });
    row("turning", [](QPainter &painter) { painter.rotate(2); });
    row("mirroring", [](QPainter &painter) {
        painter.translate(80, 0);
        painter.scale(-1, 1);
    });
}

void tst_KnobPicture::noGroundIsPlainForAPainterThatDoesMoreThanPaint()
{
    QFETCH(const std::function<void(QPainter &)>, setUp);
    QVERIFY(!groundOn(groundImage(), setUp));
}

QTEST_MAIN(tst_KnobPicture)

#include "tst_knobpicture.moc"
