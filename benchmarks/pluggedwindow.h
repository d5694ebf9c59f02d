#ifndef PLUGGEDWINDOW_H
#define PLUGGEDWINDOW_H

#include "comparison.h"
#include "mainwindow.h"
#include "settings.h"
#include "simulatorclient.h"

class QTimer;

/// The product's window on screen and its settings dialog, and a simulated interface which comes
/// and goes.
class PluggedWindow
{
public:
    explicit PluggedWindow(quint32 model);

    SimulatorClient &simulator() { return m_simulator; }
    MainWindow &window() { return m_window; }
    Settings &settings() { return m_settings; }

    /// Plugs the model in, of which the window knows nothing yet.
    void plug();
    /// What the window does when it looks for a device.
    void detect();
    /// Lets events run until all controls of the panel have been painted.
    void awaitPainting();
    /// Paints all of the window anew.
    void repaint() { m_window.repaint(); }
    /// Has the audio engine take the steps for which it would wait.
    void hurryEngine();
    /// Lets the audio engine come up, unplugs the model and has the window notice.
    void unplug();

private:
    const quint32 m_model;
    SimulatorClient m_simulator;
    Settings m_settings;
    MainWindow m_window;
    QTimer &m_detectTimer;
    QTimer &m_pollTimer;
};

#endif
