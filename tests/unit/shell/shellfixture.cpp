#include "shellfixture.h"

#include "listenerlog.h"
#include "models.h"

#include <QTest>

#include <iostream>
#include <vector>

ShellFixture::ShellFixture()
{
    // Every look for a device says there what it tried; nobody reads it here.
    std::wcout.setstate(std::ios_base::failbit);
}

QStringList ShellFixture::on(int connection, const QStringList &requests)
{
    QStringList lines;
    for (const QString &request : requests)
        lines << QString("%1 %2").arg(connection).arg(request);
    return lines;
}

void ShellFixture::plug(quint32 model)
{
    Observed::plug(model);
    m_connections.clear();
}

QStringList ShellFixture::takeTraffic()
{
    QStringList lines;
    const QList<Record> records = takeRecord();
    for (const Record &record : records) {
        if (record.code == VESMORA_READ_METER_DATA)
            continue;
        if (record.handle == 0) {
            lines << record.text();
            continue;
        }
        if (!m_connections.contains(record.handle))
            m_connections.insert(record.handle, m_connections.size() + 1);
        lines << QString("%1 %2").arg(m_connections.value(record.handle)).arg(record.text());
    }
    return lines;
}

QList<ShellFixture::PanelStart> ShellFixture::panelStarts(quint32 model, int count)
{
    const DeviceModel *found = findModel(model);
    if (!found)
        qFatal("The product knows no model %u", model);
    plug(model);
    QList<PanelStart> starts;
    std::vector<std::unique_ptr<QWidget>> panels;
    for (int i = 0; i < count; ++i) {
        panels.emplace_back(found->createPanel());
        starts.append({takeLog(), takeSent()});
    }
    panels.clear();
    unplug();
    emptyDataFolder();
    takeLog();
    return starts;
}

QStringList ShellFixture::firstEngineLog()
{
    return QStringList{"设置音频缓冲区大小为： 192 samples",
                       "Buffer size: (address)",
                       "当前音频缓冲区大小： 256",
                       "设置USB延迟大小为： 24 Frame",
                       "当前USB延迟大小： 8",
                       "音频缓冲区大小设置成功： 192 samples",
                       "音频缓冲区大小设置已保存： \"192\""}
    + laterEngineLog();
}

QStringList ShellFixture::firstEngineRequests()
{
    return QStringList{"getBufferSize", "getUsbLatency", "stopAudio", "setBufferSize 192",
                       "restartAudio"}
    + laterEngineRequests();
}

QStringList ShellFixture::laterEngineLog()
{
    return {"已从配置文件加载控件状态", "加载控件状态完成", "当前音频采样率为： 44100",
            "停止音频成功，开始加载控件状态"};
}

QStringList ShellFixture::laterEngineRequests()
{
    return {"getSampleRate", "stopAudio", "setSampleRate 44100", "setWdmChannelCount 4"};
}

void ShellFixture::deleteDeferred()
{
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

void ShellFixture::init()
{
    observe();
    m_settings = std::make_unique<Settings>();
    // The dialog's listening thread has then said all it says by itself.
    QTRY_VERIFY_WITH_TIMEOUT(hasLogged(listenerlog::waiting), patience);
    takeLog();
    takeRecord();
    m_connections.clear();
}

void ShellFixture::cleanup()
{
    m_settings.reset();
    stopObserving();
}
