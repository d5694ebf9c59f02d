<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="zh_CN" sourcelanguage="zh_CN">
<context>
    <name>MainWindow</name>
    <message>
        <source>声卡未连接！</source>
        <translation>声卡未连接！</translation>
    </message>
</context>
<context>
    <name>Settings</name>
    <message>
        <source>Buffer Size</source>
        <translation>缓冲区大小</translation>
    </message>
    <message>
        <source>USB Latency Size</source>
        <translation>USB 延迟</translation>
    </message>
    <message>
        <source>Samplerate</source>
        <translation>采样率</translation>
    </message>
    <message>
        <source>Safe Mode</source>
        <translation>安全模式</translation>
    </message>
    <message>
        <source>Settings</source>
        <translation>设置</translation>
    </message>
</context>
<context>
    <name>TrayIcon</name>
    <message>
        <source>Main Window</source>
        <translation>主窗口</translation>
    </message>
    <message>
        <source>Setup</source>
        <translation>设置</translation>
    </message>
    <message>
        <source>Quit</source>
        <translation>退出</translation>
    </message>
    <message>
        <source>Upgrade Firmware</source>
        <translation>升级固件</translation>
    </message>
    <message>
        <source>Win Sound Pannel</source>
        <translation>Windows 声音面板</translation>
    </message>
    <message>
        <source>Refresh Audio Device</source>
        <translation>刷新音频设备</translation>
    </message>
</context>
<context>
    <name>rm</name>
    <message>
        <source>MIC</source>
        <translation>话筒</translation>
    </message>
    <message>
        <source>Gain</source>
        <translation>增益</translation>
    </message>
    <message>
        <source>DIRECT</source>
        <translation>直接监听</translation>
    </message>
    <message>
        <source>Volume</source>
        <translation>音量</translation>
    </message>
</context>
<context>
    <name>rx1</name>
    <message>
        <source>INPUT</source>
        <translation>输入</translation>
    </message>
    <message>
        <source>Gain</source>
        <translation>增益</translation>
    </message>
    <message>
        <source>MIC</source>
        <translation>话筒</translation>
    </message>
    <message>
        <source>DIRECT</source>
        <translation>直接监听</translation>
    </message>
    <message>
        <source>HEADPHONE</source>
        <translation>耳机</translation>
    </message>
    <message>
        <source>Volume</source>
        <translation>音量</translation>
    </message>
    <message>
        <source>Phone To HP Volume</source>
        <translation>手机到耳机音量</translation>
    </message>
    <message>
        <source>INST</source>
        <translation>乐器</translation>
    </message>
</context>
<context>
    <name>rx2</name>
    <message>
        <source>MIC1</source>
        <translation>话筒 1</translation>
    </message>
    <message>
        <source>MIC2</source>
        <translation>话筒 2</translation>
    </message>
    <message>
        <source>Gain</source>
        <translation>增益</translation>
    </message>
    <message>
        <source>DIRECT</source>
        <translation>直接监听</translation>
    </message>
    <message>
        <source>SPEAKER</source>
        <translation>音箱</translation>
    </message>
    <message>
        <source>Volume</source>
        <translation>音量</translation>
    </message>
    <message>
        <source>Phone To SP Volume</source>
        <translation>手机到音箱音量</translation>
    </message>
    <message>
        <source>HEADPHONE</source>
        <translation>耳机</translation>
    </message>
    <message>
        <source>Phone To HP Volume</source>
        <translation>手机到耳机音量</translation>
    </message>
</context>
</TS>
