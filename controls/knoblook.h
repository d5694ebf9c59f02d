#ifndef KNOBLOOK_H
#define KNOBLOOK_H

#include <QColor>
#include <QRect>
#include <QSize>

class QBrush;
class QPainter;
class QPen;
class QRadialGradient;

/// What a knob looks like, but for its text, and how that is painted: a track, the value arc on it,
/// a face lit from the top-left corner and its shadow. Lengths are in pixels as the painter has
/// them.
///
/// The arc's span is an argument: in sixteenths of a degree, negative as it runs clockwise.
struct KnobLook {
    QSize size;
    int arcWidth;
    bool roundCap;
    bool showTrack;
    QColor trackColor;
    QColor arcColor;
    double faceRatio;

    bool operator==(const KnobLook &) const = default;

    /// The span of a value arc that covers @p part of @p range; none when there is no range.
    static int arcSpan(double part, double range);

    /// Paints all of it. The painter has to be antialiasing.
    void paint(QPainter &painter, int arcSpan) const;

    /// Paints the value arc alone.
    void paintArc(QPainter &painter, int span) const;

    /// The value arc touches neither face nor shadow, so that it may as well be painted after them.
    bool arcIsClearOfFace() const;

    /// Nothing is painted beyond size.
    bool fitsItsSize() const;

private:
    struct Disc {
        int inset;
        int diameter;
    };

    QRect arcRect() const;
    QPen arcPen(const QBrush &brush) const;
    QRadialGradient cornerLight(double reach, const QColor &shade) const;
    Disc disc(double scale, double shift) const;
    void paintTrack(QPainter &painter) const;
    void paintShadow(QPainter &painter) const;
    void paintHollow(QPainter &painter) const;
    void paintFace(QPainter &painter) const;
};

#endif
