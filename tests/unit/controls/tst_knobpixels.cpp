#include "knobfixture.h"
#include "knoblook.h"
#include "knobpicture.h"
#include "literalknob.h"
#include "plainground.h"

#include <QPainter>
#include <QRandomGenerator>
#include <QtMath>

#include <functional>
#include <vector>

namespace {

/// What a knob is painted on, and where.
struct Ground {
    double ratio = 1.0;
    QPoint place{3, 5};
    QColor color{"#2c313c"};
    QImage::Format format = QImage::Format_RGB32;

    QImage image(const QSize &size) const
    {
        const QSizeF extent =
            QSizeF(size.width() + place.x() + 4, size.height() + place.y() + 4) * ratio;
        QImage image(qCeil(extent.width()), qCeil(extent.height()), format);
        image.setDevicePixelRatio(ratio);
        image.fill(color);
        return image;
    }
};

QImage painted(QWidget &widget, const Ground &ground)
{
    QImage image = ground.image(widget.size());
    widget.render(&image, ground.place, QRegion(), QWidget::DrawChildren);
    return image;
}

QString described(const Knob &knob, const Ground &ground)
{
    return QString("%1x%2 value %3 of %4..%5 arc %6 cap %7 track %8 face %9")
               .arg(knob.width())
               .arg(knob.height())
               .arg(knob.value)
               .arg(knob.minValue)
               .arg(knob.maxValue)
               .arg(knob.arcWidth)
               .arg(knob.roundCap)
               .arg(knob.showTrack)
               .arg(knob.faceRatio)
        + QString(" colours %1 %2 %3 text %4 %5 '%6'")
              .arg(knob.arcColor.name(QColor::HexArgb), knob.trackColor.name(QColor::HexArgb),
                   knob.textColor.name(QColor::HexArgb))
              .arg(knob.showText)
              .arg(knob.fontSize)
              .arg(knob.suffix)
        + QString(" at %1,%2 ratio %3 on %4 format %5")
              .arg(ground.place.x())
              .arg(ground.place.y())
              .arg(ground.ratio)
              .arg(ground.color.name(QColor::HexArgb))
              .arg(ground.format);
}

} // namespace

/// A knob's picture, pixel for pixel, against the literal one.
class tst_KnobPixels : public KnobFixture
{
    Q_OBJECT

private slots:
    void aMemberThatHasChangedShowsAtTheNextPaint_data();
    void aMemberThatHasChangedShowsAtTheNextPaint();
    void aFontWithoutAFamilyOrSize();
    void everyPaintIsTheLiteralOne_data();
    void everyPaintIsTheLiteralOne();
    void everyWayFromValueToValue();
    void changesOfAllKindsInAnyOrder();
    void neighboursOfDifferentLooks();
    void aPartOfIt_data();
    void aPartOfIt();
    void onGroundThatIsNotPlain();
    void aboveItsFirstPicture();
    void throughAPainterOfOnesOwn_data();
    void throughAPainterOfOnesOwn();
    void inAWindow();
    void onAPanelItsPictureIsKept_data();
    void onAPanelItsPictureIsKept();

private:
    /// Whether the knob paints what a literal one does, when first asked and again.
    static bool matches(Knob &knob, const Ground &ground);
};

bool tst_KnobPixels::matches(Knob &knob, const Ground &ground)
{
    LiteralKnob literal;
    literal.copy(knob);
    const QImage expected = painted(literal, ground);
    const QImage first = painted(knob, ground);
    const QImage second = painted(knob, ground);
    const bool same = first == expected && second == expected
        && (!knob.showText || knob.textRect == literal.textRect);
    if (!same)
        qInfo().noquote() << "differs:" << described(knob, ground);
    return same;
}

void tst_KnobPixels::aMemberThatHasChangedShowsAtTheNextPaint_data()
{
    QTest::addColumn<std::function<void(Knob &)>>("change");
    const auto row = [](const char *name, const std::function<void(Knob &)> &change) {
        QTest::newRow(name) << change;
    };
    row("value", [](Knob &knob) { knob.value = 3; });
    row("arcWidth", [](Knob &knob) { knob.arcWidth = 9; });
    row("roundCap", [](Knob &knob) { knob.roundCap = false; });
    row("maxValue", [](Knob &knob) { knob.maxValue = 40; });
    row("minValue", [](Knob &knob) { knob.minValue = -40; });
    row("arcColor", [](Knob &knob) { knob.arcColor = Qt::red; });
    row("arcColor's alpha", [](Knob &knob) { knob.arcColor.setAlpha(100); });
    row("showText", [](Knob &knob) { knob.showText = false; });
    row("fontFamily", [](Knob &knob) { knob.fontFamily = "Monospace"; });
    row("fontSize", [](Knob &knob) { knob.fontSize = 8; });
    row("suffix", [](Knob &knob) { knob.suffix = "%"; });
    row("textColor", [](Knob &knob) { knob.textColor = Qt::yellow; });
    row("showTrack", [](Knob &knob) { knob.showTrack = false; });
    row("trackColor", [](Knob &knob) { knob.trackColor = Qt::darkGreen; });
    row("faceRatio", [](Knob &knob) { knob.faceRatio = 0.7; });
    row("displayOffset", [](Knob &knob) { knob.displayOffset = 11; });
    row("width", [](Knob &knob) { knob.resize(side + 1, side); });
    row("height", [](Knob &knob) { knob.resize(side, side - 1); });
    row("size", [](Knob &knob) { knob.resize(70, 70); });
    row("layout direction", [](Knob &knob) { knob.setLayoutDirection(Qt::RightToLeft); });
    row("a bold parent", [](Knob &knob) {
        QFont bold;
        bold.setBold(true);
        knob.setFont(bold);
    });
}

void tst_KnobPixels::aMemberThatHasChangedShowsAtTheNextPaint()
{
    QFETCH(const std::function<void(Knob &)>, change);
    const Ground ground;
    ObservedKnob knob(decibels, -20);
    LiteralKnob literal;
    literal.copy(knob);
    QCOMPARE(painted(knob, ground), painted(literal, ground));
    change(knob);
    change(literal);
    QCOMPARE(painted(knob, ground), painted(literal, ground));
    QCOMPARE(knob.textRect, literal.textRect);
}

void tst_KnobPixels::aFontWithoutAFamilyOrSize()
{
    for (const int points : {QFont().pointSize(), 0}) {
        ObservedKnob knob(decibels, -20);
        knob.fontFamily.clear();
        knob.fontSize = points;
        knob.setFont(QFont("Monospace", 20, QFont::Bold));
        LiteralKnob literal;
        literal.copy(knob);
        literal.setFont(knob.font());
        QCOMPARE(painted(knob, Ground()), painted(literal, Ground()));
        QCOMPARE(knob.textRect, literal.textRect);
    }
}

void tst_KnobPixels::everyPaintIsTheLiteralOne_data()
{
    QTest::addColumn<QSize>("size");
    QTest::addColumn<double>("ratio");
    for (const QSize size :
         {QSize(120, 120), QSize(70, 70), QSize(41, 41), QSize(9, 9), QSize(90, 60), QSize(50, 80)})
        for (const double ratio : {1.0, 1.25, 1.5, 2.0})
            QTest::addRow("%dx%d at %g", size.width(), size.height(), ratio) << size << ratio;
}

void tst_KnobPixels::everyPaintIsTheLiteralOne()
{
    QFETCH(const QSize, size);
    QFETCH(const double, ratio);
    const QColor translucent(200, 100, 20, 90);
    for (const int arcWidth : {0, 3, 7})
        for (const bool roundCap : {true, false})
            for (const double faceRatio : {0.8, 0.95})
                for (const QColor &arcColor : {QColor(Qt::cyan), translucent})
                    for (const int value : {-80, -37, 6}) {
                        ObservedKnob knob(decibels, value);
                        knob.resize(size);
                        knob.arcWidth = arcWidth;
                        knob.roundCap = roundCap;
                        knob.faceRatio = faceRatio;
                        knob.arcColor = arcColor;
                        QVERIFY(matches(knob, {.ratio = ratio}));
                    }
}

/// Steps up and down, and leaps, which may take other ways to one picture.
void tst_KnobPixels::everyWayFromValueToValue()
{
    for (const int extent : {70, side}) {
        for (const double faceRatio : {0.8, 1.1}) {
            ObservedKnob knob(gains, 0);
            knob.resize(extent, extent);
            knob.faceRatio = faceRatio;
            QList<int> values;
            for (int value = 0; value <= 42; value += extent == side ? 1 : 3)
                values << value;
            values << 0 << 42 << 17;
            for (int value = 42; value >= 0; value -= 3)
                values << value << value - 1;
            values << 3 << 30 << 4 << 31 << 3 << 12;
            for (const int value : values) {
                knob.value = value;
                QVERIFY(matches(knob, {}));
            }
        }
    }
}

/// How many random changes are tried; a longer list in VESMORA_KNOB_CHANGES finds rarer
/// differences.
static int changeCount()
{
    bool given = false;
    const int count = qEnvironmentVariableIntValue("VESMORA_KNOB_CHANGES", &given);
    return given ? count : 700;
}

void tst_KnobPixels::changesOfAllKindsInAnyOrder()
{
    QRandomGenerator random(20250930);
    const auto one = [&random](const auto &list) {
        return list[static_cast<size_t>(random.bounded(static_cast<int>(list.size())))];
    };
    const std::vector<QColor> colors{
        "#00ffff",       "#44475a", "#f1fa8c", QColor(1, 2, 3, 4), QColor(250, 130, 10, 128),
        Qt::transparent, QColor()};
    const std::vector<QColor> grounds{"#2c313c", Qt::white,       Qt::black,
                                      Qt::blue,  Qt::transparent, QColor(30, 60, 90, 120)};
    const std::vector<QSize> sizes{{120, 120}, {70, 70},  {71, 71}, {33, 33},
                                   {100, 60},  {60, 100}, {1, 1}};
    const std::vector<QString> suffixes{"dB", "", "&", "\t", "\n", " units", "公", "שלום"};
    const std::vector<double> ratios{1, 1, 1.25, 1.5, 1.5, 1.75, 2, 2, 3};
    const std::vector<QImage::Format> formats{
        QImage::Format_RGB32, QImage::Format_ARGB32_Premultiplied, QImage::Format_ARGB32,
        QImage::Format_RGB16, QImage::Format_RGBA8888_Premultiplied};

    ObservedKnob first(decibels, -20);
    ObservedKnob second(decibels, -20);
    Ground ground;
    const std::vector<std::function<void(Knob &)>> changes{
        [&](Knob &knob) { knob.value = random.bounded(-90, 20); },
        [&](Knob &knob) { knob.value = random.bounded(-90, 20); },
        [&](Knob &knob) { knob.setValue(knob.value + 1); },
        [&](Knob &knob) { knob.setValue(knob.value - 1); },
        [&](Knob &knob) {
            knob.arcWidth = one(std::vector{7, 7, 3, 1, 0, 20, 90});
        },
        [&](Knob &knob) { knob.roundCap = !knob.roundCap; },
        [&](Knob &knob) {
            knob.maxValue = one(std::vector{6, 6, 42, -80, -100});
        },
        [&](Knob &knob) {
            knob.minValue = one(std::vector{-80, -80, 0, 6});
        },
        [&](Knob &knob) { knob.arcColor = one(colors); },
        [&](Knob &knob) { knob.trackColor = one(colors); },
        [&](Knob &knob) { knob.textColor = one(colors); },
        [&](Knob &knob) { knob.showText = !knob.showText; },
        [&](Knob &knob) { knob.showTrack = !knob.showTrack; },
        [&](Knob &knob) {
            knob.fontSize = one(std::vector{12, 10, 30});
        },
        [&](Knob &knob) { knob.suffix = one(suffixes); },
        [&](Knob &knob) {
            knob.faceRatio = one(std::vector{0.8, 0.8, 0.5, 0.0, 1.0, 2.0, -0.5});
        },
        [&](Knob &knob) {
            knob.displayOffset = one(std::vector{0, 5});
        },
        [&](Knob &knob) { knob.resize(one(sizes)); },
        [&](Knob &) { ground.ratio = one(ratios); },
        [&](Knob &) { ground.color = one(grounds); },
        [&](Knob &) { ground.format = one(formats); },
        [&](Knob &) {
            ground.place = {random.bounded(40), random.bounded(40)};
        },
    };
    for (int i = 0; i < changeCount(); ++i) {
        Knob &knob = random.bounded(4) ? first : second;
        one(changes)(knob);
        QVERIFY(matches(knob, ground));
    }
}

void tst_KnobPixels::neighboursOfDifferentLooks()
{
    ObservedKnob volume(decibels, -20);
    ObservedKnob same(decibels, -63);
    ObservedKnob gain(gains, 20);
    gain.arcColor = "#f1fa8c";
    ObservedKnob phone(decibels, -20);
    phone.resize(70, 70);
    for (int round = 0; round < 3; ++round)
        for (Knob *const knob : {&volume, &gain, &phone, &same}) {
            knob->value += round;
            QVERIFY(matches(*knob, {}));
        }
}

void tst_KnobPixels::aPartOfIt_data()
{
    QTest::addColumn<QRegion>("part");
    QTest::newRow("left half") << QRegion(0, 0, 60, 120);
    QTest::newRow("a corner") << QRegion(90, 90, 30, 30);
    QTest::newRow("a strip through the text") << QRegion(0, 55, 120, 10);
    QTest::newRow("all but a hole") << QRegion(0, 0, 120, 120) - QRegion(40, 40, 20, 20);
    QTest::newRow("a disc") << QRegion(20, 20, 80, 80, QRegion::Ellipse);
}

void tst_KnobPixels::aPartOfIt()
{
    QFETCH(const QRegion, part);
    for (const double ratio : {1.0, 1.5, 2.0}) {
        const Ground ground{.ratio = ratio};
        ObservedKnob knob(decibels, -20);
        LiteralKnob literal;
        literal.copy(knob);
        const auto partOf = [&](QWidget &widget, QImage image) {
            widget.render(&image, ground.place, part, QWidget::DrawChildren);
            return image;
        };
        const QImage fresh = ground.image(knob.size());
        QCOMPARE(partOf(knob, fresh), partOf(literal, fresh));
        const QImage before = painted(literal, ground);
        literal.value = knob.value = -19;
        QCOMPARE(partOf(knob, before), partOf(literal, before));
        QCOMPARE(painted(knob, ground), painted(literal, ground));
    }
}

void tst_KnobPixels::onGroundThatIsNotPlain()
{
    ObservedKnob knob(decibels, -20);
    LiteralKnob literal;
    literal.copy(knob);
    const auto onPattern = [](QWidget &widget, const QPoint &blot) {
        QImage image = Ground().image(widget.size());
        image.setPixelColor(blot, Qt::red);
        widget.render(&image, Ground().place, QRegion(), QWidget::DrawChildren);
        return image;
    };
    QCOMPARE(painted(knob, {}), painted(literal, {}));
    for (const QPoint blot :
         {QPoint(3, 5), QPoint(122, 124), QPoint(3, 124), QPoint(60, 8), QPoint(20, 64),
          QPoint(104, 64), QPoint(100, 100), QPoint(2, 4), QPoint(123, 125)})
        QCOMPARE(onPattern(knob, blot), onPattern(literal, blot));
}

void tst_KnobPixels::aboveItsFirstPicture()
{
    for (const double ratio : {1.0, 1.5}) {
        ObservedKnob knob(decibels, -20);
        LiteralKnob literal;
        literal.copy(knob);
        QImage ours = Ground{.ratio = ratio}.image(knob.size());
        QImage expected = ours;
        for (int i = 0; i < 3; ++i) {
            knob.render(&ours, {3, 5}, QRegion(), QWidget::DrawChildren);
            literal.render(&expected, {3, 5}, QRegion(), QWidget::DrawChildren);
            QCOMPARE(ours, expected);
        }
    }
}

void tst_KnobPixels::throughAPainterOfOnesOwn_data()
{
    QTest::addColumn<std::function<void(QPainter &)>>("setUp");
    const auto row = [](const char *name, const std::function<void(QPainter &)> &setUp) {
        QTest::newRow(name) << setUp;
    };
    row("as it is", [](QPainter &) {});
    row("moved", [](QPainter &painter) { painter.translate(7, 4); });
    row("moved by part of a pixel", [](QPainter &painter) { painter.translate(7.25, 4.625); });
    row("from right to left", [](QPainter &painter) {
        painter.setLayoutDirection(Qt::RightToLeft); // which an exclamation mark shows
    });
    row("larger", [](QPainter &painter) { painter.scale(1.4, 1.4); });
    row("smaller", [](QPainter &painter) { painter.scale(0.6, 0.6); });
    row("wider", [](QPainter &painter) { painter.scale(1.3, 0.8); });
    row("mirrored", [](QPainter &painter) {
        painter.translate(130, 0);
        painter.scale(-1, 1);
    });
    row("turned", [](QPainter &painter) {
        painter.translate(60, -20);
        painter.rotate(30);
    });
    row("turned to the right", [](QPainter &painter) {
        painter.translate(130, 0);
        painter.rotate(90);
    });
    row("sheared", [](QPainter &painter) { painter.shear(0.1, 0.2); });
    row("translucent", [](QPainter &painter) { painter.setOpacity(0.4); });
    row("clipped", [](QPainter &painter) { painter.setClipRect(20, 30, 60, 50); });
    row("clipped to a disc", [](QPainter &painter) {
        painter.setClipRegion(QRegion(10, 10, 90, 90, QRegion::Ellipse));
    });
    row("replacing",
        [](QPainter &painter) { painter.setCompositionMode(QPainter::CompositionMode_Source); });
    row("multiplied",
        [](QPainter &painter) { painter.setCompositionMode(QPainter::CompositionMode_Multiply); });
    row("below", [](QPainter &painter) {
        painter.setCompositionMode(QPainter::CompositionMode_DestinationOver);
    });
}

void tst_KnobPixels::throughAPainterOfOnesOwn()
{
    QFETCH(const std::function<void(QPainter &)>, setUp);
    for (const double ratio : {1.0, 1.5, 2.0}) {
        const Ground ground{.ratio = ratio, .format = QImage::Format_ARGB32_Premultiplied};
        ObservedKnob knob(decibels, -20);
        knob.suffix = "dB!";
        painted(knob, ground);
        LiteralKnob literal;
        literal.copy(knob);
        const auto through = [&](QWidget &widget) {
            QImage image = ground.image({150, 150});
            QPainter painter(&image);
            setUp(painter);
            widget.render(&painter, QPoint(2, 3), QRegion(), QWidget::DrawChildren);
            return image;
        };
        const QImage expected = through(literal);
        QCOMPARE(through(knob), expected);
        QCOMPARE(through(knob), expected);
    }
}

void tst_KnobPixels::inAWindow()
{
    QWidget ours;
    QWidget theirs;
    LiteralKnob literal(&theirs);
    Knob knob(&ours);
    for (QWidget *const window : {&ours, &theirs}) {
        window->resize(200, 180);
        window->setStyleSheet("background-color: #2c313c;");
    }
    knob.setGeometry(31, 17, side, side);
    knob.value = -20;
    literal.copy(knob);
    literal.move(knob.pos());
    for (int i = 0; i < 4; ++i) {
        literal.value = knob.value += i;
        QCOMPARE(ours.grab().toImage(), theirs.grab().toImage());
    }
}

void tst_KnobPixels::onAPanelItsPictureIsKept_data()
{
    QTest::addColumn<double>("ratio");
    QTest::addColumn<QPoint>("place");
    for (const double ratio : {1.0, 1.25, 1.5, 2.0})
        for (const QPoint place : {QPoint(3, 5), QPoint(4, 8)})
            QTest::addRow("at %d,%d, pixel ratio %g", place.x(), place.y(), ratio)
                << ratio << place;
}

void tst_KnobPixels::onAPanelItsPictureIsKept()
{
    QFETCH(const double, ratio);
    QFETCH(const QPoint, place);
    const Ground ground{.ratio = ratio, .place = place};
    ObservedKnob knob(decibels, -20);
    painted(knob, ground);

    QImage image = ground.image(knob.size());
    QPainter painter(&image);
    painter.translate(place);
    const auto plain = PlainGround::under(painter, knob.size());
    QVERIFY(plain);
    const KnobLook look{knob.size(),     knob.arcWidth, knob.roundCap, knob.showTrack,
                        knob.trackColor, knob.arcColor, knob.faceRatio};
    const auto picture = KnobPicture::of(look, *plain, nullptr);
    QCOMPARE(picture.use_count(), 2L); // the knob's and ours
}

QTEST_MAIN(tst_KnobPixels)

#include "tst_knobpixels.moc"
