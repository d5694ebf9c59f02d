#include "pixelclusters.h"

#include <QBitArray>

namespace {

/// The wanted pixels of an image that no group has taken yet.
class OpenPixels
{
public:
    OpenPixels(const QImage &image, const std::function<bool(QRgb)> &wanted)
        : m_size(image.size())
        , m_open(qsizetype(image.width()) * image.height())
    {
        for (int y = 0; y < image.height(); ++y) {
            for (int x = 0; x < image.width(); ++x)
                m_open.setBit(index({x, y}), wanted(image.pixel(x, y)));
        }
    }

    bool take(QPoint point)
    {
        if (!QRect({0, 0}, m_size).contains(point) || !m_open.testBit(index(point)))
            return false;
        m_open.clearBit(index(point));
        return true;
    }

private:
    qsizetype index(QPoint point) const
    {
        return qsizetype(point.y()) * m_size.width() + point.x();
    }

    QSize m_size;
    QBitArray m_open;
};

QRect takeGroup(OpenPixels &pixels, QPoint first, int reach)
{
    QRect area(first, QSize(1, 1));
    QList<QPoint> waiting{first};
    while (!waiting.isEmpty()) {
        const QPoint point = waiting.takeLast();
        area |= QRect(point, QSize(1, 1));
        for (int dy = -reach; dy <= reach; ++dy) {
            for (int dx = -reach; dx <= reach; ++dx) {
                const QPoint neighbour = point + QPoint(dx, dy);
                if (pixels.take(neighbour))
                    waiting << neighbour;
            }
        }
    }
    return area;
}

} // namespace

QList<QRect> pixelClusters(const QImage &image, const std::function<bool(QRgb)> &wanted, int reach)
{
    OpenPixels pixels(image, wanted);
    QList<QRect> groups;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            if (pixels.take({x, y}))
                groups << takeGroup(pixels, {x, y}, reach);
        }
    }
    return groups;
}

bool isColor(QRgb pixel, const QColor &color)
{
    constexpr int tolerance = 2;
    return qAbs(qRed(pixel) - color.red()) <= tolerance
        && qAbs(qGreen(pixel) - color.green()) <= tolerance
        && qAbs(qBlue(pixel) - color.blue()) <= tolerance;
}
