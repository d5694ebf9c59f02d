#ifndef EXPECTEDPANEL_H
#define EXPECTEDPANEL_H

#include "panelmodel.h"

#include <QMap>
#include <QStringList>

/// What a panel and the device behind it ought to do, without widgets: the requests with the mixer
/// entries each changes, the log and the saved values that follow from actions and failures.
class ExpectedPanel
{
public:
    enum class Action { Gain, Instrument, Pad, Phantom, Monitor, Volume, Mute, Dim, Phone };

    struct Control {
        QString name;
        Action action;
        int channel = 0;      ///< of a microphone, 1-based
        QString output{};     ///< "Headphone" or "Speaker", of what belongs to one
        QList<int> entries{}; ///< of the mixer block
        int initialDb = 0;    ///< when nothing is saved
        int minimumDb = 0;
        int maximumDb = 0;

        bool isKnob() const;
        /// The request that it sends.
        QString command() const;
        /// Where it is saved, e.g. "Dial/MicValue".
        QString key() const;
    };

    explicit ExpectedPanel(PanelModel model);

    /// In the order of their replay.
    const QList<Control> &controls() const { return m_controls; }
    /// The names of the requests that construction sends, in order.
    QStringList constructionCommands() const;
    /// Construction without saved values, @p failing (from 0) being the request that fails.
    void construct(int failing = -1, quint32 error = 0);
    /// The control's signal with @p value; the request it sends fails with @p error unless 0.
    void act(const Control &control, int value, quint32 error = 0);

    QStringList takeRequests() { return std::exchange(m_requests, {}); }
    QStringList takeLog() { return std::exchange(m_log, {}); }
    const QMap<QString, QString> &saved() const { return m_saved; }
    const QList<double> &deviceBlock() const { return m_deviceBlock; }
    QString instrumentText() const { return m_instrumentText; }

private:
    void sendPacket(const QString &command, int channel, int value, quint32 error);
    bool sendEntries(const QList<int> &entries, double value, quint32 error);
    void report(bool done, const QString &success, const QString &failure);
    void setVolume(const QString &output, int db, quint32 error);
    void actOnMic(const Control &control, int value, quint32 error);
    void actOnOutput(const Control &control, int value, quint32 error);
    void save(const QString &key, const QString &value);
    QList<int> volumeEntries(const QString &output) const;

    const PanelModel m_model;
    QList<Control> m_controls;
    QList<int> m_outputChannels;
    QList<double> m_block;
    QList<double> m_deviceBlock;
    QMap<QString, int> m_volumes;
    QMap<QString, bool> m_muted;
    QMap<QString, bool> m_dimmed;
    QString m_instrumentText = "MIC";

    QStringList m_requests;
    QStringList m_log;
    QMap<QString, QString> m_saved;
};

#endif
