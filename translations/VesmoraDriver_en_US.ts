<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="en_US" sourcelanguage="zh_CN">
<context>
    <name>MainWindow</name>
    <message>
        <source>声卡未连接！</source>
        <translation>Sound card not connected!</translation>
    </message>
</context>
<context>
    <name>Settings</name>
    <message>
        <source>Buffer Size</source>
        <translation>Buffer Size</translation>
    </message>
    <message>
        <source>USB Latency Size</source>
        <translation>USB Latency Size</translation>
    </message>
    <message>
        <source>Samplerate</source>
        <translation>Samplerate</translation>
    </message>
    <message>
        <source>Safe Mode</source>
        <translation>Safe Mode</translation>
    </message>
    <message>
        <source>Settings</source>
        <translation>Settings</translation>
    </message>
</context>
<context>
    <name>TrayIcon</name>
    <message>
        <source>Main Window</source>
        <translation>Main Window</translation>
    </message>
    <message>
        <source>Setup</source>
        <translation>Setup</translation>
    </message>
    <message>
        <source>Quit</source>
        <translation>Quit</translation>
    </message>
    <message>
        <source>Upgrade Firmware</source>
        <translation>Upgrade Firmware</translation>
    </message>
    <message>
        <source>Win Sound Pannel</source>
        <translation>Win Sound Pannel</translation>
    </message>
    <message>
        <source>Refresh Audio Device</source>
        <translation>Refresh Audio Device</translation>
    </message>
</context>
<context>
    <name>rm</name>
    <message>
        <source>MIC</source>
        <translation>MIC</translation>
    </message>
    <message>
        <source>Gain</source>
        <translation>Gain</translation>
    </message>
    <message>
        <source>DIRECT</source>
        <translation>DIRECT</translation>
    </message>
    <message>
        <source>Volume</source>
        <translation>Volume</translation>
    </message>
</context>
<context>
    <name>rx1</name>
    <message>
        <source>INPUT</source>
        <translation>INPUT</translation>
    </message>
    <message>
        <source>Gain</source>
        <translation>Gain</translation>
    </message>
    <message>
        <source>MIC</source>
        <translation>MIC</translation>
    </message>
    <message>
        <source>DIRECT</source>
        <translation>DIRECT</translation>
    </message>
    <message>
        <source>HEADPHONE</source>
        <translation>HEADPHONE</translation>
    </message>
    <message>
        <source>Volume</source>
        <translation>Volume</translation>
    </message>
    <message>
        <source>Phone To HP Volume</source>
        <translation>Phone To HP Volume</translation>
    </message>
    <message>
        <source>INST</source>
        <translation>INST</translation>
    </message>
</context>
<context>
    <name>rx2</name>
    <message>
        <source>MIC1</source>
        <translation>MIC1</translation>
    </message>
    <message>
        <source>MIC2</source>
        <translation>MIC2</translation>
    </message>
    <message>
        <source>Gain</source>
        <translation>Gain</translation>
    </message>
    <message>
        <source>DIRECT</source>
        <translation>DIRECT</translation>
    </message>
    <message>
        <source>SPEAKER</source>
        <translation>SPEAKER</translation>
    </message>
    <message>
        <source>Volume</source>
        <translation>Volume</translation>
    </message>
    <message>
        <source>Phone To SP Volume</source>
        <translation>Phone To SP Volume</translation>
    </message>
    <message>
        <source>HEADPHONE</source>
        <translation>HEADPHONE</translation>
    </message>
    <message>
        <source>Phone To HP Volume</source>
        <translation>Phone To HP Volume</translation>
    </message>
</context>
</TS>
