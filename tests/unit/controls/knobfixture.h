#ifndef KNOBFIXTURE_H
#define KNOBFIXTURE_H

#include "knob.h"

#include <QImage>
#include <QRegularExpression>
#include <QTest>

#include <utility>

/// What the tests of Knob share. Any warning fails a test.
class KnobFixture : public QObject
{
    Q_OBJECT

protected:
    static constexpr int side = 120; // pixels, as on the panels

    struct Range {
        int minimum;
        int maximum;
    };
    static constexpr Range decibels{-80, 6};
    static constexpr Range gains{0, 42};
    static constexpr Range inverted{10, -10};

    /// A knob of a panel's size that keeps what it emits.
    class ObservedKnob : public Knob
    {
    public:
        explicit ObservedKnob(Range range, int initial, QWidget *parent = nullptr)
            : Knob(parent)
        {
            minValue = range.minimum;
            maxValue = range.maximum;
            value = initial;
            resize(side, side);
            connect(this, &Knob::valueChangedSig, this, [this](int v) { m_emitted << v; });
        }

        /// The values of valueChangedSig() since the last call.
        QList<int> takeEmitted() { return std::exchange(m_emitted, {}); }

    private:
        QList<int> m_emitted;
    };

    /// The widget as painted on pure blue.
    static QImage picture(QWidget &widget)
    {
        QImage image(widget.size(), QImage::Format_ARGB32_Premultiplied);
        image.fill(Qt::blue);
        widget.render(&image, QPoint(), QRegion(), QWidget::DrawChildren);
        return image;
    }

private slots:
    void init() { QTest::failOnWarning(QRegularExpression(".?")); }
};

#endif
