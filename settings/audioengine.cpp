#include "audioengine.h"

#include "vesmoraiocontrol.h"

#include <QDebug>
#include <QTimer>

#include <windows.h>

#include <new>

namespace {

constexpr DWORD enginePause = 100; // milliseconds, after stopping and before starting the engine
constexpr int otgPause = 200;      // milliseconds, before each half of the OTG cycle
constexpr quint32 wdmChannels = 4;
constexpr quint32 fallbackLatency = 8; // USB frames

// What the log says when a command fails; some commands share a text.
constexpr char stopFailed[] = "停止音频失败，可能是驱动未正确加载或设备未连接。";
constexpr char restartFailed[] = "重新启动音频失败，可能是驱动未正确加载或设备未连接。";
constexpr char initFailed[] = "初始化音频失败，可能是驱动未正确加载或设备未连接。";
constexpr char getBufferSizeFailed[] = "获取音频缓冲区大小失败，可能是驱动未正确加载或设备未连接。";
constexpr char setBufferSizeFailed[] = "设置音频缓冲区大小失败，可能是驱动未正确加载或设备未连接。";
constexpr char getUsbLatencyFailed[] = "获取USB延迟大小失败，可能是驱动未正确加载或设备未连接。";
constexpr char setUsbLatencyFailed[] = "设置USB延迟大小失败，可能是驱动未正确加载或设备未连接。";
constexpr char setSampleRateFailed[] = "设置音频采样率失败，可能是驱动未正确加载或设备未连接。";
constexpr char setChannelsFailed[] = "设置WDM通道数量失败，可能是驱动未正确加载或设备未连接。";
constexpr char setSlowModeFailed[] = "设置USB慢速模式失败，可能是驱动未正确加载或设备未连接。";
constexpr char otgOffFailed[] = "关闭OTG芯片失败，可能是驱动未正确加载或设备未连接。";
constexpr char otgOnFailed[] = "开启OTG芯片失败，可能是驱动未正确加载或设备未连接。";

bool succeeded(bool done, const char *failure)
{
    if (!done)
        qDebug() << failure;
    return done;
}

/// The largest USB latency, in frames, that a buffer of so many samples allows.
quint32 latencyCap(quint32 bufferSize)
{
    if (bufferSize <= 64)
        return 8;
    if (bufferSize <= 128)
        return 16;
    return bufferSize <= 256 ? 24 : 32;
}

} // namespace

AudioEngine::AudioEngine(QObject *parent)
    : QObject(parent)
{ }

AudioEngine::~AudioEngine() = default;

bool AudioEngine::openDevice()
{
    m_device.reset();
    m_device.reset(new (std::nothrow) VesmoraIoControl);
    if (!m_device) {
        qDebug() << "Failed to create VesmoraIoControl instance.";
        return false;
    }
    if (m_device->openDevice())
        return true;
    // The first model's text, whatever the model.
    qDebug() << "Failed to create device in rx1.";
    return false;
}

bool AudioEngine::setBufferSize(const Choice &samples)
{
    if (!m_device)
        return false;
    if (!samples.value) {
        qDebug() << "未知的音频缓冲区大小选项：" << samples.text;
        return false;
    }
    qDebug() << "设置音频缓冲区大小为：" << *samples.value << "samples";

    quint32 current = 0;
    const bool known = m_device->getBufferSize(current);
    qDebug() << "当前音频缓冲区大小：" << current;
    if (!succeeded(known, getBufferSizeFailed) || current == *samples.value)
        return false;
    if (!capUsbLatency(*samples.value))
        return false;

    if (!succeeded(m_device->stopAudio(), stopFailed)
        || !succeeded(m_device->setBufferSize(*samples.value), setBufferSizeFailed)
        || !succeeded(m_device->restartAudio(), restartFailed))
        return false;
    qDebug() << "音频缓冲区大小设置成功：" << *samples.value << "samples";
    return true;
}

/// Has the latency lowered to the largest that @p bufferSize (samples) allows where the driver's is
/// above it.
bool AudioEngine::capUsbLatency(quint32 bufferSize)
{
    const quint32 cap = latencyCap(bufferSize);
    qDebug() << "设置USB延迟大小为：" << cap << "Frame";
    quint32 current = 0;
    if (!succeeded(m_device->getUsbLatency(current), getUsbLatencyFailed))
        return false;
    qDebug() << "当前USB延迟大小：" << current;
    if (current > cap)
        emit usbLatencyTooHigh(cap);
    return true;
}

bool AudioEngine::setUsbLatency(const Choice &frames)
{
    if (!m_device)
        return false;
    const quint32 wanted = frames.value.value_or(fallbackLatency);
    qDebug() << "设置USB延迟大小为：" << wanted << "Frame";

    // A failing read counts as a latency of 0, so that the change goes on.
    quint32 current = 0;
    m_device->getUsbLatency(current);
    qDebug() << "当前USB延迟大小：" << current;
    if (current == wanted)
        return false;

    return succeeded(m_device->stopAudio(), stopFailed)
        && succeeded(m_device->setUsbLatency(wanted), setUsbLatencyFailed)
        && succeeded(m_device->restartAudio(), restartFailed);
}

bool AudioEngine::setSampleRate(const Choice &hertz)
{
    if (!m_device || !succeeded(m_device->stopAudio(), stopFailed))
        return false;
    Sleep(enginePause);

    if (!hertz.value) {
        qDebug() << "未知的音频采样率选项：" << hertz.text;
        return false;
    }
    qDebug() << "设置音频采样率为：" << *hertz.value << "Hz";
    if (!succeeded(m_device->setSampleRate(*hertz.value), setSampleRateFailed)
        || !succeeded(m_device->setWdmChannelCount(wdmChannels), setChannelsFailed))
        return false;
    Sleep(enginePause);
    if (!succeeded(m_device->initAudio(), restartFailed))
        return false;

    cycleOtg([] { qDebug() << "设置采样频率完成"; });
    return true;
}

bool AudioEngine::setSafeMode(const Choice &mode)
{
    if (!m_device || !succeeded(m_device->stopAudio(), stopFailed))
        return false;
    if (!mode.value) {
        qDebug() << "未知的USB慢速模式选项：" << mode.text;
        return false;
    }
    const bool done = *mode.value ? m_device->enableUsbSlowMode() : m_device->disableUsbSlowMode();
    return succeeded(done, setSlowModeFailed) && succeeded(m_device->restartAudio(), restartFailed);
}

quint32 AudioEngine::sampleRate()
{
    return m_device->getSampleRate();
}

void AudioEngine::start(quint32 sampleRate)
{
    if (!succeeded(m_device->stopAudio(), stopFailed))
        return;
    qDebug() << "停止音频成功，开始加载控件状态";
    Sleep(enginePause);
    if (!succeeded(m_device->setSampleRate(sampleRate), setSampleRateFailed)
        || !succeeded(m_device->setWdmChannelCount(wdmChannels), setChannelsFailed))
        return;
    cycleOtg([this] {
        if (succeeded(m_device->initAudio(), initFailed))
            qDebug() << "设置初始化完成";
    });
}

/// Switches the OTG chip off and on again, each after a pause, then calls @p completed. A chip that
/// does not switch off is left alone, and @p completed is not called.
void AudioEngine::cycleOtg(const std::function<void()> &completed)
{
    after(otgPause, [this, completed] {
        if (!succeeded(m_device->setOtgOff(), otgOffFailed))
            return;
        after(otgPause, [this, completed] {
            succeeded(m_device->setOtgOn(), otgOnFailed);
            completed();
        });
    });
}

/// Runs @p step after a pause, unless there is no connection by then. The timer stays as long as
/// the dialog; what it had to do does not.
void AudioEngine::after(int milliseconds, const std::function<void()> &step)
{
    auto *timer = new QTimer(parent());
    timer->setSingleShot(true);
    const auto fire = [this, timer, step] {
        timer->stop();
        if (m_device)
            step();
    };
    connect(timer, &QTimer::timeout, this, fire,
            static_cast<Qt::ConnectionType>(Qt::AutoConnection | Qt::SingleShotConnection));
    timer->start(milliseconds);
}
