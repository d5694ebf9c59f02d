#ifndef TESTSIMULATOR_H
#define TESTSIMULATOR_H

#include "simulatorclient.h"

#include <QStringList>

#include <memory>

/// The simulated interface as a test needs it: running, reset, with nothing plugged in.
///
/// Natively each one is a process and a device folder of its own; under Windows it is the driver,
/// which must have been started. Fatal when there is none.
class TestSimulator : public SimulatorClient
{
public:
    TestSimulator();
    ~TestSimulator();

    /// The canonical line of each request since the record was last cleared; opens, closes, plugs
    /// and, unless wanted, meter reads left out.
    QStringList requests(bool withMeters = false);
    /// The same for everything recorded.
    QStringList events();

    /// Whether a failing "open" reaches the program. Under Wine it does not: opening a device
    /// succeeds there whatever its driver answers.
    bool canRefuseOpens() const;

private:
    class Lane; // what it takes to have a simulator running
    std::unique_ptr<Lane> m_lane;
};

#endif
