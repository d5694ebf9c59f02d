#include "literalknob.h"

#include <QConicalGradient>
#include <QPainter>
#include <QRadialGradient>

void LiteralKnob::copy(const Knob &other)
{
    setLayoutDirection(other.layoutDirection());
    resize(other.size());
    value = other.value;
    arcWidth = other.arcWidth;
    roundCap = other.roundCap;
    maxValue = other.maxValue;
    minValue = other.minValue;
    arcColor = other.arcColor;
    showText = other.showText;
    fontFamily = other.fontFamily;
    fontSize = other.fontSize;
    suffix = other.suffix;
    textColor = other.textColor;
    showTrack = other.showTrack;
    trackColor = other.trackColor;
    faceRatio = other.faceRatio;
    displayOffset = other.displayOffset;
}

void LiteralKnob::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setFont(QFont(fontFamily, fontSize));
    painter.setPen(Qt::NoPen);

    const QRect ring = rect().adjusted(arcWidth, arcWidth, -arcWidth, -arcWidth);
    if (showTrack) {
        painter.setPen(arcPen(trackColor));
        painter.drawArc(ring, 225 * 16, -270 * 16);
    }

    const double range = static_cast<double>(maxValue) - minValue;
    const double sweep = range == 0.0 ? 0.0 : (static_cast<double>(value) - minValue) * 270 / range;
    QConicalGradient cone(QPoint(width() / 2, height() / 2), 270);
    cone.setColorAt(0, arcColor);
    cone.setColorAt(1, arcColor);
    painter.setPen(arcPen(cone));
    painter.drawArc(ring, 225 * 16, static_cast<int>(sweep * -16));

    paintDisc(painter, light(0.6, 20), 1.0, 0.02);
    paintDisc(painter, QColor(Qt::transparent), 0.8, 0.1);
    paintDisc(painter, light(0.5, 30), 1.0, 0.0);

    if (showText) {
        const qint64 shown = value == 0 ? 0 : qint64{displayOffset} + value;
        const QString text = QString::number(shown) + suffix;
        painter.setPen(textColor);
        textRect = painter.boundingRect(rect(), Qt::AlignHCenter | Qt::AlignVCenter, text);
        painter.drawText(textRect, Qt::AlignHCenter | Qt::AlignVCenter, text);
    }
}

QPen LiteralKnob::arcPen(const QBrush &brush) const
{
    return QPen(brush, arcWidth, Qt::SolidLine, roundCap ? Qt::RoundCap : Qt::SquareCap);
}

QRadialGradient LiteralKnob::light(double reach, int shade) const
{
    QRadialGradient gradient(0, 0, (width() - 2 * arcWidth) * reach);
    gradient.setColorAt(0, QColor(255, 255, 255));
    gradient.setColorAt(1, QColor(shade, shade, shade));
    return gradient;
}

void LiteralKnob::paintDisc(QPainter &painter, const QBrush &brush, double scale,
                            double shift) const
{
    const int extent = width() - 2 * arcWidth;
    const int diameter = static_cast<int>(faceRatio * extent * scale);
    const int inset =
        static_cast<int>((1 - faceRatio) * extent * 0.5 + faceRatio * extent * shift) + arcWidth;
    painter.setPen(QPen(brush, 0));
    painter.setBrush(brush);
    painter.drawEllipse(inset, inset, diameter, diameter);
}
