#include "rm.h"

#include "panelparts.h"

#include <QLabel>
#include <QVBoxLayout>

namespace {

constexpr std::uint8_t mic = 1;
constexpr int maximumGainDb = 42;
constexpr Route monitorRoutes[] = {{64, 0}, {65, 1}};
constexpr Route phoneRoutes[] = {{64, 2}, {65, 3}};

/// As the family's captions, but for the leading space that this model's style has always had.
QLabel *caption(const QString &text)
{
    auto *label = panelparts::caption(text);
    label->setStyleSheet(QLatin1Char(' ') + label->styleSheet());
    return label;
}

} // namespace

rm::rm()
{
    if (!openDevice("Failed to create device in rm.") || !setOutputVolumes({1, 2}))
        return;
    openSettings(QStringLiteral("/rm.ini"));
    QLayout *input = inputColumn();
    QLayout *output = outputColumn();
    layOutColumns({input}, {output});
    seedMixer(mixer());
    setRoutes(mixer(), phoneRoutes, 1.0);
    startMeters();
    restoreState();
}

QLayout *rm::inputColumn()
{
    auto *column = panelparts::column(panelparts::inputMargins);
    column->addWidget(panelparts::heading(tr("MIC")));
    m_gain = addGain(column, QStringLiteral("Mic"), mic, maximumGainDb, LevelMeters::Input1);
    column->addWidget(caption(tr("Gain")));

    auto *buttons = panelparts::centredColumn();
    m_direct = addButton(
        buttons,
        panelparts::inputButton(QStringLiteral("MonitorMic"), tr("DIRECT"), panelparts::cyan),
        [this](bool on) { setMonitor(monitorRoutes, on); });
    column->addLayout(buttons);
    return column;
}

QLayout *rm::outputColumn()
{
    auto *column = panelparts::column(panelparts::outputMargins);
    column->addWidget(panelparts::heading(QStringLiteral("HEADPHONE")));
    addVolume(column, m_headphone, QStringLiteral("Headphone"), caption(tr("Volume")),
              headphoneActions(m_headphone, [this](int db) { setHeadphoneVolume(db); }));
    column->addStretch();
    return column;
}

void rm::restoreState()
{
    restore(m_direct);
    restore(m_gain, 0);
    restore(m_headphone.volume, -80);
    restore(m_headphone.mute);
    restore(m_headphone.dim);
    finishRestore();
}

void rm::setHeadphoneVolume(int db)
{
    if (!sendVolume(m_headphone, db))
        qDebug() << "Failed to set headphone volume.";
    save(m_headphone.volume);
}
