#ifndef BUTTON_H
#define BUTTON_H

#include <QPushButton>
#include <QString>

class QGraphicsDropShadowEffect;

/// A two-state switch that glows while it is selected.
///
/// The look is plain members, colours as text a style sheet understands; the style sheet is made of
/// them by refreshStyle(), which construction leaves to the first caller.
///
/// pressed(bool) overloads the inherited pressed(), which the mouse never fires here, nor
/// clicked(); connect with qOverload<bool>(&Button::pressed).
class Button : public QPushButton
{
    Q_OBJECT

public:
    /// An unselected button showing @p text. The glow's blur radius is a hundredth of the width
    /// that the button has now and stays: without a parent that is a window's provisional 640
    /// pixels, whatever the layout makes of it later.
    explicit Button(const QString &text, QWidget *parent = nullptr);

    /// Selects the button or not, refreshes the style and emits pressed() once, also when the
    /// state stayed the same.
    void setSelected(bool on);
    /// Makes style sheet and glow anew from the members and the state.
    void refreshStyle();

    QString label;                                   ///< the caption given at construction
    int spareMetric = 10;                            ///< for the owner's use; the button ignores it
    int borderRadius = 3;                            ///< pixels
    QString textColorOn = QStringLiteral("#000000"); ///< while selected
    QString textColorOff = QStringLiteral("#00ff7f");  ///< while not selected
    QString glowColor = QStringLiteral("#00ff7f");     ///< of the drop shadow
    QString backgroundOn = QStringLiteral("#00ff7f");  ///< while selected
    QString backgroundOff = QStringLiteral("#1b1e23"); ///< while not selected
    QString spareColor1 = QStringLiteral("#1b1e23");   ///< for the owner's use; ignored
    QString spareColor2 = QStringLiteral("#1b1e23");   ///< likewise
    bool ctrlLock = false;                             ///< ignore presses with Ctrl held
    bool hovered = false;                              ///< cleared when the pointer leaves
    bool isSelected = false;                           ///< change it with setSelected()
    QGraphicsDropShadowEffect *glow; ///< the button's graphics effect, enabled while selected

signals:
    /// For the owner's use; the button itself never emits it.
    void selected(QString text);
    /// The state after a mouse press, emitted twice for each, or after setSelected(), once.
    void pressed(bool status);

protected:
    void mousePressEvent(QMouseEvent *event) override;
    void leaveEvent(QEvent *event) override;

private:
    void applyStyle(const QString &style);
};

#endif
