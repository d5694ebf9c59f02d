#ifndef EXPECTEDPANEL_H
#define EXPECTEDPANEL_H

#include "panelmodel.h"

#include <QMap>
#include <QStringList>

#include <utility>

/// What a panel and the device behind it ought to do, without widgets: the requests with the mixer
/// entries each changes, the log and the saved values that follow from actions and failures.
class ExpectedPanel
{
public:
    /// @p stored is what the INI file holds, by "Section/Key".
    explicit ExpectedPanel(const PanelModel &model, const QMap<QString, QString> &stored = {});

    const QList<PanelControl> &controls() const { return m_model.controls; }
    /// The names of the requests that construction sends, in order.
    QStringList constructionCommands() const;
    /// Construction, @p failing (from 0) being the request that fails.
    void construct(int failing = -1, quint32 error = 0);
    /// The control's signal with @p value; the request it sends fails with @p error unless 0.
    void act(const PanelControl &control, int value, quint32 error = 0);
    /// The same, but it is the link to the driver that reports a failure, also that of a packet.
    void refuse(const PanelControl &control, int value);

    QStringList takeRequests() { return std::exchange(m_requests, {}); }
    QStringList takeLog() { return std::exchange(m_log, {}); }
    const QMap<QString, QString> &saved() const { return m_saved; }
    const QList<double> &deviceBlock() const { return m_deviceBlock; }
    QString instrumentText() const { return m_instrumentText; }

private:
    void perform(const PanelControl &control, int value, quint32 error, bool isRefused);
    void setVolume(const PanelControl &volume, int called, quint32 error, bool isRefused);
    void sendPacket(const QString &command, int channel, int value, quint32 error);
    void sendEntries(const QList<int> &entries, double value, quint32 error);
    void log(const QString &text, const QMap<QString, QString> &words);
    void save(const PanelControl &control);
    /// The control's own value as it is now.
    int value(const QString &control) const { return m_values.value(control); }

    const PanelModel m_model;
    QList<double> m_block;
    QList<double> m_deviceBlock;
    QMap<QString, int> m_values; ///< by the controls' names
    QString m_instrumentText = "MIC";

    QStringList m_requests;
    QStringList m_log;
    QMap<QString, QString> m_saved;
};

#endif
