#include "panelpicture.h"

#include <QPainter>
#include <QTest>

namespace {

const QColor background("#2c313c");

/// Draws what a panel's controls look like from outside.
class Drawing
{
public:
    Drawing()
        : m_image(400, 300, QImage::Format_RGB32)
    {
        m_image.fill(background);
    }

    void drawKnob(const QRect &area, int width, double turned, const char *arcColor)
    {
        QPainter painter(&m_image);
        painter.setRenderHint(QPainter::Antialiasing);
        const QRect ring = area.adjusted(width, width, -width, -width);
        painter.setPen(QPen(QColor("#44475a"), width, Qt::SolidLine, Qt::RoundCap));
        painter.drawArc(ring, 225 * 16, -270 * 16);
        painter.setPen(QPen(QColor(arcColor), width, Qt::SolidLine, Qt::RoundCap));
        const int span = static_cast<int>(turned * -270 * 16);
        if (span != 0)
            painter.drawArc(ring, 225 * 16, span);
    }

    void drawButton(const QRect &area, const char *textColor)
    {
        QPainter painter(&m_image);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setPen(Qt::NoPen);
        painter.setBrush(QColor("#1b1e23"));
        painter.drawRoundedRect(area, 3, 3);
        painter.setBrush(QColor(textColor));
        painter.drawRect(QRect(area.center() - QPoint(15, 4), QSize(30, 8)));
    }

    const QImage &image() const { return m_image; }

private:
    QImage m_image;
};

} // namespace

class tst_PanelPicture : public QObject
{
    Q_OBJECT

private slots:
    void anEmptyWindowHasNoControls();
    void aKnobsCentreIsItsWidgetsCentre_data();
    void aKnobsCentreIsItsWidgetsCentre();
    void theArcTellsHowFarAKnobIsTurned_data();
    void theArcTellsHowFarAKnobIsTurned();
    void aButtonIsFoundAndItsLightSeen();
    void controlsComeColumnByColumn();
    void otherThingsInTheSameColoursAreNoControls();
    void positionsCountFromTheOrigin();
};

void tst_PanelPicture::anEmptyWindowHasNoControls()
{
    const PanelPicture picture(Drawing().image());
    QVERIFY(picture.knobs().isEmpty());
    QVERIFY(picture.buttons().isEmpty());
}

void tst_PanelPicture::aKnobsCentreIsItsWidgetsCentre_data()
{
    QTest::addColumn<QRect>("area");
    QTest::addColumn<int>("width");
    QTest::newRow("large") << QRect(50, 30, 120, 120) << 7;
    QTest::newRow("small") << QRect(200, 150, 70, 70) << 3;
}

void tst_PanelPicture::aKnobsCentreIsItsWidgetsCentre()
{
    QFETCH(QRect, area);
    QFETCH(int, width);
    Drawing drawing;
    drawing.drawKnob(area, width, 0.4, "#f1fa8c");
    const PanelPicture picture(drawing.image());
    QCOMPARE(picture.knobs().size(), 1);
    const QPoint off = picture.knobs().first().centre - area.center();
    QVERIFY2(off.manhattanLength() <= 3, qPrintable(QString::number(off.manhattanLength())));
    const QPoint ring = picture.knobs().first().ring;
    QVERIFY(area.contains(ring) && ring.y() < area.top() + 2 * width);
}

void tst_PanelPicture::theArcTellsHowFarAKnobIsTurned_data()
{
    QTest::addColumn<double>("turned");
    QTest::newRow("minimum") << 0.0;
    QTest::newRow("a quarter") << 0.25;
    QTest::newRow("middle") << 0.5;
    QTest::newRow("maximum") << 1.0;
}

void tst_PanelPicture::theArcTellsHowFarAKnobIsTurned()
{
    QFETCH(double, turned);
    for (const char *color : {"#f1fa8c", "#00ffff"}) {
        Drawing drawing;
        drawing.drawKnob({100, 100, 120, 120}, 7, turned, color);
        const PanelPicture picture(drawing.image());
        QCOMPARE(picture.knobs().size(), 1);
        QVERIFY(qAbs(picture.knobs().first().turned - turned) < 0.03);
    }
}

void tst_PanelPicture::aButtonIsFoundAndItsLightSeen()
{
    Drawing drawing;
    drawing.drawButton({20, 20, 80, 24}, "#8a95aa");
    drawing.drawButton({20, 50, 80, 40}, "#ff1111");
    const PanelPicture picture(drawing.image());
    QCOMPARE(picture.buttons().size(), 2);
    QVERIFY((picture.buttons().at(0).centre - QPoint(59, 31)).manhattanLength() <= 2);
    QVERIFY(!picture.buttons().at(0).lit);
    QVERIFY(picture.buttons().at(1).lit);
}

void tst_PanelPicture::controlsComeColumnByColumn()
{
    Drawing drawing;
    drawing.drawKnob({150, 150, 70, 70}, 3, 0.0, "#00ffff");
    drawing.drawKnob({170, 10, 120, 120}, 7, 0.0, "#00ffff");
    drawing.drawKnob({10, 40, 120, 120}, 7, 0.0, "#f1fa8c");
    drawing.drawButton({246, 240, 80, 40}, "#8a95aa");
    drawing.drawButton({160, 240, 80, 40}, "#8a95aa");
    drawing.drawButton({30, 240, 80, 24}, "#8a95aa");
    drawing.drawButton({30, 200, 80, 24}, "#8a95aa");
    const PanelPicture picture(drawing.image());
    QCOMPARE(picture.knobs().size(), 3);
    QVERIFY(QRect(10, 40, 120, 120).contains(picture.knobs().at(0).centre));
    QVERIFY(QRect(170, 10, 120, 120).contains(picture.knobs().at(1).centre));
    QVERIFY(QRect(150, 150, 70, 70).contains(picture.knobs().at(2).centre));
    QCOMPARE(picture.buttons().size(), 4);
    QVERIFY(picture.buttons().at(0).centre.y() < picture.buttons().at(1).centre.y());
    QVERIFY(picture.buttons().at(2).centre.x() < picture.buttons().at(3).centre.x());
}

void tst_PanelPicture::otherThingsInTheSameColoursAreNoControls()
{
    Drawing drawing;
    drawing.drawButton({20, 20, 60, 24}, "#8a95aa");
    drawing.drawButton({120, 20, 80, 6}, "#1b1e23");
    QImage image = drawing.image();
    QPainter painter(&image);
    painter.setPen(QColor("#00ffff"));
    painter.drawRect(QRect(20, 100, 82, 26));
    painter.fillRect(QRect(200, 100, 100, 100), QColor("#44475a"));
    painter.end();
    const PanelPicture picture(image);
    QVERIFY(picture.knobs().isEmpty());
    QVERIFY(picture.buttons().isEmpty());
}

void tst_PanelPicture::positionsCountFromTheOrigin()
{
    Drawing drawing;
    drawing.drawKnob({50, 30, 120, 120}, 7, 0.4, "#f1fa8c");
    drawing.drawButton({50, 200, 80, 24}, "#8a95aa");
    const PanelPicture here(drawing.image());
    const PanelPicture there(drawing.image(), {500, 300});
    QCOMPARE(there.knobs().first().centre, here.knobs().first().centre + QPoint(500, 300));
    QCOMPARE(there.knobs().first().ring, here.knobs().first().ring + QPoint(500, 300));
    QCOMPARE(there.buttons().first().centre, here.buttons().first().centre + QPoint(500, 300));
}

QTEST_GUILESS_MAIN(tst_PanelPicture)
#include "tst_panelpicture.moc"
