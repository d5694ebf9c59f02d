#include "menupicture.h"

#include <QHash>
#include <QRect>

#include <algorithm>

namespace {

// The menu's own frame is no text.
constexpr int frame = 4;
// A separator is lower than any line of text.
constexpr int smallestTextHeight = 6;
// Lines of text are further apart than the parts of a letter.
constexpr int largestGapInText = 2;

struct Band {
    int top = 0;
    int bottom = 0;
    int contrast = 0;
};

QRgb commonestColor(const QImage &image)
{
    QHash<QRgb, int> uses;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x)
            ++uses[image.pixel(x, y)];
    }
    const auto most = std::max_element(uses.cbegin(), uses.cend());
    return most == uses.cend() ? QRgb{} : most.key();
}

/// How much the row's strongest pixel differs from the menu's own colour, 0 to 255.
int rowContrast(const QImage &image, int y, QRgb background)
{
    int contrast = 0;
    for (int x = frame; x < image.width() - frame; ++x)
        contrast = std::max(contrast, qAbs(qGray(image.pixel(x, y)) - qGray(background)));
    return contrast;
}

QList<Band> inkedBands(const QImage &image)
{
    constexpr int ink = 12;
    const QRgb background = commonestColor(image);
    QList<Band> bands;
    for (int y = frame; y < image.height() - frame; ++y) {
        const int contrast = rowContrast(image, y, background);
        if (contrast < ink)
            continue;
        if (bands.isEmpty() || y - bands.last().bottom > largestGapInText)
            bands << Band{y, y, 0};
        bands.last().bottom = y;
        bands.last().contrast = std::max(bands.last().contrast, contrast);
    }
    bands.removeIf([](const Band &band) { return band.bottom - band.top < smallestTextHeight; });
    return bands;
}

} // namespace

MenuPicture::MenuPicture(const QImage &image, QPoint origin)
{
    const QList<Band> bands = inkedBands(image);
    int strongest = 0;
    for (const Band &band : bands)
        strongest = std::max(strongest, band.contrast);
    for (const Band &band : bands) {
        const QPoint centre(image.width() / 2, (band.top + band.bottom) / 2);
        m_entries << Entry{origin + centre, band.contrast < strongest * 3 / 4};
    }
}
