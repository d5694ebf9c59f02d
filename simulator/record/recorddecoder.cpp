#include "recorddecoder.h"

#include "bytes.h"
#include "simcommands.h"
#include "simstatus.h"

#include <bit>
#include <cstring>

namespace {

const std::uint8_t *data(const QByteArray &bytes)
{
    return reinterpret_cast<const std::uint8_t *>(bytes.constData());
}

Record::Kind kindOf(const VesmoraSimEntry &entry)
{
    switch (entry.kind) {
    case VESMORA_SIM_KIND_OPEN:
        return Record::Kind::Open;
    case VESMORA_SIM_KIND_CLOSE:
        return Record::Kind::Close;
    case VESMORA_SIM_KIND_PLUG:
        return Record::Kind::Plug;
    case VESMORA_SIM_KIND_UNPLUG:
        return Record::Kind::Unplug;
    default:
        return Record::Kind::Request;
    }
}

QList<MixerChange> decodeChanges(QByteArrayView payload)
{
    QList<MixerChange> changes;
    const auto count = payload.size() / qsizetype(sizeof(VesmoraSimChange));
    for (qsizetype i = 0; i < count; ++i) {
        VesmoraSimChange change;
        std::memcpy(&change, payload.data() + i * qsizetype(sizeof change), sizeof change);
        changes.append({int(change.index), std::bit_cast<double>(change.value)});
    }
    return changes;
}

void decodePacket(Record &record)
{
    if (record.inputLength != sizeof(CommandPacket))
        return;
    CommandPacket packet;
    std::memcpy(&packet, record.bytes.constData(), sizeof packet);
    record.opcode = packet.opcode;
    const SimPacketCommand *command = packet_command_find(record.code, packet.opcode);
    if (!command)
        return;
    record.command = QString::fromLatin1(command->name);
    if (command->shape == SIM_PLAIN_PACKET)
        return;
    record.channel = packet.channel;
    if (command->shape == SIM_SWITCH_PACKET)
        record.value = packet.argument;
    else
        record.value = static_cast<qint16>(packet.valueLow | packet.valueHigh << 8);
}

void decodeInput(const SimCommand &command, Record &record)
{
    switch (command.action) {
    case SIM_WRITE_VALUE:
        if (record.inputLength == command.inputLength)
            record.value = bytes_u32(data(record.bytes));
        break;
    case SIM_TAKE_PACKET:
    case SIM_ANSWER_VENDOR:
        decodePacket(record);
        break;
    case SIM_TAKE_MIXER:
        if (record.inputLength == command.inputLength)
            record.changes = decodeChanges(std::exchange(record.bytes, {}));
        break;
    default:
        break;
    }
}

void decodeRequest(const VesmoraSimEntry &entry, QByteArrayView payload, Record &record)
{
    record.code = entry.code;
    record.inputLength = entry.inputLength;
    record.outputLength = entry.outputLength;
    record.bytes = payload.toByteArray();
    const SimCommand *command = command_find(entry.code);
    if (!command)
        return;
    record.command = QString::fromLatin1(command->name);
    if (command->action == SIM_READ_VALUE && entry.status == SIM_SUCCESS)
        record.answer = entry.answer;
    decodeInput(*command, record);
}

Record decodeEntry(const VesmoraSimEntry &entry, QByteArrayView payload)
{
    Record record;
    record.number = entry.number;
    record.ms = entry.time;
    record.kind = kindOf(entry);
    record.bus = entry.bus;
    record.handle = entry.handle;
    record.access = entry.access;
    record.share = entry.share;
    record.error = status_to_error(entry.status);
    if (record.kind == Record::Kind::Request)
        decodeRequest(entry, payload, record);
    else if (record.kind == Record::Kind::Plug || record.kind == Record::Kind::Unplug)
        record.value = entry.answer;
    return record;
}

} // namespace

std::optional<RecordPage> decodePage(QByteArrayView page)
{
    VesmoraSimPage head;
    if (page.size() < qsizetype(sizeof head))
        return std::nullopt;
    std::memcpy(&head, page.data(), sizeof head);
    RecordPage result{{}, head.lost};
    qsizetype offset = sizeof head;
    for (quint32 i = 0; i < head.count; ++i) {
        VesmoraSimEntry entry;
        if (page.size() - offset < qsizetype(sizeof entry))
            return std::nullopt;
        std::memcpy(&entry, page.data() + offset, sizeof entry);
        const bool isWhole = entry.size >= sizeof entry && entry.size <= page.size() - offset
            && entry.payloadLength <= entry.size - sizeof entry;
        if (!isWhole)
            return std::nullopt;
        result.records.append(
            decodeEntry(entry, page.sliced(offset + qsizetype(sizeof entry), entry.payloadLength)));
        offset += entry.size;
    }
    return result;
}

std::optional<CommandKey> findCommand(QStringView name)
{
    if (name == QLatin1String("open"))
        return CommandKey{VESMORA_SIM_OPEN_CODE, VESMORA_SIM_ANY_OPCODE};
    for (quint32 i = 0; i < sim_packet_command_count; ++i) {
        const SimPacketCommand &command = sim_packet_commands[i];
        if (name == QLatin1String(command.name))
            return CommandKey{command.code, command.opcode};
    }
    for (quint32 i = 0; i < sim_command_count; ++i) {
        if (name == QLatin1String(sim_commands[i].name))
            return CommandKey{sim_commands[i].code, VESMORA_SIM_ANY_OPCODE};
    }
    return std::nullopt;
}
