#include "pointer.h"

#include "childprocess.h"
#include "waiting.h"

namespace {

// More than any toolkit's double-click interval.
constexpr qint64 clicksAreApartAfterMs = 700;

QStringList moveArguments(QPoint point)
{
    return {QStringLiteral("mousemove"), QString::number(point.x()), QString::number(point.y())};
}

} // namespace

Pointer::Pointer(const QProcessEnvironment &environment)
    : m_environment(environment)
{ }

bool Pointer::moveTo(QPoint point)
{
    return run(moveArguments(point));
}

bool Pointer::click(QPoint point, Button button)
{
    // As long as a finger takes: the press may move the focus before the release acts.
    const QString number = QString::number(button);
    return clickApart(point,
                      {QStringLiteral("mousedown"), number, QStringLiteral("sleep"),
                       QStringLiteral("0.1"), QStringLiteral("mouseup"), number});
}

bool Pointer::controlClick(QPoint point)
{
    return clickApart(point,
                      {QStringLiteral("keydown"), QStringLiteral("ctrl"), QStringLiteral("click"),
                       QStringLiteral("1"), QStringLiteral("keyup"), QStringLiteral("ctrl")});
}

bool Pointer::doubleClick(QPoint point)
{
    return clickApart(point,
                      {QStringLiteral("click"), QStringLiteral("--repeat"), QStringLiteral("2"),
                       QStringLiteral("--delay"), QStringLiteral("60"), QStringLiteral("1")});
}

bool Pointer::wheel(QPoint point, int notches)
{
    return run(moveArguments(point)
               << QStringLiteral("click") << QStringLiteral("--repeat")
               << QString::number(qAbs(notches)) << QStringLiteral("--delay")
               << QStringLiteral("40") << QString::number(notches > 0 ? 4 : 5));
}

bool Pointer::press(QPoint point)
{
    return clickApart(point, {QStringLiteral("mousedown"), QStringLiteral("1")});
}

bool Pointer::release()
{
    m_sinceLastClick.start();
    return run({QStringLiteral("mouseup"), QStringLiteral("1")});
}

bool Pointer::type(const QString &text)
{
    return run({QStringLiteral("type"), QStringLiteral("--delay"), QStringLiteral("40"), text});
}

bool Pointer::key(const QString &name)
{
    return run({QStringLiteral("key"), name});
}

bool Pointer::clickApart(QPoint point, const QStringList &gesture)
{
    const auto isApart = [this] {
        return !m_sinceLastClick.isValid() || m_sinceLastClick.hasExpired(clicksAreApartAfterMs);
    };
    const bool made = waitUntil(isApart) && run(moveArguments(point) + gesture);
    m_sinceLastClick.start();
    return made;
}

bool Pointer::run(const QStringList &arguments)
{
    return runCommand(QStringLiteral("xdotool"), arguments, m_environment).succeeded();
}
