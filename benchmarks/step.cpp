#include "figures.h"

#include "livepanel.h"
#include "vesmoraiocontrol.h"
#include "wheel.h"

#include <QDebug>

namespace {

void measureVolume(const Effort &effort, LivePanel &panel)
{
    Wheel wheel(panel.knob("Headphone"));
    BareInterface &bare = panel.bare();
    const QString key = QStringLiteral("Dial/HeadphoneValue");
    MixerBlock block = panel.deviceBlock();
    int db = LivePanel::volume;
    const auto floor = [&](bool logs) {
        db = db == LivePanel::volume ? db + 1 : db - 1;
        block.outputGains[0] = block.outputGains[1] = VesmoraIoControl::dbToGain(db);
        bare.send(block);
        if (logs)
            qDebug() << "Headphone volume set to:" << block.outputGains[0];
        bare.save(key, db);
    };
    panel.compareEvent(
        QStringLiteral("step of a volume"), effort, [&] { wheel.turn(); }, floor);
}

void measureGain(const Effort &effort, LivePanel &panel)
{
    Wheel wheel(panel.knob("Mic"));
    BareInterface &bare = panel.bare();
    const QString key = QStringLiteral("Dial/MicValue");
    CommandPacket packet{};
    packet.kind = VESMORA_PACKET_KIND;
    packet.opcode = VESMORA_OPCODE_MIC_VOLUME;
    packet.argument = VESMORA_VOLUME_VALUE_LENGTH;
    packet.channel = 1;
    int db = LivePanel::gain;
    const auto floor = [&](bool logs) {
        db = db == LivePanel::gain ? db + 1 : db - 1;
        packet.valueLow = static_cast<uint8_t>(2 * db);
        bare.send(packet);
        if (logs)
            qDebug() << "Mic volume set to:" << db;
        bare.save(key, db);
    };
    panel.compareEvent(
        QStringLiteral("step of a gain"), effort, [&] { wheel.turn(); }, floor);
}

} // namespace

void measureStep(const Effort &effort)
{
    LivePanel panel;
    measureVolume(effort, panel);
    measureGain(effort, panel);
}
