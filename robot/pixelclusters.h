#ifndef PIXELCLUSTERS_H
#define PIXELCLUSTERS_H

#include <QColor>
#include <QImage>
#include <QList>
#include <QRect>

#include <functional>

/// The bounding rectangles of the groups of @p wanted pixels; pixels up to @p reach apart, counted
/// along the larger axis, belong together. In reading order of their first pixels.
QList<QRect> pixelClusters(const QImage &image, const std::function<bool(QRgb)> &wanted,
                           int reach = 1);

/// Whether @p pixel is @p color as far as an 8-bit screen can tell.
bool isColor(QRgb pixel, const QColor &color);

#endif
