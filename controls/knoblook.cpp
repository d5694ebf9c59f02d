#include "knoblook.h"

#include <QBrush>
#include <QLinearGradient>
#include <QPainter>
#include <QPen>
#include <QRadialGradient>
#include <QtMath>

#include <cmath>
#include <initializer_list>

namespace {

// Degrees as painted, counter-clockwise from three o'clock; QPainter counts in sixteenths.
constexpr int startAngle = 225;
constexpr int fullSweep = 270;
constexpr int unitsPerDegree = 16;

constexpr double shadowShift = 0.02; // to the right and down, in diameters of the face

int truncated(double v)
{
    return static_cast<int>(v);
}

void paintDisc(QPainter &painter, const QBrush &brush, int inset, int diameter)
{
    painter.setPen(QPen(brush, 0));
    painter.setBrush(brush);
    painter.drawEllipse(inset, inset, diameter, diameter);
}

} // namespace

int KnobLook::arcSpan(double part, double range)
{
    return range == 0.0 ? 0 : truncated(part * fullSweep / range * -unitsPerDegree);
}

void KnobLook::paint(QPainter &painter, int arcSpan) const
{
    painter.setPen(Qt::NoPen);
    if (showTrack)
        paintTrack(painter);
    paintArc(painter, arcSpan);
    paintShadow(painter);
    paintHollow(painter);
    paintFace(painter);
}

void KnobLook::paintTrack(QPainter &painter) const
{
    painter.setPen(arcPen(trackColor));
    painter.drawArc(arcRect(), startAngle * unitsPerDegree, -fullSweep * unitsPerDegree);
}

/// Its colour is a gradient between two that are the same: the edges round otherwise than in a
/// plain colour. Any shape of gradient gives the same picture, and a line costs the least.
void KnobLook::paintArc(QPainter &painter, int span) const
{
    QLinearGradient gradient(0, 0, 1, 0);
    gradient.setColorAt(0, arcColor);
    gradient.setColorAt(1, arcColor);
    painter.setPen(arcPen(gradient));
    painter.drawArc(arcRect(), startAngle * unitsPerDegree, span);
}

void KnobLook::paintShadow(QPainter &painter) const
{
    const auto [inset, diameter] = disc(1.0, shadowShift);
    paintDisc(painter, cornerLight(0.6, QColor(20, 20, 20)), inset, diameter);
}

/// Invisible: a place in the sequence for a rim between shadow and face.
void KnobLook::paintHollow(QPainter &painter) const
{
    const auto [inset, diameter] = disc(0.8, 0.1);
    paintDisc(painter, QColor(Qt::transparent), inset, diameter);
}

void KnobLook::paintFace(QPainter &painter) const
{
    const auto [inset, diameter] = disc(1.0, 0.0);
    paintDisc(painter, cornerLight(0.5, QColor(30, 30, 30)), inset, diameter);
}

QRect KnobLook::arcRect() const
{
    return QRect(QPoint(), size).adjusted(arcWidth, arcWidth, -arcWidth, -arcWidth);
}

QPen KnobLook::arcPen(const QBrush &brush) const
{
    return QPen(brush, arcWidth, Qt::SolidLine, roundCap ? Qt::RoundCap : Qt::SquareCap);
}

QRadialGradient KnobLook::cornerLight(double reach, const QColor &shade) const
{
    QRadialGradient light(0, 0, arcRect().width() * reach);
    light.setColorAt(0, QColor(255, 255, 255));
    light.setColorAt(1, shade);
    return light;
}

/// A disc of @p scale times the face's diameter, moved right and down by @p shift of that diameter.
KnobLook::Disc KnobLook::disc(double scale, double shift) const
{
    const int extent = arcRect().width();
    return {truncated((1 - faceRatio) * extent * 0.5 + faceRatio * extent * shift) + arcWidth,
            truncated(faceRatio * extent * scale)};
}

bool KnobLook::arcIsClearOfFace() const
{
    const QRect arc = arcRect();
    if (arc.width() != arc.height())
        return false;
    const double innerRadius = (arc.width() - arcWidth) * 0.5;
    for (const auto &[inset, diameter] : {disc(1.0, 0.0), disc(1.0, shadowShift)}) {
        const double offset = std::abs(inset + diameter * 0.5 - size.width() * 0.5);
        constexpr double rim =
            2.0; // half the outline, and what antialiasing touches of arc and disc
        if (offset * M_SQRT2 + diameter * 0.5 + rim > innerRadius)
            return false;
    }
    return true;
}

bool KnobLook::fitsItsSize() const
{
    constexpr int rim = 1;
    const int side = qMin(size.width(), size.height());
    const auto [inset, diameter] = disc(1.0, shadowShift);
    return arcWidth >= 1 && arcRect().isValid() && diameter >= 0 && disc(1.0, 0.0).inset >= rim
        && inset + diameter + rim <= side;
}
