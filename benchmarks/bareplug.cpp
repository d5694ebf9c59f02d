#include "bareplug.h"

#include "vesmoracontract.h"

#include <QDebug>
#include <QSet>

#include <algorithm>
#include <iostream>

namespace {

constexpr DWORD enginePause = 100; // milliseconds

} // namespace

BarePlug::BarePlug(const PanelModel &model, const Trace &product, const QString &engineFile,
                   const QString &panelFile)
    : m_product(product)
    , m_engineFile(engineFile, QSettings::IniFormat)
    , m_panelFile(panelFile)
    , m_block(sizeof(MixerBlock) / sizeof(double))
{
    const QSettings saved(panelFile, QSettings::IniFormat);
    const auto save = [&](const PanelControl &control) {
        const QVariant value = saved.value(control.key());
        m_saves.append(
            {control.key(), control.isKnob() ? QVariant(value.toInt()) : QVariant(value.toBool())});
    };
    for (const PanelControl &control : model.controls) {
        m_keys.append(control.key());
        // A volume is saved with whatever acts on it.
        if (!control.output.isEmpty())
            save(model.control(control.output));
        if (control.output != control.name)
            save(control);
    }
    QSet<quint32> opened;
    for (const Record &record : product.records) {
        if (record.kind == Record::Kind::Open)
            opened.insert(record.handle);
        else if (!opened.contains(record.handle))
            m_earlierHandle = record.handle;
    }
}

void BarePlug::prepare()
{
    m_handles.insert(m_earlierHandle, openDevice());
}

void BarePlug::run()
{
    for (const Record &record : m_product.records)
        ask(record);
    for (const QString &line : m_product.log)
        qDebug().noquote() << line;
    Sleep(enginePause);

    for (const char *key :
         {"USB/LatencySize", "Audio/BufferSize", "USB/SlowMode", "Audio/SampleRate"})
        m_engineFile.value(QLatin1String(key));
    QSettings panelFile(m_panelFile, QSettings::IniFormat);
    for (const QString &key : std::as_const(m_keys))
        panelFile.value(key);
    for (const auto &[key, value] : std::as_const(m_saves)) {
        panelFile.setValue(key, value);
        panelFile.sync();
    }
}

void BarePlug::release()
{
    for (const HANDLE handle : std::as_const(m_handles))
        CloseHandle(handle);
    m_handles.clear();
    std::fill(m_block.begin(), m_block.end(), 0.0);
}

HANDLE BarePlug::openDevice()
{
    const HANDLE device =
        CreateFileW(L"\\\\.\\" VESMORA_BUS_NAME "0", GENERIC_READ | GENERIC_WRITE,
                    FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr, OPEN_EXISTING, 0, nullptr);
    std::wcout << L"Open device " << L"\\\\.\\" VESMORA_BUS_NAME "0" << L" success!" << std::endl;
    return device;
}

void BarePlug::ask(const Record &record)
{
    switch (record.kind) {
    case Record::Kind::Open:
        m_handles.insert(record.handle, openDevice());
        break;
    case Record::Kind::Close:
        CloseHandle(m_handles.take(record.handle));
        break;
    default:
        request(record);
    }
}

void BarePlug::request(const Record &record)
{
    // Of a block, the record has what changes.
    for (const MixerChange &change : record.changes)
        m_block[static_cast<std::size_t>(change.index)] = change.value;
    const void *input = record.bytes.isEmpty() ? static_cast<const void *>(m_block.data())
                                               : record.bytes.constData();
    std::uint8_t output[sizeof(VendorReply)];
    DWORD returned = 0;
    DeviceIoControl(m_handles.value(record.handle), record.code, const_cast<void *>(input),
                    record.inputLength, output, record.outputLength, &returned, nullptr);
}
