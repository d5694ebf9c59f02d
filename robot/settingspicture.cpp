#include "settingspicture.h"

namespace {

/// The titles and the button are of greenish blues; everything else is grey or nearly so.
bool isTitleColor(QRgb pixel)
{
    return qGreen(pixel) - qRed(pixel) > 40 && qAbs(qGreen(pixel) - qBlue(pixel)) < 30;
}

struct Band {
    int top = 0;
    int bottom = 0;
};

QList<Band> titleBands(const QImage &image)
{
    // The dots of an "i" belong to its line.
    constexpr int largestGap = 3;
    QList<Band> bands;
    for (int y = 0; y < image.height(); ++y) {
        bool isTitle = false;
        for (int x = 0; x < image.width() && !isTitle; ++x)
            isTitle = isTitleColor(image.pixel(x, y));
        if (!isTitle)
            continue;
        if (bands.isEmpty() || y - bands.last().bottom > largestGap)
            bands << Band{y, y};
        bands.last().bottom = y;
    }
    return bands;
}

} // namespace

SettingsPicture::SettingsPicture(const QImage &image, QPoint origin)
{
    // The heading, a title above each choice, and the button.
    const QList<Band> bands = titleBands(image);
    const qsizetype choiceCount = bands.size() - 2;
    const int x = image.width() / 2;
    int down = 0;
    for (qsizetype i = 1; i <= choiceCount; ++i) {
        // The button is further away from the last choice than a title is from the others.
        if (i < choiceCount)
            down = (bands.at(i + 1).top - bands.at(i).bottom) / 2;
        m_choices << origin + QPoint(x, bands.at(i).bottom + down);
    }
    if (choiceCount > 0)
        m_ok = origin + QPoint(x, (bands.last().top + bands.last().bottom) / 2);
}
