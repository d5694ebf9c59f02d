#ifndef ENGINEFIXTURE_H
#define ENGINEFIXTURE_H

#include "audioengine.h"
#include "observed.h"
#include "otgtimers.h"

#include <QMap>
#include <QObject>
#include <QTest>

#include <memory>

/// A test of the audio engine's sequences against the simulated interface, without a window.
///
/// Does for the engine what the settings dialog does: has it apply what is chosen, lowers the
/// latency when asked to, and logs and remembers what is to be kept, "name=text". The choices are
/// called as their boxes are. Each test function begins with a sane interface that is not plugged
/// in and with no engine; in the end the engine is deleted and must have closed what it opened.
class EngineFixture : public QObject, protected Observed
{
    Q_OBJECT

protected:
    explicit EngineFixture(Device device = Device::Simulated)
        : Observed(device)
    { }

    /// Plugs in, connects an engine and forgets what all that sent.
    void openConnectedEngine();
    /// Connects an engine.
    void openEngine();
    AudioEngine &engine() { return *m_engine; }

    /// Has the engine apply @p text.
    void choose(const QString &name, const QString &text);
    /// Takes it for chosen already.
    void preset(const QString &name, const QString &text) { m_chosen.insert(name, text); }
    /// What is chosen: buffer size, USB latency, sample rate, safe mode.
    QStringList texts() const;
    /// What is to be kept since the engine was opened, sorted.
    QStringList kept() const;

    /// The timers of the OTG steps.
    QList<QTimer *> timers() const { return otgTimers(*m_owner); }
    /// Runs the event loop until no OTG cycle is under way.
    void finishOtgCycles();

protected slots:
    void init();
    void cleanup();

private:
    std::unique_ptr<QObject> m_owner;
    AudioEngine *m_engine = nullptr;
    QMap<QString, QString> m_chosen;
    QMap<QString, QString> m_kept;
};

#endif
