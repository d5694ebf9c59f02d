#include "valuetext.h"

#include <QPaintDevice>
#include <QPainter>
#include <QTextLine>
#include <QTextOption>

#include <algorithm>

namespace {

constexpr int centred = Qt::AlignHCenter | Qt::AlignVCenter;

/// Neither empty nor with characters to which QPainter::drawText() gives a meaning of its own.
bool isPlainLine(const QString &text)
{
    const auto special = [](QChar c) {
        return c < QLatin1Char(' ') || c == QChar(0x9c) || c == QChar::LineSeparator
            || c == QChar::ParagraphSeparator;
    };
    return !text.isEmpty() && std::none_of(text.begin(), text.end(), special);
}

QRect paintSpecial(QPainter &painter, const QRect &rect, const QString &text)
{
    const QRect bounds = painter.boundingRect(rect, centred, text);
    painter.drawText(bounds, centred, text);
    return bounds;
}

} // namespace

ValueText::ValueText()
{
    m_layout.setCacheEnabled(true);
}

const QFont &ValueText::font(const QString &family, int points)
{
    if (!m_font || m_family != family || m_points != points) {
        m_font = QFont(family, points);
        m_family = family;
        m_points = points;
    }
    return *m_font;
}

void ValueText::forget()
{
    m_layout.clearLayout();
    m_dpi = 0;
}

/// Does what QPainter's boundingRect() and drawText() do, each of which lays the text out anew.
QRect ValueText::paint(QPainter &painter, const QRect &rect, const QString &text)
{
    if (!isPlainLine(text))
        return paintSpecial(painter, rect, text);
    prepare(painter);
    layOut(text);
    const QTextLine line = m_layout.lineAt(0);
    const qreal width = line.naturalTextWidth();
    const qreal height = line.ascent() + line.descent();
    const QRect bounds = QRectF(rect.x() + (rect.width() - width) / 2,
                                rect.y() + (rect.height() - height) / 2, width, height)
                             .toAlignedRect();
    line.draw(&painter,
              QPointF(bounds.x() + (bounds.width() - line.horizontalAdvance()) / 2,
                      bounds.y() + (bounds.height() - height) / 2));
    return bounds;
}

void ValueText::prepare(const QPainter &painter)
{
    const int dpi = painter.device()->logicalDpiY();
    const Qt::LayoutDirection direction = painter.layoutDirection();
    if (m_dpi == dpi && m_direction == direction && m_layout.font() == painter.font())
        return;
    forget();
    m_dpi = dpi;
    m_direction = direction;
    m_layout.setFont(painter.font());
    QTextOption option(Qt::AlignLeft);
    option.setTextDirection(direction);
    m_layout.setTextOption(option);
}

void ValueText::layOut(const QString &text)
{
    if (m_layout.lineCount() == 1 && m_layout.text() == text)
        return;
    m_layout.setText(text);
    m_layout.beginLayout();
    constexpr qreal unbounded = 0x01000000;
    m_layout.createLine().setLineWidth(unbounded);
    m_layout.endLayout();
}
