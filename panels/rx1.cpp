#include "rx1.h"

#include "panelparts.h"
#include "vesmoraiocontrol.h"

#include <QLabel>
#include <QVBoxLayout>

namespace {

constexpr Microphone mic{
    .name = QLatin1StringView("Mic"), .channel = 1, .level = LevelMeters::Input1};
constexpr int maximumGainDb = 42;

} // namespace

rx1::rx1()
{
    if (!connectToDevice({1, 2}))
        return;
    QLayout *input = inputColumn();
    QLayout *output = outputColumn();
    layOutColumns({input}, {output});
    seedMixer(mixer());
    startMeters();
    restoreState();
}

QLayout *rx1::inputColumn()
{
    auto *column = panelparts::column(panelparts::inputMargins);
    column->addWidget(panelparts::heading(tr("INPUT"), this));
    m_gain = addGain(column, mic, maximumGainDb);
    column->addWidget(panelparts::caption(tr("Gain"), this));

    auto *buttons = panelparts::centredColumn();
    m_instrument = addButton(
        buttons,
        panelparts::inputButton(QStringLiteral("MicInstr"), tr("MIC"), panelparts::green, this),
        [this](bool on) { setInstrument(on); });
    m_pad = addPad(buttons, mic);
    m_phantom = addPhantom(buttons, mic);
    m_direct = addMonitor(buttons, mic, tr("DIRECT"), micToFirstOutput);
    column->addLayout(buttons);
    return column;
}

QLayout *rx1::outputColumn()
{
    auto *column = panelparts::column(panelparts::outputMargins);
    column->setAlignment(Qt::AlignCenter);
    column->addWidget(panelparts::heading(tr("HEADPHONE"), this));
    addVolume(column, m_headphone, QStringLiteral("Headphone"),
              panelparts::caption(tr("Volume"), this), headphoneSwitchLog,
              [this](int db) { setHeadphoneVolume(db); });
    m_phone = addPhoneVolume(column, QStringLiteral("OtgToHp"), panelparts::centredColumn(),
                             panelparts::smallCaption(tr("Phone To HP Volume"), this),
                             [this](int db) { setPhoneVolume(db); });
    column->addStretch();
    return column;
}

void rx1::restoreState()
{
    restore(m_instrument);
    restore(m_pad);
    restore(m_phantom);
    restore(m_direct);
    restore(m_gain, 0);
    restore(m_headphone.volume, -80);
    restore(m_headphone.mute);
    restore(m_headphone.dim);
    restore(m_phone, 0);
    finishRestore();
}

void rx1::setInstrument(bool on)
{
    qDebug() << "Mic Instr Button Clicked" << on;
    const bool done = device().switchMicInstruction(mic.channel, on);
    report(done, "Mic instruction switched for channel 1.", "Failed to switch mic instruction.");
    if (done)
        m_instrument->setText(on ? tr("INST") : tr("MIC"));
}

void rx1::setHeadphoneVolume(int db)
{
    const bool done = sendVolume(m_headphone, db);
    report(done, "Headphone volume set to:", mixer().outputGains[m_headphone.firstGain],
           "Failed to set headphone volume.");
}

void rx1::setPhoneVolume(int db)
{
    const double gain = VesmoraIoControl::dbToGain(db);
    report(sendRoutes(phoneToFirstOutput, gain), "OTG to HP volume set to:", gain,
           "Failed to set OTG to HP volume.");
}
