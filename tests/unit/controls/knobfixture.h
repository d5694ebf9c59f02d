#ifndef KNOBFIXTURE_H
#define KNOBFIXTURE_H

#include "knob.h"

#include <QImage>
#include <QSignalSpy>
#include <QWidget>

/// What the tests of Knob share.
namespace knobfixture {

inline constexpr int side = 120; // pixels, as on the panels

/// A knob of a panel's size with the range and value given.
class RangedKnob : public Knob
{
public:
    RangedKnob(int minimum, int maximum, int initial, QWidget *parent = nullptr)
        : Knob(parent)
    {
        minValue = minimum;
        maxValue = maximum;
        value = initial;
        resize(side, side);
    }
};

/// The values a spy on valueChangedSig() has seen.
inline QList<int> values(const QSignalSpy &spy)
{
    QList<int> list;
    for (const QList<QVariant> &arguments : spy)
        list.append(arguments.first().toInt());
    return list;
}

/// The widget as painted on pure blue.
inline QImage picture(QWidget &widget)
{
    QImage image(widget.size(), QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::blue);
    widget.render(&image, QPoint(), QRegion(), QWidget::DrawChildren);
    return image;
}

} // namespace knobfixture

#endif
