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

void ValueText::forget()
{
    m_layout.clearLayout();
}

/// Does what QPainter's boundingRect() and drawText() do, each of which lays the text out anew.
QRect ValueText::paint(QPainter &painter, const QRect &rect, const QString &text)
{
    if (!isPlainLine(text))
        return paintSpecial(painter, rect, text);
    if (!isLaidOut(painter, text))
        layOut(painter, text);
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

bool ValueText::isLaidOut(const QPainter &painter, const QString &text) const
{
    return m_layout.lineCount() == 1 && m_layout.text() == text && m_layout.font() == painter.font()
        && m_layout.textOption().textDirection() == painter.layoutDirection()
        && m_dpi == painter.device()->logicalDpiY();
}

void ValueText::layOut(const QPainter &painter, const QString &text)
{
    QTextOption option(Qt::AlignLeft);
    option.setTextDirection(painter.layoutDirection());
    m_layout.setTextOption(option);
    m_layout.setFont(painter.font());
    m_layout.setText(text);
    m_layout.beginLayout();
    constexpr qreal unbounded = 0x01000000;
    m_layout.createLine().setLineWidth(unbounded);
    m_layout.endLayout();
    m_dpi = painter.device()->logicalDpiY();
}
