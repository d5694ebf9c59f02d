#ifndef VALUETEXT_H
#define VALUETEXT_H

#include <QRect>
#include <QString>
#include <QTextLayout>

class QPainter;

/// A line of text in the middle of a rectangle. Painting the same again costs no second layout.
class ValueText
{
public:
    ValueText();

    /// Paints @p text with the painter's font and pen in the middle of @p rect. Returns what
    /// QPainter::boundingRect() says of it.
    QRect paint(QPainter &painter, const QRect &rect, const QString &text);

    /// Forgets the layout, as fonts have come or gone.
    void forget();

private:
    bool isLaidOut(const QPainter &painter, const QString &text) const;
    void layOut(const QPainter &painter, const QString &text);

    QTextLayout m_layout;
    int m_dpi = 0; // of the device that it is laid out for
};

#endif
