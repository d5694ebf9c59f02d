#ifndef PLAINGROUND_H
#define PLAINGROUND_H

#include <QImage>
#include <QPoint>
#include <QRgb>
#include <QSize>

#include <optional>

class QPainter;

/// A ground of one colour. What is painted on two that are equal is the same, pixel for pixel, so
/// it may be kept from one to be shown on the other.
class PlainGround
{
public:
    /// The ground on which @p painter is about to paint the rectangle of @p size at its origin, if
    /// that is plain: all its pixels are the same, opaque or untouched, and the painter just places
    /// and scales.
    static std::optional<PlainGround> under(const QPainter &painter, const QSize &size);

    /// Whether both are the same but for where they are. Sub-pixels count.
    bool equals(const PlainGround &other) const;

    /// An empty piece of it, in device pixels.
    QImage canvas() const;

    /// Has @p painter, which paints on a canvas(), use the coordinates of the painter that under()
    /// was asked about.
    void prepare(QPainter &painter) const;

    /// Shows what has become of a canvas() at its place on the ground.
    void show(QPainter &painter, const QImage &canvas) const;

private:
    PlainGround() = default;

    bool isOpaque() const;

    QRgb m_pixel = 0;
    QSize m_extent; // device pixels, as are the following
    qreal m_scaleX = 1;
    qreal m_scaleY = 1;
    qreal m_shiftX = 0; // from the canvas' corner to the painter's origin, less than a pixel
    qreal m_shiftY = 0;
    QPoint m_place;
};

#endif
