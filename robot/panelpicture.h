#ifndef PANELPICTURE_H
#define PANELPICTURE_H

#include <QImage>
#include <QList>
#include <QPoint>
#include <QRect>

/// Finds a mixer panel's knobs and buttons on a picture of its window, from the pixels alone.
///
/// Both come column by column from the left (controls that overlap horizontally share a column),
/// each column from the top. All positions are in the screen's coordinates.
class PanelPicture
{
public:
    struct Knob {
        QPoint centre;
        /// A point of the ring that is away from the number in the middle.
        QPoint ring;
        /// How far the knob is turned, 0 to 1, as its arc shows it (about 0.02 exact).
        double turned = 0;
    };
    struct Button {
        QPoint centre;
        bool lit = false;
    };

    PanelPicture() = default;
    /// @p origin is where the picture's top left corner is on the screen.
    explicit PanelPicture(const QImage &image, QPoint origin = {});

    const QList<Knob> &knobs() const { return m_knobs; }
    const QList<Button> &buttons() const { return m_buttons; }

private:
    QList<Knob> m_knobs;
    QList<Button> m_buttons;
};

#endif
