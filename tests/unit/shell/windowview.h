#ifndef WINDOWVIEW_H
#define WINDOWVIEW_H

#include <QStringList>

class MainWindow;
class QTimer;
class QWidget;

/// Looks into a main window from outside, and lets its time pass.
class WindowView
{
public:
    explicit WindowView(MainWindow &window);

    QTimer *detectTimer() const { return m_detectTimer; }
    QTimer *pollTimer() const { return m_pollTimer; }

    /// Does what happens when the timer's time has come, now.
    void detect() const;
    void poll() const;

    /// What the window shows, top to bottom: the class of a panel, the text of a label.
    QStringList content() const;
    /// The widget at that place, null when there is none.
    QWidget *widgetAt(int place) const;

private:
    MainWindow &m_window;
    QTimer *m_detectTimer = nullptr;
    QTimer *m_pollTimer = nullptr;
};

#endif
