#ifndef POINTER_H
#define POINTER_H

#include <QElapsedTimer>
#include <QPoint>
#include <QProcessEnvironment>
#include <QStringList>

/// A person's mouse and keyboard on a display. Points are in the screen's coordinates.
///
/// Every gesture returns whether it could be made, not whether anybody reacted to it.
class Pointer
{
public:
    enum Button { Left = 1, Middle = 2, Right = 3 };

    /// @p environment names the display.
    explicit Pointer(const QProcessEnvironment &environment);

    bool moveTo(QPoint point);
    /// A click of its own: never the second half of a double click.
    bool click(QPoint point, Button button = Left);
    bool controlClick(QPoint point);
    bool doubleClick(QPoint point);
    /// @p notches of the wheel, away from the user when positive.
    bool wheel(QPoint point, int notches);
    /// The left button goes down at a point, and up again elsewhere: between them, moveTo() drags.
    bool press(QPoint point);
    bool release();
    /// Types into whatever has the keyboard.
    bool type(const QString &text);
    /// Presses one key by its X name, for example "Return".
    bool key(const QString &name);

private:
    bool run(const QStringList &arguments);
    bool clickApart(QPoint point, const QStringList &gesture);

    QProcessEnvironment m_environment;
    QElapsedTimer m_sinceLastClick;
};

#endif
