#include "button.h"

#include <QColor>
#include <QCursor>
#include <QGraphicsDropShadowEffect>
#include <QMouseEvent>

Button::Button(const QString &text, QWidget *parent)
    : QPushButton(parent)
    , label(text)
    , glow(new QGraphicsDropShadowEffect(this))
{
    setText(text);
    setCursor(Qt::PointingHandCursor);
    // Of the provisional width, which is meant: it makes the glow of all buttons the same.
    glow->setBlurRadius(width() * 0.01);
    glow->setOffset(0, 0);
    glow->setColor(QColor(glowColor));
    setGraphicsEffect(glow);
    glow->setEnabled(false);
}

void Button::setSelected(bool on)
{
    isSelected = on;
    glow->setEnabled(on);
    refreshStyle();
    emit pressed(on);
}

void Button::refreshStyle()
{
    const QString &textColor = isSelected ? textColorOn : textColorOff;
    const QString &background = isSelected ? backgroundOn : backgroundOff;
    const QString style = QStringLiteral("QPushButton {"
                                         "   color: %1;"
                                         "   background-color: %2;"
                                         "   border-radius: %3px;"
                                         "}"
                                         "QPushButton:pressed {"
                                         "   background-color: %4;"
                                         "}");
    applyStyle(style.arg(textColor, background, QString::number(borderRadius), background));
    glow->setEnabled(isSelected);
    glow->setColor(QColor(glowColor));
}

/// Widgets parse a style sheet and polish themselves anew for each one set, also for the one they
/// have.
void Button::applyStyle(const QString &style)
{
    if (style != styleSheet())
        setStyleSheet(style);
}

void Button::mousePressEvent(QMouseEvent *event)
{
    if (ctrlLock && event->modifiers() & Qt::ControlModifier)
        return;

    refreshStyle();
    isSelected = !isSelected;
    glow->setEnabled(isSelected);
    refreshStyle();
    // Receivers rely on seeing each press twice, whatever they do with the button meanwhile.
    const bool status = isSelected;
    emit pressed(status);
    emit pressed(status);
}

void Button::leaveEvent(QEvent *event)
{
    hovered = false;
    QWidget::leaveEvent(event);
}
