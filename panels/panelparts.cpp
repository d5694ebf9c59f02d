#include "panelparts.h"

#include "button.h"
#include "knob.h"

#include <QFrame>
#include <QHBoxLayout>
#include <QLabel>
#include <QVBoxLayout>

namespace panelparts {

namespace {

QLabel *label(const QString &text, const char *style)
{
    auto *label = new QLabel(text);
    label->setAlignment(Qt::AlignCenter);
    label->setStyleSheet(QLatin1String(style));
    return label;
}

Knob *knob(const QString &name, const QSize &laidOut, const QSize &fixed, int minimumDb,
           int maximumDb)
{
    auto *knob = new Knob(nullptr);
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
               int spareMetric)
{
    auto *button = new Button(text, nullptr);
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

QFrame *separator()
{
    auto *line = new QFrame;
    line->setFrameShape(QFrame::VLine);
    line->setFrameShadow(QFrame::Sunken);
    line->setFixedWidth(1);
    line->setStyleSheet(QStringLiteral("background-color: #555555;"));
    return line;
}

QLabel *heading(const QString &text)
{
    return label(text, "font-weight: bold; font-size: 12px; color: white;");
}

QLabel *caption(const QString &text)
{
    return label(text, "font-size: 12px; color: white;");
}

QLabel *smallCaption(const QString &text)
{
    return label(text, "font-size: 10px; color: white;");
}

QLabel *meter()
{
    return label(QStringLiteral("-160 dB"), "color: #888888; font-size: 8px;");
}

Knob *gainKnob(const QString &name, int maximumDb)
{
    auto *gain = knob(name, {120, 120}, {120, 120}, 0, maximumDb);
    gain->arcColor = QColor(yellow);
    return gain;
}

Knob *volumeKnob(const QString &name)
{
    return knob(name, {120, 120}, {120, 120}, -80, 6);
}

Knob *phoneKnob(const QString &name)
{
    auto *volume = knob(name, {80, 80}, {70, 70}, -80, 6);
    volume->arcWidth = 3;
    volume->fontSize = 10;
    return volume;
}

Button *inputButton(const QString &name, const QString &text, const QString &accentColor)
{
    return button(name, text, accentColor, 10);
}

Button *outputButton(const QString &name, const QString &text)
{
    auto *output = button(name, text, cyan, 12);
    output->setMinimumHeight(40);
    return output;
}

} // namespace panelparts
