#include "knownmessages.h"

#include "logtext.h"

#include <algorithm>

namespace {

// How the lines that a healthy panel writes begin.
const QStringList beginnings{
    QStringLiteral("Open device \\\\.\\VesmoraAudioBus"),
    // Start-up
    QStringLiteral("Vesmora Mixer 已经在运行中。"),
    QStringLiteral("系统返回的语言代码："),
    QStringLiteral("拼接后的路径："),
    QStringLiteral("成功加载翻译文件："),
    QStringLiteral("未找到任何翻译文件，使用原始文本"),
    // Main window
    QStringLiteral("Device PID:"),
    QStringLiteral("Device found with PID:"),
    QStringLiteral("Unknown device PID:"),
    QStringLiteral("Failed to get firmware version."),
    QStringLiteral("Failed to read firmware version from device."),
    QStringLiteral("Adding "),
    QStringLiteral("Error reading device PID from driver, error count:"),
    QStringLiteral("Meter driver handle deleted."),
    QStringLiteral("Cleared all widgets from base layout."),
    // Panels
    QStringLiteral("Mic Instr Button Clicked"),
    QStringLiteral("Mic 20dB Button Clicked"),
    QStringLiteral("Mic 48V Button Clicked"),
    QStringLiteral("Mic instruction switched for channel 1."),
    QStringLiteral("Mic 20dB switched for channel 1."),
    QStringLiteral("Mic 48V switched for channel 1."),
    QStringLiteral("Mic volume set to:"),
    QStringLiteral("Monitor Mic set to:"),
    QStringLiteral("Headphone volume set to:"),
    QStringLiteral("Headphone Knob value changed:"),
    QStringLiteral("Headphone Mute Button Clicked: Mute O"),
    QStringLiteral("Headphone Dim Button Clicked: Dim O"),
    QStringLiteral("Speaker volume set to:"),
    QStringLiteral("Speaker Knob value changed:"),
    QStringLiteral("Speaker Mute Button Clicked: Mute O"),
    QStringLiteral("OTG to HP volume set to:"),
    QStringLiteral("OTG to SP volume set to:"),
    QStringLiteral("控件状态已保存到配置文件"),
    QStringLiteral("已从配置文件加载控件状态"),
    QStringLiteral("Failed to read meter data from driver."),
    // Settings and the engine
    QStringLiteral("Settings dialog created."),
    QStringLiteral("Settings dialog closed and resources cleaned up."),
    QStringLiteral("加载控件状态完成"),
    QStringLiteral("当前音频采样率为："),
    QStringLiteral("设置音频缓冲区大小为："),
    QStringLiteral("当前音频缓冲区大小："),
    QStringLiteral("Buffer size:"),
    QStringLiteral("设置USB延迟大小为："),
    QStringLiteral("当前USB延迟大小："),
    QStringLiteral("音频缓冲区大小设置成功："),
    QStringLiteral("音频缓冲区大小设置已保存："),
    QStringLiteral("USB延迟大小设置已保存："),
    QStringLiteral("设置音频采样率为："),
    QStringLiteral("音频采样率设置已保存："),
    QStringLiteral("设置采样频率完成"),
    QStringLiteral("USB慢速模式设置已保存："),
    QStringLiteral("停止音频成功，开始加载控件状态"),
    QStringLiteral("设置初始化完成"),
    // The link to the ASIO driver
    QStringLiteral("Pipe created successfully."),
    QStringLiteral("Pipe closed."),
    QStringLiteral("ThreadSettingsPip initialized."),
    QStringLiteral("ThreadSettingsPip is running waiting Asio Info..."),
    QStringLiteral("Received data from pipe:"),
    QStringLiteral("Open Window Signal from ASIO."),
    QStringLiteral("Received signal from pipe thread to show settings window."),
    // A listener that is woken up to end has nothing to read.
    QStringLiteral("Error connecting to pipe. Error code: 995"),
    QStringLiteral("No data received from pipe."),
};

bool isKnown(const QString &line)
{
    return std::any_of(beginnings.cbegin(), beginnings.cend(),
                       [&](const QString &beginning) { return line.startsWith(beginning); });
}

} // namespace

QStringList panelMessages(QStringList lines)
{
    lines.removeAll(QString());
    return withoutPlatformRemarks(lines);
}

QStringList unknownMessages(QStringList lines)
{
    lines = panelMessages(lines);
    lines.removeIf(isKnown);
    return lines;
}
