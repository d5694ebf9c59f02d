#ifndef MIXERMODEL_H
#define MIXERMODEL_H

#include <QList>
#include <QStringList>

/// A knob of a panel. In its texts, "{db}" stands for its value, "{half}" for that in half decibels
/// and "{gain}" for the linear gain.
struct KnobModel {
    const char *name = "";
    int place = 0; ///< in PanelPicture's order
    QString key;
    int minimum = 0;
    int maximum = 0;
    int stored = 0; ///< what the tests begin with
    QString sends;
    QStringList logs;

    /// What the interface gets when the value goes from one to another.
    QString sent(int from, int to) const;
    QStringList logged(int db) const;
};

/// A button of a panel that is off, with its knob at the value that the tests begin with.
struct ButtonModel {
    const char *name = "";
    int place = 0; ///< in PanelPicture's order
    QString key;
    QString sendsOn;
    QString sendsOff;
    QStringList logsOn;
    QStringList logsOff;
};

/// The gain of microphone input @p channel, from 0 dB.
KnobModel gainKnob(const char *name, int place, const QString &key, int maximum, int channel);
/// The pad of microphone input @p channel.
ButtonModel padButton(const char *name, int place, const QString &key, int channel);
/// The phantom power of microphone input @p channel.
ButtonModel phantomButton(const char *name, int place, const QString &key, int channel);
/// The direct monitoring through @p entries of the matrix, "(row,column)".
ButtonModel monitorButton(const char *name, int place, const QString &key,
                          const QStringList &entries);

// Peaks of the meter record, of which the largest is 0 dB.
inline constexpr qint32 minus20Db = 214748365;
inline constexpr qint32 minus6Db = 1073741824;

/// Levels of the interface, and the knobs (by their places) beside which the panel shows them.
struct LevelModel {
    QList<qint32> levels;
    QList<int> knobs;
};

/// A state that the interface gets at once, and how it is shown.
struct StateModel {
    QStringList entries; ///< of the INI file, "Section/Key=Value"
    QStringList sent;
};

/// What the tests know of a model.
struct MixerModel {
    QString name; ///< as the simulator calls it; also its INI file's name
    QList<KnobModel> knobs;
    QList<ButtonModel> buttons;
    /// Of a first start; the entries in the order of their writing.
    StateModel first;
    /// Stored values of every key, in no order of anybody's, some beyond what a knob can have.
    QStringList beyond;
    /// What becomes of them; the entries in the order in which they were stored.
    StateModel clamped;
    /// Which buttons (by their places) are pressed by hand, and how far each knob is then turned.
    QList<int> pressed;
    QList<int> notches;
    /// What a panel sends that is plugged in again after that.
    QStringList replayed;
    QList<LevelModel> levels;

    QString file() const { return name + QStringLiteral(".ini"); }
};

/// A linear gain as the record writes it.
QString gainText(int db);
/// Entries of the matrix at unity, down a diagonal, as the record writes them.
QString diagonal(int row, int column, int length);
/// The first mixer block of a panel against the silent one of a device that was just plugged in:
/// @p inputs are the entries that differ in rows 64 to 69, @p pairs the rows of the stereo pairs.
QString firstBlock(const QString &inputs, const QList<int> &pairs);
/// A mixer block that changes nothing.
inline const QString sameBlock = QStringLiteral("sendMixerBlock");

#endif
