#include "plainground.h"

#include <QPaintEngine>
#include <QPainter>
#include <QRect>
#include <QTransform>
#include <QtMath>

#include <cstring>

namespace {

/// The picture that a painter paints into with Qt's own rasterizer, or null.
const QImage *rasterTarget(const QPainter &painter)
{
    const QPaintEngine *engine = painter.paintEngine();
    if (!engine || engine->type() != QPaintEngine::Raster)
        return nullptr;
    return dynamic_cast<const QImage *>(engine->paintDevice());
}

bool paintsAsItIs(const QPainter &painter)
{
    return painter.opacity() == 1.0
        && painter.compositionMode() == QPainter::CompositionMode_SourceOver
        && painter.brushOrigin().isNull();
}

/// Only up: made smaller, what looks clear of each other may meet in one pixel.
bool justPlacesAndScales(const QTransform &transform)
{
    return transform.type() <= QTransform::TxScale && transform.m11() >= 1 && transform.m22() >= 1;
}

/// A pixel is one QRgb, and its colours have been multiplied by its alpha.
bool hasWholePixels(const QImage &image)
{
    return image.format() == QImage::Format_RGB32
        || image.format() == QImage::Format_ARGB32_Premultiplied;
}

/// Not painted on as yet. A translucent ground would be seen twice through a picture painted on it.
bool isUntouched(const QImage &image, QRgb pixel)
{
    return image.hasAlphaChannel() && pixel == 0;
}

const QRgb *pixels(const QImage &image, const QPoint &place)
{
    return reinterpret_cast<const QRgb *>(image.constScanLine(place.y())) + place.x();
}

bool isPlain(const QImage &image, const QRect &piece)
{
    const QRgb *first = pixels(image, piece.topLeft());
    for (int x = 1; x < piece.width(); ++x)
        if (first[x] != first[0])
            return false;
    const size_t rowBytes = static_cast<size_t>(piece.width()) * sizeof(QRgb);
    for (int y = piece.top() + 1; y <= piece.bottom(); ++y)
        if (std::memcmp(pixels(image, {piece.left(), y}), first, rowBytes) != 0)
            return false;
    return true;
}

} // namespace

std::optional<PlainGround> PlainGround::under(const QPainter &painter, const QSize &size)
{
    const QImage *target = rasterTarget(painter);
    const QTransform transform = painter.deviceTransform();
    if (!target || !hasWholePixels(*target) || size.isEmpty() || !paintsAsItIs(painter)
        || !justPlacesAndScales(transform))
        return {};

    PlainGround ground;
    ground.m_place = QPoint(qFloor(transform.dx()), qFloor(transform.dy()));
    ground.m_scaleX = transform.m11();
    ground.m_scaleY = transform.m22();
    ground.m_shiftX = transform.dx() - ground.m_place.x();
    ground.m_shiftY = transform.dy() - ground.m_place.y();
    ground.m_extent = QSize(qCeil(ground.m_shiftX + size.width() * ground.m_scaleX),
                            qCeil(ground.m_shiftY + size.height() * ground.m_scaleY));

    const QRect piece(ground.m_place, ground.m_extent);
    if (!target->rect().contains(piece))
        return {};
    ground.m_pixel = *pixels(*target, ground.m_place);
    if (!ground.isOpaque() && !isUntouched(*target, ground.m_pixel))
        return {};
    if (!isPlain(*target, piece))
        return {};
    return ground;
}

bool PlainGround::equals(const PlainGround &other) const
{
    return m_pixel == other.m_pixel && m_scaleX == other.m_scaleX && m_scaleY == other.m_scaleY
        && m_shiftX == other.m_shiftX && m_shiftY == other.m_shiftY;
}

bool PlainGround::isOpaque() const
{
    return qAlpha(m_pixel) == 255;
}

QImage PlainGround::canvas() const
{
    // What is known to be opaque is quicker to show; its pixels are the same.
    QImage image(m_extent, isOpaque() ? QImage::Format_RGB32 : QImage::Format_ARGB32_Premultiplied);
    image.fill(m_pixel);
    return image;
}

void PlainGround::prepare(QPainter &painter) const
{
    painter.setWorldTransform(QTransform(m_scaleX, 0, 0, m_scaleY, m_shiftX, m_shiftY));
}

void PlainGround::show(QPainter &painter, const QImage &canvas) const
{
    const QTransform device = painter.deviceTransform();
    if (device.type() <= QTransform::TxTranslate && m_shiftX == 0 && m_shiftY == 0) {
        painter.drawImage(QPoint(), canvas);
        return;
    }
    const QTransform world = painter.worldTransform();
    painter.setWorldTransform(device.inverted(), true);
    painter.drawImage(m_place, canvas);
    painter.setWorldTransform(world);
}
