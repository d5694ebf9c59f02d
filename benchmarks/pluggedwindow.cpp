#include "pluggedwindow.h"

#include "button.h"
#include "knob.h"

#include <QCoreApplication>
#include <QSet>
#include <QTimer>

#include <algorithm>

namespace {

/// Forgets the widgets it watches as they are painted.
class PaintWatcher : public QObject
{
public:
    template <typename Control> void watch(const QList<Control *> &controls)
    {
        for (Control *control : controls) {
            m_unpainted.insert(control);
            control->installEventFilter(this);
        }
    }
    bool isWaiting() const { return !m_unpainted.isEmpty(); }

protected:
    bool eventFilter(QObject *watched, QEvent *event) override
    {
        if (event->type() == QEvent::Paint)
            m_unpainted.remove(watched);
        return false;
    }

private:
    QSet<QObject *> m_unpainted;
};

QTimer &timerOf(const QWidget &window, int milliseconds)
{
    const auto timers = window.findChildren<QTimer *>(QString(), Qt::FindDirectChildrenOnly);
    const auto found = std::find_if(timers.begin(), timers.end(), [&](const QTimer *timer) {
        return timer->interval() == milliseconds;
    });
    require(found != timers.end(),
            QStringLiteral("The window has no timer of %1 ms").arg(milliseconds));
    return **found;
}

void fire(QTimer &timer)
{
    QMetaObject::invokeMethod(&timer, "timeout", Qt::DirectConnection);
}

} // namespace

PluggedWindow::PluggedWindow(quint32 model)
    : m_model(model)
    , m_detectTimer(timerOf(m_window, 1000))
    , m_pollTimer(timerOf(m_window, 400))
{
    require(m_simulator.open() && m_simulator.reset(), m_simulator.errorString());
    m_window.settingsWindow = &m_settings;
    m_window.show();
}

void PluggedWindow::plug()
{
    QCoreApplication::processEvents();
    require(m_simulator.plug(m_model) && m_simulator.clearRecord(), m_simulator.errorString());
}

void PluggedWindow::detect()
{
    fire(m_detectTimer);
}

void PluggedWindow::awaitPainting()
{
    PaintWatcher watcher;
    watcher.watch(m_window.findChildren<Knob *>());
    watcher.watch(m_window.findChildren<Button *>());
    require(watcher.isWaiting(), QStringLiteral("The window shows no panel"));
    while (watcher.isWaiting())
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
}

void PluggedWindow::hurryEngine()
{
    // Of the timers, which all stay, the last one waits; it starts another one, or none.
    for (;;) {
        auto *timer = qobject_cast<QTimer *>(m_settings.children().constLast());
        if (!timer || !timer->isActive())
            return;
        fire(*timer);
    }
}

void PluggedWindow::unplug()
{
    const auto isUp = [this] {
        const QList<Record> records = m_simulator.record();
        return std::any_of(records.begin(), records.end(),
                           [](const Record &record) { return record.code == VESMORA_INIT_AUDIO; });
    };
    while (!isUp())
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);

    require(m_simulator.unplug(), m_simulator.errorString());
    while (m_pollTimer.isActive())
        fire(m_pollTimer);
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    require(m_window.findChildren<Knob *>().isEmpty(),
            QStringLiteral("The window still shows a panel"));
}
