#include "simulatorstate.h"

#include <QJsonArray>

SimulatorState SimulatorState::fromRaw(const VesmoraSimState &raw)
{
    SimulatorState state;
    state.plugged = raw.plugged != 0;
    state.bus = raw.bus;
    state.identifier = raw.values[VESMORA_SIM_IDENTIFIER];
    state.sampleRate = raw.values[VESMORA_SIM_SAMPLE_RATE];
    state.bufferSize = raw.values[VESMORA_SIM_BUFFER_SIZE];
    state.usbLatency = raw.values[VESMORA_SIM_USB_LATENCY];
    state.wdmChannels = raw.values[VESMORA_SIM_WDM_CHANNELS];
    state.slowMode = raw.values[VESMORA_SIM_SLOW_MODE] != 0;
    state.engineRunning = raw.values[VESMORA_SIM_ENGINE] != 0;
    state.otg = raw.values[VESMORA_SIM_OTG] != 0;
    state.firmware = QByteArray(reinterpret_cast<const char *>(raw.firmware), sizeof raw.firmware);
    for (const CommandPacket &packet : raw.packets) {
        if (packet.kind != 0)
            state.packets.append({reinterpret_cast<const char *>(&packet), sizeof packet});
    }
    state.openHandles = raw.openHandles;
    state.recordEntries = raw.entries;
    state.recordLost = raw.lost;
    state.faults = raw.faults;
    state.delays = raw.delays;
    return state;
}

QJsonObject SimulatorState::toJson() const
{
    const auto number = [](quint32 value) { return QJsonValue(static_cast<qint64>(value)); };
    QJsonArray packetTexts;
    for (const QByteArray &packet : packets)
        packetTexts.append(QString::fromLatin1(packet.toHex()));
    return {{QStringLiteral("plugged"), plugged},
            {QStringLiteral("bus"), number(bus)},
            {QStringLiteral("identifier"), number(identifier)},
            {QStringLiteral("sampleRate"), number(sampleRate)},
            {QStringLiteral("bufferSize"), number(bufferSize)},
            {QStringLiteral("usbLatency"), number(usbLatency)},
            {QStringLiteral("wdmChannels"), number(wdmChannels)},
            {QStringLiteral("slowMode"), slowMode},
            {QStringLiteral("engineRunning"), engineRunning},
            {QStringLiteral("otg"), otg},
            {QStringLiteral("firmware"), QString::fromLatin1(firmware)},
            {QStringLiteral("packets"), packetTexts},
            {QStringLiteral("openHandles"), number(openHandles)},
            {QStringLiteral("recordEntries"), number(recordEntries)},
            {QStringLiteral("recordLost"), number(recordLost)},
            {QStringLiteral("faults"), number(faults)},
            {QStringLiteral("delays"), number(delays)}};
}
