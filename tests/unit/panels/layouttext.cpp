#include "layouttext.h"

#include "button.h"
#include "knob.h"

#include <QBoxLayout>
#include <QFrame>
#include <QLabel>
#include <QTextStream>

namespace {

QString sizeText(const QSize &size)
{
    return QString("%1x%2").arg(size.width()).arg(size.height());
}

bool isSeparator(const QFrame &frame)
{
    return frame.frameShape() == QFrame::VLine && frame.frameShadow() == QFrame::Sunken
        && frame.minimumWidth() == 1 && frame.maximumWidth() == 1
        && frame.styleSheet() == "background-color: #555555;";
}

QString labelText(const QLabel &label)
{
    const QString text = QString("label \"%1\" %2").arg(label.text(), label.styleSheet());
    return label.alignment() == Qt::AlignCenter ? text : text + " (not centred)";
}

QString widgetText(const QWidget &widget)
{
    if (const auto *label = qobject_cast<const QLabel *>(&widget))
        return labelText(*label);
    if (qobject_cast<const Knob *>(&widget))
        return "knob " + widget.objectName();
    if (qobject_cast<const Button *>(&widget))
        return "button " + widget.objectName();
    const auto *frame = qobject_cast<const QFrame *>(&widget);
    return frame && isSeparator(*frame) ? "separator" : widget.metaObject()->className();
}

QString layoutText(const QLayout &layout)
{
    const auto *box = qobject_cast<const QBoxLayout *>(&layout);
    QString text = !box                               ? "no box"
        : box->direction() == QBoxLayout::LeftToRight ? "row"
        : box->direction() == QBoxLayout::TopToBottom ? "column"
                                                      : "reversed box";
    if (layout.alignment() == Qt::AlignCenter)
        text += " centred";
    const QMargins margins = layout.contentsMargins();
    if (!margins.isNull())
        text += QString(" margins %1,%2,%3,%4")
                    .arg(margins.left())
                    .arg(margins.top())
                    .arg(margins.right())
                    .arg(margins.bottom());
    return text;
}

void append(QStringList &lines, const QLayout &layout, const QString &indent)
{
    lines << indent + layoutText(layout);
    const QString inner = indent + "  ";
    for (int i = 0; i < layout.count(); ++i) {
        QLayoutItem *item = layout.itemAt(i);
        if (item->layout())
            append(lines, *item->layout(), inner);
        else if (item->widget())
            lines << inner + widgetText(*item->widget());
        else
            lines << inner + (item->expandingDirections() ? "stretch" : "space");
    }
}

} // namespace

QStringList describe(const QLayout &layout)
{
    QStringList lines;
    append(lines, layout, QString());
    return lines;
}

QList<QWidget *> widgetsInOrder(const QLayout &layout)
{
    QList<QWidget *> widgets;
    for (int i = 0; i < layout.count(); ++i) {
        QLayoutItem *item = layout.itemAt(i);
        if (item->layout())
            widgets += widgetsInOrder(*item->layout());
        else if (item->widget())
            widgets << item->widget();
    }
    return widgets;
}

const QLayout *layoutOf(const QLayout &outermost, const QWidget &widget)
{
    for (int i = 0; i < outermost.count(); ++i) {
        QLayoutItem *item = outermost.itemAt(i);
        if (item->widget() == &widget)
            return &outermost;
        const QLayout *found = item->layout() ? layoutOf(*item->layout(), widget) : nullptr;
        if (found)
            return found;
    }
    return nullptr;
}

QString describe(const Knob &knob)
{
    QString text;
    QTextStream stream(&text);
    stream << knob.objectName() << " at " << knob.x() << ',' << knob.y() << ' '
           << sizeText(knob.minimumSize());
    if (knob.maximumSize() != knob.minimumSize())
        stream << " (not fixed)";
    stream << " range " << knob.minValue << ".." << knob.maxValue << " arc " << knob.arcWidth << ' '
           << knob.arcColor.name() << " text " << knob.fontSize << "pt " << knob.textColor.name()
           << " accent " << knob.accentColor.name();
    return text;
}

QString describe(const Button &button)
{
    QString text;
    QTextStream stream(&text);
    stream << button.objectName() << ' ' << button.text() << " on " << button.textColorOn << '/'
           << button.backgroundOn << " off " << button.textColorOff << '/' << button.backgroundOff
           << " glow " << button.glowColor << " radius " << button.borderRadius << " spare "
           << button.spareMetric << " at least " << sizeText(button.minimumSize()) << " at most "
           << sizeText(button.maximumSize());
    return text;
}
