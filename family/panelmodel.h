#ifndef PANELMODEL_H
#define PANELMODEL_H

#include <QList>
#include <QString>

/// A knob or button of a panel, as it ought to be.
struct PanelControl {
    /// The knobs come first.
    enum class Kind { Gain, Volume, Phone, Instrument, Pad, Phantom, Monitor, Mute, Dim };

    /// What it logs; ExpectedPanel fills in the words in braces. Empty for nothing.
    struct Log {
        QString before{}; ///< first of all
        QString success{};
        QString failure{};
        QString after{}; ///< when all is done but the saving
    };

    QString name; ///< of its object; it is saved under it
    Kind kind;
    int place; ///< in the panel's picture, among the knobs or among the buttons
    QString command = "sendMixerBlock"; ///< the request that it sends
    int channel = 0;                    ///< of a microphone, 1-based
    QString output{};                   ///< the name of the volume that it sets
    QList<int> entries{};               ///< of the mixer block
    QList<int> levels{};                ///< of the meter record, whose mean stands beside the knob
    int minimum = 0;
    int maximum = 1;
    int initial = 0;               ///< when nothing is saved
    bool mutesFromSilence = false; ///< calls the volume with -80 dB, not with the knob's value
    Log log{};

    bool isKnob() const { return kind <= Kind::Phone; }
    /// Where it is saved, e.g. "Dial/MicValue".
    QString key() const;
    /// Its value as the INI file holds it.
    QString saved(int value) const;
};

/// A model of the family and its panel, as they ought to be.
struct PanelModel {
    QString name;              ///< as the simulator calls it, e.g. "rx1"; also its panel's class
    QList<int> outputChannels; ///< that are opened at first
    QList<int> fixedRoutes;    ///< mixer entries at unity that no control writes
    bool logsSaving = false;
    QList<PanelControl> controls; ///< in the order of their replay

    /// What its devices answer when they are asked what they are.
    quint32 identifier() const;
    /// How its window's title begins; the firmware follows.
    QString title() const { return "Vesmora " + name.toUpper() + " - FW: "; }
    /// The name of its INI file.
    QString file() const { return name + ".ini"; }
    /// What the window logs when it shows the panel.
    QString layoutLog() const { return "Adding " + name + " widget to layout."; }
    /// What the panel logs when it cannot open the device.
    QString createFailure() const { return "Failed to create device in " + name + '.'; }

    /// Fatal when there is no such control.
    const PanelControl &control(const QString &name) const;
    /// In the order of the panel's picture: column by column, each from the top.
    QList<PanelControl> knobs() const { return inPicture(true); }
    QList<PanelControl> buttons() const { return inPicture(false); }
    /// The mixer block that a panel starts with, before any control writes to it.
    QList<double> initialBlock() const;

private:
    QList<PanelControl> inPicture(bool knobs) const;
};

/// All of them.
const QList<PanelModel> &allPanelModels();
/// The model of that name; fatal when there is none.
const PanelModel &panelModel(const QString &name);

/// The linear gain of @p db, where the bottom of a volume's range and all below it is silence.
double gainOf(int db);

#endif
