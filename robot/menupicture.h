#ifndef MENUPICTURE_H
#define MENUPICTURE_H

#include <QImage>
#include <QList>
#include <QPoint>

/// Finds the entries of a menu on a picture of it, from the pixels alone; separators do not count.
class MenuPicture
{
public:
    struct Entry {
        QPoint centre;       ///< in the screen's coordinates
        bool greyed = false; ///< its text stands out clearly less than the strongest one's
    };

    MenuPicture() = default;
    /// @p origin is where the picture's top left corner is on the screen.
    explicit MenuPicture(const QImage &image, QPoint origin = {});

    /// From the top.
    const QList<Entry> &entries() const { return m_entries; }

private:
    QList<Entry> m_entries;
};

#endif
