#include "knoblook.h"
#include "knobpicture.h"
#include "plainground.h"

#include <QPainter>
#include <QTest>

namespace {

constexpr QSize extent(70, 70);
constexpr QPoint place(5, 7);

QImage groundImage(QImage::Format format = QImage::Format_RGB32, const QColor &color = "#2c313c")
{
    QImage image(100, 100, format);
    image.fill(color);
    return image;
}

/// The ground at place on @p image.
std::optional<PlainGround> groundOn(QImage image)
{
    QPainter painter(&image);
    painter.translate(place);
    return PlainGround::under(painter, extent);
}

KnobLook phoneLook()
{
    return {extent, 3, true, true, "#44475a", "#00ffff", 0.8};
}

} // namespace

class tst_KnobPicture : public QObject
{
    Q_OBJECT

private slots:
    void knobsThatLookAlikeShareOne();
    void anotherLookOrGroundHasAnother();
    void goesWithTheLastOfThem();
    void showsEveryArcThatIsAskedFor();
    void aGroundIsPlainWhenItIsOfOneColour();
    void aGroundOfAnotherFormatIsNotPlain();
    void aTranslucentGroundIsNotPlain();
    void aGroundThatEndsBeforeTheKnobIsNotPlain();
};

void tst_KnobPicture::knobsThatLookAlikeShareOne()
{
    const PlainGround ground = groundOn(groundImage()).value();
    const auto first = KnobPicture::of(phoneLook(), ground, nullptr);
    QCOMPARE(KnobPicture::of(phoneLook(), ground, nullptr), first);
    QCOMPARE(KnobPicture::of(phoneLook(), ground, first), first);
}

void tst_KnobPicture::anotherLookOrGroundHasAnother()
{
    const PlainGround ground = groundOn(groundImage()).value();
    const PlainGround white = groundOn(groundImage(QImage::Format_RGB32, Qt::white)).value();
    const auto first = KnobPicture::of(phoneLook(), ground, nullptr);
    KnobLook other = phoneLook();
    other.arcColor = Qt::red;
    QVERIFY(KnobPicture::of(other, ground, first) != first);
    QVERIFY(KnobPicture::of(phoneLook(), white, first) != first);
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
    const QImage canvas = groundImage().copy(QRect(QPoint(), extent));
    const PlainGround ground = groundOn(groundImage()).value();
    for (const double faceRatio : {0.8, 1.0}) { // arc beside the face, and below it
        KnobLook look = phoneLook();
        look.faceRatio = faceRatio;
        KnobPicture picture(look, ground);
        for (const int span :
             {0, -50, -100, -150, -100, -4320, -50, -100, -50, 0, -200, -4320, 0}) {
            QImage expected = canvas;
            QPainter painter(&expected);
            painter.setRenderHint(QPainter::Antialiasing);
            look.paint(painter, span);
            painter.end();
            QCOMPARE(picture.withArc(span), expected);
        }
    }
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

QTEST_MAIN(tst_KnobPicture)

#include "tst_knobpicture.moc"
