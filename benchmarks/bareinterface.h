#ifndef BAREINTERFACE_H
#define BAREINTERFACE_H

#include "vesmoracontract.h"

#include <QSettings>

#include <windows.h>

/// A connection to the audio interface and a settings file, and nothing in between: of this the
/// floors are made.
class BareInterface
{
public:
    /// Opens the first device and a file of the data folder.
    explicit BareInterface(const QString &file);
    ~BareInterface();
    BareInterface(const BareInterface &) = delete;
    BareInterface &operator=(const BareInterface &) = delete;

    void send(const MixerBlock &block) const
    {
        request(VESMORA_SEND_MIXER_BLOCK, &block, sizeof block);
    }
    void send(const CommandPacket &packet) const
    {
        request(VESMORA_SEND_PACKET, &packet, sizeof packet);
    }
    void save(const QString &key, const QVariant &value)
    {
        m_file.setValue(key, value);
        m_file.sync();
    }

private:
    void request(DWORD code, const void *input, DWORD length) const
    {
        DWORD returned = 0;
        DeviceIoControl(m_device, code, const_cast<void *>(input), length, nullptr, 0, &returned,
                        nullptr);
    }

    HANDLE m_device;
    QSettings m_file;
};

#endif
