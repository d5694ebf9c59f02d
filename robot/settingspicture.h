#ifndef SETTINGSPICTURE_H
#define SETTINGSPICTURE_H

#include <QImage>
#include <QList>
#include <QPoint>

/// Finds the choices and the button of the settings dialog on a picture of it, from the pixels
/// alone. Positions are in the screen's coordinates.
class SettingsPicture
{
public:
    SettingsPicture() = default;
    /// @p origin is where the picture's top left corner is on the screen.
    explicit SettingsPicture(const QImage &image, QPoint origin = {});

    /// From the top. Empty when nothing is to be seen.
    const QList<QPoint> &choices() const { return m_choices; }
    QPoint ok() const { return m_ok; }

private:
    QList<QPoint> m_choices;
    QPoint m_ok;
};

#endif
