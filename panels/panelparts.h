#ifndef PANELPARTS_H
#define PANELPARTS_H

#include <QMargins>
#include <QString>

class Button;
class Knob;
class QFrame;
class QHBoxLayout;
class QLabel;
class QVBoxLayout;
class QWidget;

/// The pieces from which every model's panel is built, each with the family's look. Widgets get
/// their parent before their style sheet: what is adopted with one is polished twice.
namespace panelparts {

inline constexpr QMargins inputMargins{10, 10, 20, 10};
inline constexpr QMargins outputMargins{20, 10, 10, 10};

// Layouts. A centred one is placed in the middle of the room that it gets.
QVBoxLayout *column(const QMargins &margins);
QVBoxLayout *centredColumn();
QHBoxLayout *centredRow();
QFrame *separator(QWidget *parent);

// Labels: the title of a column, what stands below a knob or beside a small one, a level.
QLabel *heading(const QString &text, QWidget *parent);
QLabel *caption(const QString &text, QWidget *parent);
QLabel *smallCaption(const QString &text, QWidget *parent);
QLabel *meter(QWidget *parent);

/// A microphone gain of 0 to @p maximumDb. @p name is the object name, as for all controls.
Knob *gainKnob(const QString &name, int maximumDb, QWidget *parent);
/// An output volume of -80 to 6 dB, at -80.
Knob *volumeKnob(const QString &name, QWidget *parent);
/// The small volume of -80 to 6 dB for the phone input, at -80.
Knob *phoneKnob(const QString &name, QWidget *parent);

/// A switch of an input, lit in @p accentColor.
Button *inputButton(const QString &name, const QString &text, const QString &accentColor,
                    QWidget *parent);
/// A switch of an output: taller, lit in cyan.
Button *outputButton(const QString &name, const QString &text, QWidget *parent);

inline constexpr QLatin1StringView yellow("#f1fa8c");
inline constexpr QLatin1StringView green("#00ff7f");
inline constexpr QLatin1StringView orange("#ff7f00");
inline constexpr QLatin1StringView red("#ff1111");
inline constexpr QLatin1StringView cyan("#00FFFF");

} // namespace panelparts

#endif
