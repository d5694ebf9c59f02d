#ifndef LEVELMETERS_H
#define LEVELMETERS_H

#include "vesmoracontract.h"

#include <QList>
#include <QString>

class QLabel;
class VesmoraIoControl;

/// The level readouts of one panel: labels whose text is the level of a field of the meter record.
class LevelMeters
{
public:
    enum Source {
        Input1,     ///< level 0
        Input2,     ///< level 1
        PhoneInput, ///< mean of levels 2 and 3
    };

    /// Has @p label show @p source from the next refresh on. The label must outlive the meters'
    /// use.
    void add(QLabel *label, Source source);

    /// Reads the record and rewrites every label. On failure logs it and leaves the texts alone.
    void refresh(VesmoraIoControl &device);

    /// A signed peak as text in dBFS with one decimal, e.g. "-20.0 dB"; "-inf dB" for silence.
    static QString text(qint32 peak);

    /// The sum of two peaks, wrapping at 32 bits, divided by two towards zero.
    static qint32 mean(qint32 left, qint32 right);

private:
    qint32 level(Source source) const;

    struct Meter {
        QLabel *label;
        Source source;
    };

    MeterRecord m_record{};
    QList<Meter> m_meters;
};

#endif
