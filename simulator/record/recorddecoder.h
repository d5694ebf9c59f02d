#ifndef RECORDDECODER_H
#define RECORDDECODER_H

#include "controlprotocol.h"
#include "record.h"

#include <QByteArrayView>

/// The entries of one page of VESMORA_SIM_READ_RECORD.
struct RecordPage {
    QList<Record> records;
    quint32 lost = 0;
};

/// Nothing when the page is no whole page.
std::optional<RecordPage> decodePage(QByteArrayView page);

/// A command's control code, and its opcode or VESMORA_SIM_ANY_OPCODE.
struct CommandKey {
    quint32 code;
    quint32 opcode;
};

/// Looks up a method of the control panel ("setMic48V", "stopAudio"...), "sendPacket" and
/// "vendorRequest" for all opcodes at once, or "open".
std::optional<CommandKey> findCommand(QStringView name);

#endif
