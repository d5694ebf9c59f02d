#include "windowview.h"

#include "mainwindow.h"

#include <QLabel>
#include <QLayout>
#include <QTimer>

namespace {

constexpr int detectInterval = 1000; // milliseconds
constexpr int pollInterval = 400;    // milliseconds

QTimer *timerOf(const MainWindow &window, int interval)
{
    const auto timers = window.findChildren<QTimer *>(QString(), Qt::FindDirectChildrenOnly);
    for (QTimer *timer : timers) {
        if (timer->interval() == interval)
            return timer;
    }
    qFatal("The main window has no timer of %d ms.", interval);
}

} // namespace

WindowView::WindowView(MainWindow &window)
    : m_window(window)
    , m_detectTimer(timerOf(window, detectInterval))
    , m_pollTimer(timerOf(window, pollInterval))
{ }

void WindowView::detect() const
{
    QMetaObject::invokeMethod(m_detectTimer, "timeout");
}

void WindowView::poll() const
{
    QMetaObject::invokeMethod(m_pollTimer, "timeout");
}

QStringList WindowView::content() const
{
    QStringList content;
    for (int place = 0; QWidget *widget = widgetAt(place); ++place) {
        const auto *label = qobject_cast<QLabel *>(widget);
        content << (label ? label->text() : QString::fromLatin1(widget->metaObject()->className()));
    }
    return content;
}

QWidget *WindowView::widgetAt(int place) const
{
    const QLayoutItem *item = m_window.centralWidget()->layout()->itemAt(place);
    return item ? item->widget() : nullptr;
}
