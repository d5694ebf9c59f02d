#ifndef LAYOUTTEXT_H
#define LAYOUTTEXT_H

#include <QList>
#include <QStringList>

class Button;
class Knob;
class QLayout;
class QWidget;

/// A layout with everything in it, one item a line, what is in a layout indented below it:
/// @code
/// column centred margins 20,10,10,10
///   label "GAIN" font-size: 12px;
///   knob Mic
///   button Mic48V
///   separator
///   stretch
/// @endcode
QStringList describe(const QLayout &layout);

/// The widgets of a layout and the layouts in it, in the order of describe().
QList<QWidget *> widgetsInOrder(const QLayout &layout);

/// The innermost layout that holds @p widget; null when there is none.
const QLayout *layoutOf(const QLayout &outermost, const QWidget &widget);

/// All that makes a knob's range and look, e.g.
/// "Mic at 10,10 120x120 range 0..42 arc 7 #f1fa8c text 12pt #00ff7f accent #00ff7f".
QString describe(const Knob &knob);

/// All that makes a button's look, e.g.
/// "Mic48V 48V on #ff1111/#1b1e23 off #8a95aa/#1b1e23 glow #ff1111 radius 3 spare 10 at least 80x0
/// at most 80x16777215".
QString describe(const Button &button);

#endif
