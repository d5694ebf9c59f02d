#include "panelparts.h"

#include "button.h"
#include "knob.h"

#include <QFrame>
#include <QHBoxLayout>
#include <QLabel>
#include <QVBoxLayout>

namespace panelparts {

namespace {

QLabel *label(const QString &text, const char *style, QWidget *parent)
{
    auto *label = new QLabel(text, parent);
    label->setAlignment(Qt::AlignCenter);
    label->setStyleSheet(QLatin1String(style));
    return label;
}

Knob *knob(const QString &name, const QSize &laidOut, const QSize &fixed, int minimumDb,
           int maximumDb, QWidget *parent)
{
    auto *knob = new Knob(parent);
    knob->setObjectName(name);
    knob->setGeometry(QRect(QPoint(10, 10), laidOut));
    knob->setFixedSize(fixed);
    knob->minValue = minimumDb;
    knob->maxValue = maximumDb;
    knob->value = minimumDb;
    knob->textColor = QColor(green);
    knob->accentColor = QColor(green);
    return knob;
}

Button *button(const QString &name, const QString &text, const QString &accentColor,
               int spareMetric, QWidget *parent)
{
    // It takes the reach of its glow from the width of a window, which it is at first.
    auto *button = new Button(text, nullptr);
    button->setParent(parent);
    button->setObjectName(name);
    button->spareMetric = spareMetric;
    button->borderRadius = 3;
    button->textColorOn = accentColor;
    button->textColorOff = QStringLiteral("#8a95aa");
    button->glowColor = accentColor;
    button->backgroundOn = QStringLiteral("#1b1e23");
    button->backgroundOff = QStringLiteral("#1b1e23");
    button->setFixedWidth(80);
    button->refreshStyle();
    return button;
}

template <typename Layout> Layout *centred(Layout *layout)
{
    layout->setAlignment(Qt::AlignCenter);
    return layout;
}

} // namespace

QVBoxLayout *column(const QMargins &margins)
{
    auto *layout = new QVBoxLayout;
    layout->setContentsMargins(margins);
    return layout;
}

QVBoxLayout *centredColumn()
{
    return centred(new QVBoxLayout);
}

QHBoxLayout *centredRow()
{
    return centred(new QHBoxLayout);
}

QFrame *separator(QWidget *parent)
{
    auto *line = new QFrame(parent);
    line->setFrameShape(QFrame::VLine);
    line->setFrameShadow(QFrame::Sunken);
    line->setFixedWidth(1);
    line->setStyleSheet(QStringLiteral("background-color: #555555;"));
    return line;
}

QLabel *heading(const QString &text, QWidget *parent)
{
    return label(text, "font-weight: bold; font-size: 12px; color: white;", parent);
}

QLabel *caption(const QString &text, QWidget *parent)
{
    return label(text, "font-size: 12px; color: white;", parent);
}

QLabel *smallCaption(const QString &text, QWidget *parent)
{
    return label(text, "font-size: 10px; color: white;", parent);
}

QLabel *meter(QWidget *parent)
{
    return label(QStringLiteral("-160 dB"), "color: #888888; font-size: 8px;", parent);
}

Knob *gainKnob(const QString &name, int maximumDb, QWidget *parent)
{
    auto *gain = knob(name, {120, 120}, {120, 120}, 0, maximumDb, parent);
    gain->arcColor = QColor(yellow);
    return gain;
}

Knob *volumeKnob(const QString &name, QWidget *parent)
{
    return knob(name, {120, 120}, {120, 120}, -80, 6, parent);
}

Knob *phoneKnob(const QString &name, QWidget *parent)
{
    auto *volume = knob(name, {80, 80}, {70, 70}, -80, 6, parent);
    volume->arcWidth = 3;
    volume->fontSize = 10;
    return volume;
}

Button *inputButton(const QString &name, const QString &text, const QString &accentColor,
                    QWidget *parent)
{
    return button(name, text, accentColor, 10, parent);
}

Button *outputButton(const QString &name, const QString &text, QWidget *parent)
{
    auto *output = button(name, text, cyan, 12, parent);
    output->setMinimumHeight(40);
    return output;
}

} // namespace panelparts
