#include "pixelchange.h"

#include <QImage>
#include <QTest>

class tst_PixelChange : public QObject
{
    Q_OBJECT

private slots:
    void turnsOnePictureIntoTheOtherAndBack_data();
    void turnsOnePictureIntoTheOtherAndBack();
    void noneIsNone();
    void theOrderOfSeveralDoesNotMatter();
    void takesMemoryForWhatDiffersOnly();

private:
    static QImage picture(const QSize &size, const QRect &differing)
    {
        QImage image(size, QImage::Format_ARGB32_Premultiplied);
        image.fill(Qt::blue);
        for (int y = differing.top(); y <= differing.bottom(); ++y)
            for (int x = differing.left(); x <= differing.right(); ++x)
                image.setPixelColor(x, y, QColor(x % 200, y % 200, (x + y) % 200, 255));
        return image;
    }
};

void tst_PixelChange::turnsOnePictureIntoTheOtherAndBack_data()
{
    QTest::addColumn<QSize>("size");
    QTest::addColumn<QRect>("differing");
    QTest::newRow("nothing") << QSize(20, 10) << QRect();
    QTest::newRow("all") << QSize(20, 10) << QRect(0, 0, 20, 10);
    QTest::newRow("the first pixel") << QSize(20, 10) << QRect(0, 0, 1, 1);
    QTest::newRow("the last pixel") << QSize(20, 10) << QRect(19, 9, 1, 1);
    QTest::newRow("the middle") << QSize(20, 10) << QRect(5, 3, 8, 4);
    QTest::newRow("far on") << QSize(400, 400) << QRect(399, 399, 1, 1);
    QTest::newRow("for long") << QSize(400, 400) << QRect(0, 0, 400, 400);
}

void tst_PixelChange::turnsOnePictureIntoTheOtherAndBack()
{
    QFETCH(const QSize, size);
    QFETCH(const QRect, differing);
    const QImage one = picture(size, QRect());
    const QImage other = picture(size, differing);
    const PixelChange change(one, other);
    QImage image = one;
    change.toggle(image);
    QCOMPARE(image, other);
    change.toggle(image);
    QCOMPARE(image, one);
}

void tst_PixelChange::noneIsNone()
{
    const QImage one = picture({20, 10}, {2, 2, 3, 3});
    QImage image = one;
    PixelChange().toggle(image);
    QCOMPARE(image, one);
}

void tst_PixelChange::theOrderOfSeveralDoesNotMatter()
{
    const QImage first = picture({20, 10}, {2, 2, 3, 3});
    const QImage second = picture({20, 10}, {4, 1, 6, 5});
    const QImage third = picture({20, 10}, {0, 0, 20, 3});
    QImage image = first;
    PixelChange(second, third).toggle(image);
    PixelChange(first, second).toggle(image);
    QCOMPARE(image, third);
}

void tst_PixelChange::takesMemoryForWhatDiffersOnly()
{
    const QImage one = picture({100, 100}, QRect());
    QCOMPARE(PixelChange(one, one).sizeInBytes(), 0);
    const PixelChange change(one, picture({100, 100}, {10, 10, 5, 5}));
    QVERIFY(change.sizeInBytes() >= 25 * 4);
    QVERIFY(change.sizeInBytes() <= 35 * 4);
}

QTEST_MAIN(tst_PixelChange)

#include "tst_pixelchange.moc"
