#include "rm.h"

#include "panelparts.h"

#include <QLabel>
#include <QVBoxLayout>

namespace {

constexpr Microphone mic{
    .name = QLatin1StringView("Mic"), .channel = 1, .level = LevelMeters::Input1};
constexpr int maximumGainDb = 42;

/// As the family's captions, but for the leading space that this model's style has always had.
QLabel *caption(const QString &text, QWidget *parent)
{
    auto *label = panelparts::caption(text, parent);
    label->setStyleSheet(QLatin1Char(' ') + label->styleSheet());
    return label;
}

} // namespace

rm::rm()
{
    if (!connectToDevice({1, 2}))
        return;
    QLayout *input = inputColumn();
    QLayout *output = outputColumn();
    layOutColumns({input}, {output});
    seedMixer(mixer());
    setRoutes(mixer(), phoneToFirstOutput, 1.0);
    startMeters();
    restoreState();
}

QLayout *rm::inputColumn()
{
    auto *column = panelparts::column(panelparts::inputMargins);
    column->addWidget(panelparts::heading(tr("MIC"), this));
    m_gain = addGain(column, mic, maximumGainDb);
    column->addWidget(caption(tr("Gain"), this));

    auto *buttons = panelparts::centredColumn();
    m_direct = addMonitor(buttons, mic, tr("DIRECT"), micToFirstOutput);
    column->addLayout(buttons);
    return column;
}

QLayout *rm::outputColumn()
{
    auto *column = panelparts::column(panelparts::outputMargins);
    column->addWidget(panelparts::heading(QStringLiteral("HEADPHONE"), this));
    addVolume(column, m_headphone, QStringLiteral("Headphone"), caption(tr("Volume"), this),
              headphoneSwitchLog, [this](int db) { setHeadphoneVolume(db); });
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
}
