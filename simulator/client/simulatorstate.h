#ifndef SIMULATORSTATE_H
#define SIMULATORSTATE_H

#include "controlprotocol.h"

#include <QByteArray>
#include <QJsonObject>
#include <QList>

/// A look at the simulated interface.
struct SimulatorState {
    bool plugged = false;
    quint32 bus = 0;        ///< of what is plugged in, or was last
    quint32 identifier = 0; ///< 0 when nothing is plugged in
    quint32 sampleRate = 0; ///< Hz
    quint32 bufferSize = 0; ///< samples
    quint32 usbLatency = 0; ///< USB frames
    quint32 wdmChannels = 0;
    bool slowMode = false;
    bool engineRunning = false;
    bool otg = false;
    QByteArray firmware;       ///< 10 bytes
    QList<QByteArray> packets; ///< the last one taken of each opcode since plugging in
    quint32 openHandles = 0;   ///< also of a device that was unplugged
    quint32 recordEntries = 0;
    quint32 recordLost = 0;
    quint32 faults = 0; ///< rules not used up yet
    quint32 delays = 0;

    static SimulatorState fromRaw(const VesmoraSimState &raw);
    QJsonObject toJson() const;
};

#endif
