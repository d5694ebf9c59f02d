#ifndef LITERALKNOB_H
#define LITERALKNOB_H

#include "knob.h"

/// A knob that paints all of itself at every paint, primitive after primitive. By its picture
/// others are judged.
class LiteralKnob : public Knob
{
    Q_OBJECT

public:
    using Knob::Knob;

    /// The look, the range and the value of @p other.
    void copy(const Knob &other);

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    QPen arcPen(const QBrush &brush) const;
    QRadialGradient light(double reach, int shade) const;
    void paintDisc(QPainter &painter, const QBrush &brush, double scale, double shift) const;
};

#endif
