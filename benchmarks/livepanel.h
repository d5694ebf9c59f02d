#ifndef LIVEPANEL_H
#define LIVEPANEL_H

#include "bareinterface.h"
#include "button.h"
#include "knob.h"
#include "simulatorclient.h"
#include "tracing.h"

#include <QWidget>

#include <memory>
#include <optional>

/// The RX1's panel on screen, connected to the simulated interface, and beside it what the floors
/// need to do the same: a connection of their own and a copy of the panel's file.
class LivePanel
{
public:
    /// Levels in dB that panel and floors begin with.
    static constexpr int volume = -20;
    static constexpr int gain = 20;

    LivePanel();

    Knob &knob(const char *name);
    Button &button(const char *name);

    /// The block as the panel has left it.
    MixerBlock deviceBlock();
    BareInterface &bare() { return *m_bare; }

    /// Measures the product's @p event against a @p floor that does the same, with and without the
    /// lines of the log, and with @p look, too, if there is that to be changed. Each goes to and
    /// fro: two times bring everything back to where it was.
    void compareEvent(const QString &name, const Effort &effort, const Work &event,
                      const std::function<void(bool logs)> &floor, const Work &look = {});

private:
    void requireSame(const QString &name, const Work &event, const Work &floor);
    void comeToRest();

    Log m_log;
    SimulatorClient m_simulator;
    std::unique_ptr<QWidget> m_panel;
    std::optional<BareInterface> m_bare;
};

#endif
