#ifndef WHEEL_H
#define WHEEL_H

#include "knob.h"

#include <QCoreApplication>
#include <QWheelEvent>

/// A notch of the wheel over a knob, up and down by turns.
class Wheel
{
public:
    explicit Wheel(Knob &knob)
        : m_knob(knob)
    { }
    void turn()
    {
        m_isUp = !m_isUp;
        QCoreApplication::sendEvent(&m_knob, m_isUp ? &m_up : &m_down);
    }

private:
    static QWheelEvent notch(int delta)
    {
        return {{60, 60},       {60, 60},          {},   {0, delta}, Qt::NoButton,
                Qt::NoModifier, Qt::NoScrollPhase, false};
    }

    Knob &m_knob;
    QWheelEvent m_up = notch(120);
    QWheelEvent m_down = notch(-120);
    bool m_isUp = false;
};

#endif
