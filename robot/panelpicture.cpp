#include "panelpicture.h"

#include "pixelclusters.h"

#include <algorithm>

namespace {

const QColor trackColor("#44475a");
const QColor gainArcColor("#f1fa8c");
const QColor volumeArcColor("#00ffff");
const QColor buttonColor("#1b1e23");

constexpr int buttonWidth = 80;
constexpr int smallestButtonHeight = 12;
constexpr int smallestKnobWidth = 40;

bool isArc(QRgb pixel)
{
    return isColor(pixel, gainArcColor) || isColor(pixel, volumeArcColor);
}

bool isTrack(QRgb pixel)
{
    return isColor(pixel, trackColor);
}

/// A ring that is open for a quarter turn at the bottom is less high than wide.
bool hasKnobShape(const QRect &area)
{
    const double ratio = double(area.height()) / area.width();
    return area.width() >= smallestKnobWidth && ratio > 0.75 && ratio < 0.95;
}

bool hasButtonShape(const QRect &area)
{
    return qAbs(area.width() - buttonWidth) <= 2 && area.height() >= smallestButtonHeight
        && area.height() < buttonWidth;
}

QList<QRect> inColumns(QList<QRect> areas)
{
    std::sort(areas.begin(), areas.end(),
              [](const QRect &a, const QRect &b) { return a.left() < b.left(); });
    auto column = areas.begin();
    while (column != areas.end()) {
        int right = column->right();
        auto end = column + 1;
        for (; end != areas.end() && end->left() <= right; ++end)
            right = std::max(right, end->right());
        std::sort(column, end, [](const QRect &a, const QRect &b) { return a.top() < b.top(); });
        column = end;
    }
    return areas;
}

QList<QRect> matching(const QList<QRect> &areas, bool (*hasShape)(const QRect &))
{
    QList<QRect> found;
    std::copy_if(areas.begin(), areas.end(), std::back_inserter(found), hasShape);
    return inColumns(found);
}

double turnedShare(const QImage &image, const QRect &area)
{
    int arc = 0;
    int track = 0;
    for (int y = area.top(); y <= area.bottom(); ++y) {
        for (int x = area.left(); x <= area.right(); ++x) {
            arc += isArc(image.pixel(x, y)) ? 1 : 0;
            track += isTrack(image.pixel(x, y)) ? 1 : 0;
        }
    }
    return arc + track == 0 ? 0.0 : double(arc) / (arc + track);
}

/// A lit button's text has a strong colour; the other text is almost grey.
bool isLit(const QImage &image, const QRect &area)
{
    constexpr int strongColor = 130;
    for (int y = area.top(); y <= area.bottom(); ++y) {
        for (int x = area.left(); x <= area.right(); ++x) {
            const QRgb pixel = image.pixel(x, y);
            const auto [low, high] = std::minmax({qRed(pixel), qGreen(pixel), qBlue(pixel)});
            if (high - low > strongColor)
                return true;
        }
    }
    return false;
}

} // namespace

PanelPicture::PanelPicture(const QImage &image, QPoint origin)
{
    // Arc and track blend where they meet, so their pixels need not touch.
    const QList<QRect> rings = pixelClusters(
        image, [](QRgb pixel) { return isArc(pixel) || isTrack(pixel); }, 3);
    for (const QRect &ring : matching(rings, hasKnobShape)) {
        const int radius = ring.width() / 2;
        const QPoint centre(ring.left() + radius, ring.top() + radius);
        m_knobs << Knob{origin + centre, origin + QPoint(centre.x(), ring.top() + 2),
                        turnedShare(image, ring)};
    }
    const QList<QRect> faces =
        pixelClusters(image, [](QRgb pixel) { return isColor(pixel, buttonColor); });
    for (const QRect &face : matching(faces, hasButtonShape))
        m_buttons << Button{origin + face.center(), isLit(image, face)};
}
