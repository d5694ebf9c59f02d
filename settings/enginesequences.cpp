// The driver command sequences behind the choices of the settings dialog. Each runs on the GUI
// thread, stops at the first command that fails, and undoes nothing.

#include "settings.h"

#include "vesmoraiocontrol.h"

#include <QComboBox>
#include <QDebug>
#include <QTimer>

#include <windows.h>

#include <optional>

namespace {

constexpr DWORD enginePause = 100; // milliseconds, after stopping and before starting the engine
constexpr int otgPause = 200;      // milliseconds, before each half of the OTG cycle
constexpr quint32 wdmChannels = 4;

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

/// The value of one of the listed texts, which are plain numbers, or nothing.
std::optional<quint32> optionValue(const QString &text, std::initializer_list<quint32> options)
{
    for (const quint32 option : options) {
        if (text == QString::number(option))
            return option;
    }
    return {};
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

void Settings::onBufferSizeChanged()
{
    if (!m_device)
        return;
    const QString text = m_bufferSize->currentText();
    const auto samples = optionValue(text, {48, 64, 96, 128, 192, 256, 512, 1024});
    if (!samples) {
        qDebug() << "未知的音频缓冲区大小选项：" << text;
        return;
    }
    qDebug() << "设置音频缓冲区大小为：" << *samples << "samples";

    quint32 current = 0;
    const bool known = m_device->getBufferSize(current);
    qDebug() << "当前音频缓冲区大小：" << current;
    if (!succeeded(known, getBufferSizeFailed) || current == *samples)
        return;
    if (!capUsbLatency(*samples))
        return;

    if (!succeeded(m_device->stopAudio(), stopFailed)
        || !succeeded(m_device->setBufferSize(*samples), setBufferSizeFailed)
        || !succeeded(m_device->restartAudio(), restartFailed))
        return;
    qDebug() << "音频缓冲区大小设置成功：" << *samples << "samples";
    save("Audio/BufferSize", m_bufferSize);
    qDebug() << "音频缓冲区大小设置已保存：" << text;
}

/// Chooses the largest latency that @p bufferSize (samples) allows where the driver's is above it.
bool Settings::capUsbLatency(quint32 bufferSize)
{
    const quint32 cap = latencyCap(bufferSize);
    qDebug() << "设置USB延迟大小为：" << cap << "Frame";
    quint32 current = 0;
    if (!succeeded(m_device->getUsbLatency(current), getUsbLatencyFailed))
        return false;
    qDebug() << "当前USB延迟大小：" << current;
    if (current > cap)
        m_usbLatency->setCurrentText(QString::number(cap));
    return true;
}

void Settings::onUsbLatencyChanged()
{
    if (!m_device)
        return;
    const QString text = m_usbLatency->currentText();
    const quint32 frames = optionValue(text, {8, 16, 24, 32}).value_or(8);
    qDebug() << "设置USB延迟大小为：" << frames << "Frame";

    // A failing read counts as a latency of 0, so that the change goes on.
    quint32 current = 0;
    m_device->getUsbLatency(current);
    qDebug() << "当前USB延迟大小：" << current;
    if (current == frames)
        return;

    if (!succeeded(m_device->stopAudio(), stopFailed)
        || !succeeded(m_device->setUsbLatency(frames), setUsbLatencyFailed)
        || !succeeded(m_device->restartAudio(), restartFailed))
        return;
    save("USB/LatencySize", m_usbLatency);
    qDebug() << "USB延迟大小设置已保存：" << text;
}

void Settings::onSampleRateChanged()
{
    if (!m_device)
        return;
    if (!succeeded(m_device->stopAudio(), stopFailed))
        return;
    Sleep(enginePause);

    const QString text = m_sampleRate->currentText();
    const auto rate = optionValue(text, {44100, 48000});
    if (!rate) {
        qDebug() << "未知的音频采样率选项：" << text;
        return;
    }
    m_currentSampleRate = *rate;
    qDebug() << "设置音频采样率为：" << *rate << "Hz";
    if (!succeeded(m_device->setSampleRate(*rate), setSampleRateFailed)
        || !succeeded(m_device->setWdmChannelCount(wdmChannels), setChannelsFailed))
        return;
    Sleep(enginePause);
    if (!succeeded(m_device->initAudio(), restartFailed))
        return;

    // Saved without waiting for the cycle: the engine runs at the new rate already.
    cycleOtg([] { qDebug() << "设置采样频率完成"; });
    save("Audio/SampleRate", m_sampleRate);
    qDebug() << "音频采样率设置已保存：" << text;
}

void Settings::onSafeModeChanged()
{
    if (!m_device)
        return;
    if (!succeeded(m_device->stopAudio(), stopFailed))
        return;

    const QString text = m_safeMode->currentText();
    bool done = false;
    if (text == QLatin1String("Enabled")) {
        done = m_device->enableUsbSlowMode();
    } else if (text == QLatin1String("Disabled")) {
        done = m_device->disableUsbSlowMode();
    } else {
        qDebug() << "未知的USB慢速模式选项：" << text;
        return;
    }
    if (!succeeded(done, setSlowModeFailed) || !succeeded(m_device->restartAudio(), restartFailed))
        return;
    save("USB/SlowMode", m_safeMode);
    qDebug() << "USB慢速模式设置已保存：" << text;
}

/// Brings the engine up at 44100 Hz, the rate for which loading the choices changes nothing.
void Settings::startEngine()
{
    if (!succeeded(m_device->stopAudio(), stopFailed))
        return;
    qDebug() << "停止音频成功，开始加载控件状态";
    Sleep(enginePause);
    if (!succeeded(m_device->setSampleRate(m_currentSampleRate), setSampleRateFailed)
        || !succeeded(m_device->setWdmChannelCount(wdmChannels), setChannelsFailed))
        return;
    cycleOtg([this] {
        if (succeeded(m_device->initAudio(), initFailed))
            qDebug() << "设置初始化完成";
    });
}

/// Switches the OTG chip off and on again, each after a pause, then calls @p completed. A chip that
/// does not switch off is left alone, and @p completed is not called.
void Settings::cycleOtg(const std::function<void()> &completed)
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

/// Runs @p step after a pause, unless the connection has been given up by then.
void Settings::after(int milliseconds, const std::function<void()> &step)
{
    auto *timer = new QTimer(this);
    timer->setSingleShot(true);
    connect(timer, &QTimer::timeout, this, [this, timer, step] {
        timer->stop();
        if (m_device)
            step();
    });
    timer->start(milliseconds);
}
