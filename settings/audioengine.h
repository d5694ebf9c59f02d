#ifndef AUDIOENGINE_H
#define AUDIOENGINE_H

#include <QObject>
#include <QString>

#include <functional>
#include <memory>
#include <optional>

class VesmoraIoControl;

/// The driver's audio engine: a connection of its own and the command sequences that change it.
///
/// A sequence runs on the GUI thread, stops at the first command that fails and undoes nothing;
/// without a connection it does nothing. Outcomes go to the debug log alone.
class AudioEngine : public QObject
{
    Q_OBJECT

public:
    /// What is chosen: a text and the value that it stands for, if it stands for one.
    struct Choice {
        QString text;
        std::optional<quint32> value;
    };

    /// The timers of the OTG steps become children of @p parent, as this does, and stay.
    explicit AudioEngine(QObject *parent);
    /// Closes the connection.
    ~AudioEngine() override;

    /// Opens a connection in place of an earlier one. Pending OTG steps go to the new one, if any.
    bool openDevice();

    // The change sequences. They return true when the driver has accepted all of a change, which is
    // then to be kept.
    bool setBufferSize(const Choice &samples);
    /// A text that stands for nothing counts as 8 frames.
    bool setUsbLatency(const Choice &frames);
    /// True although the OTG cycle is yet to come: the engine runs at the new rate already.
    bool setSampleRate(const Choice &hertz);
    /// 0 is off, 1 is on.
    bool setSafeMode(const Choice &mode);

    /// The driver's rate in Hz, 0 when it does not tell. Needs a connection.
    quint32 sampleRate();
    /// Brings the engine up at @p sampleRate, in Hz. Needs a connection.
    void start(quint32 sampleRate);

signals:
    /// The driver's USB latency is above what a new buffer size allows. To be brought down to
    /// @p frames before the signal returns, as the buffer size goes on then.
    void usbLatencyTooHigh(quint32 frames);

private:
    bool capUsbLatency(quint32 bufferSize);
    void cycleOtg(const std::function<void()> &completed);
    void after(int milliseconds, const std::function<void()> &step);

    std::unique_ptr<VesmoraIoControl> m_device;
};

#endif
