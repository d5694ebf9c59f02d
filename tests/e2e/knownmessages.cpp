#include "knownmessages.h"

#include "logtext.h"

#include <algorithm>

namespace {

// How the lines that a healthy panel writes begin.
const QStringList beginnings{
    "Open device \\\\.\\VesmoraAudioBus",
    // Start-up
    "Vesmora Mixer 已经在运行中。",
    "系统返回的语言代码：",
    "拼接后的路径：",
    "成功加载翻译文件：",
    "未找到任何翻译文件，使用原始文本",
    // Main window
    "Device PID:",
    "Device found with PID:",
    "Unknown device PID:",
    "Failed to get firmware version.",
    "Failed to read firmware version from device.",
    "Adding ",
    "Error reading device PID from driver, error count:",
    "Meter driver handle deleted.",
    "Cleared all widgets from base layout.",
    // Panels
    "Mic Instr Button Clicked",
    "Mic 20dB Button Clicked",
    "Mic 48V Button Clicked",
    "Mic instruction switched for channel 1.",
    "Mic 20dB switched for channel 1.",
    "Mic 48V switched for channel 1.",
    "Mic volume set to:",
    "Monitor Mic set to:",
    "Headphone volume set to:",
    "Headphone Knob value changed:",
    "Headphone Mute Button Clicked: Mute O",
    "Headphone Dim Button Clicked: Dim O",
    "Speaker volume set to:",
    "Speaker Knob value changed:",
    "Speaker Mute Button Clicked: Mute O",
    "OTG to HP volume set to:",
    "OTG to SP volume set to:",
    "控件状态已保存到配置文件",
    "已从配置文件加载控件状态",
    "Failed to read meter data from driver.",
    // Settings and the engine
    "Settings dialog created.",
    "Settings dialog closed and resources cleaned up.",
    "加载控件状态完成",
    "当前音频采样率为：",
    "设置音频缓冲区大小为：",
    "当前音频缓冲区大小：",
    "Buffer size:",
    "设置USB延迟大小为：",
    "当前USB延迟大小：",
    "音频缓冲区大小设置成功：",
    "音频缓冲区大小设置已保存：",
    "USB延迟大小设置已保存：",
    "设置音频采样率为：",
    "音频采样率设置已保存：",
    "设置采样频率完成",
    "USB慢速模式设置已保存：",
    "停止音频成功，开始加载控件状态",
    "设置初始化完成",
    // The link to the ASIO driver
    "Pipe created successfully.",
    "Pipe closed.",
    "ThreadSettingsPip initialized.",
    "ThreadSettingsPip is running waiting Asio Info...",
    "Received data from pipe:",
    "Open Window Signal from ASIO.",
    "Received signal from pipe thread to show settings window.",
    // A listener that is woken up to end has nothing to read.
    "Error connecting to pipe. Error code: 995",
    "No data received from pipe.",
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
