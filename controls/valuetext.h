#ifndef VALUETEXT_H
#define VALUETEXT_H

#include <QFont>
#include <QRect>
#include <QString>
#include <QTextLayout>

#include <optional>

class QPainter;

/// A line of text in the middle of a rectangle. Painting the same again costs no second layout.
class ValueText
{
public:
    ValueText();

    /// QFont(family, points), made anew only when they change.
    const QFont &font(const QString &family, int points);

    /// Paints @p text with the painter's font and pen in the middle of @p rect. Returns what
    /// QPainter::boundingRect() says of it.
    QRect paint(QPainter &painter, const QRect &rect, const QString &text);

    /// Forgets the layout, as fonts have come or gone.
    void forget();

private:
    void prepare(const QPainter &painter);
    void layOut(const QString &text);

    std::optional<QFont> m_font;
    QString m_family; // what m_font was made of; it may say otherwise itself
    int m_points = 0;
    QTextLayout m_layout;
    int m_dpi = 0; // of the device that it is laid out for
    Qt::LayoutDirection m_direction = Qt::LayoutDirectionAuto;
};

#endif
