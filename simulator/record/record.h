#ifndef RECORD_H
#define RECORD_H

#include <QByteArray>
#include <QJsonObject>
#include <QList>
#include <QString>

#include <optional>

/// An entry of the mixer block that a request changes. A gain of an output has no row and column.
struct MixerChange {
    int index = 0; ///< flat, among all doubles of the block
    double value = 0.0;

    bool isOutputGain() const;
    int outputGain() const; ///< 0 for the first output gain
    int row() const;
    int column() const;
};

/// One thing that happened to the simulated interface, decoded.
struct Record {
    enum class Kind {
        Open,
        Close,
        Request,
        Plug,
        Unplug,
        Lost ///< stands at the end for `value` entries that the record had no room for
    };

    quint32 number = 0; ///< from 1, since the record was last cleared
    quint32 ms = 0;     ///< since the simulator began
    Kind kind = Kind::Request;
    quint32 bus = 0;
    quint32 handle = 0; ///< from 1, in the order of opening; 0 for none
    quint32 access = 0; ///< opens only; 0 where it is not known
    quint32 share = 0;  ///< opens only
    quint32 code = 0;
    QString command; ///< the control panel's method that sends it; empty for an unknown code
    std::optional<quint32> opcode;  ///< packets only
    std::optional<quint32> channel; ///< packets that carry one
    std::optional<qint64> value;    ///< what the request carries: a number, a volume, a state
    std::optional<quint32> answer;  ///< what a successful read returned
    quint32 inputLength = 0;
    quint32 outputLength = 0;
    QByteArray bytes; ///< the input, up to VESMORA_SIM_LONGEST_INPUT; empty for a mixer block
    QList<MixerChange> changes; ///< mixer blocks only
    quint32 error = 0;          ///< Win32

    /// The canonical short line, e.g. "setOutVolume 1 100", "setBufferSize 192",
    /// "sendMixerBlock (64,0)=1 gain[0]=0.1", "getDevicePid !1167", "open", "plug 1 0" (identifier
    /// and bus), "unplug", "lost 3".
    QString text() const;

    /// Everything, with field names for people.
    QJsonObject toJson() const;
};

#endif
