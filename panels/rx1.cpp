#include "rx1.h"

#include "panelparts.h"
#include "vesmoraiocontrol.h"

#include <QLabel>
#include <QVBoxLayout>

namespace {

constexpr std::uint8_t mic = 1;
constexpr int maximumGainDb = 42;
constexpr Route monitorRoutes[] = {{64, 0}, {65, 1}};
constexpr Route phoneRoutes[] = {{64, 2}, {65, 3}};

} // namespace

rx1::rx1()
{
    if (!openDevice("Failed to create device in rx1.") || !setOutputVolumes({1, 2}))
        return;
    openSettings(QStringLiteral("/rx1.ini"));
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
    column->addWidget(panelparts::heading(tr("INPUT")));
    m_gain = addGain(column, QStringLiteral("Mic"), mic, maximumGainDb, LevelMeters::Input1);
    column->addWidget(panelparts::caption(tr("Gain")));

    auto *buttons = panelparts::centredColumn();
    m_instrument = addButton(
        buttons, panelparts::inputButton(QStringLiteral("MicInstr"), tr("MIC"), panelparts::green),
        [this](bool on) { setInstrument(on); });
    m_pad = addButton(buttons,
                      panelparts::inputButton(QStringLiteral("Mic20dB"), QStringLiteral("20dB"),
                                              panelparts::orange),
                      [this](bool on) { setMicPad(mic, on); });
    m_phantom = addButton(
        buttons,
        panelparts::inputButton(QStringLiteral("Mic48V"), QStringLiteral("48V"), panelparts::red),
        [this](bool on) { setMicPhantom(mic, on); });
    m_direct = addButton(
        buttons,
        panelparts::inputButton(QStringLiteral("MonitorMic"), tr("DIRECT"), panelparts::cyan),
        [this](bool on) { setMonitor(monitorRoutes, on); });
    column->addLayout(buttons);
    return column;
}

QLayout *rx1::outputColumn()
{
    auto *column = panelparts::column(panelparts::outputMargins);
    column->setAlignment(Qt::AlignCenter);
    column->addWidget(panelparts::heading(tr("HEADPHONE")));
    addVolume(column, m_headphone, QStringLiteral("Headphone"), panelparts::caption(tr("Volume")),
              headphoneActions(m_headphone, [this](int db) { setHeadphoneVolume(db); }));
    m_phone = addPhoneVolume(column, QStringLiteral("OtgToHp"), panelparts::centredColumn(),
                             panelparts::smallCaption(tr("Phone To HP Volume")),
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
    const bool done = device().switchMicInstruction(mic, on);
    report(done, "Mic instruction switched for channel 1.", "Failed to switch mic instruction.");
    if (done)
        m_instrument->setText(on ? tr("INST") : tr("MIC"));
}

void rx1::setHeadphoneVolume(int db)
{
    const bool done = sendVolume(m_headphone, db);
    report(done, "Headphone volume set to:", mixer().outputGains[m_headphone.firstGain],
           "Failed to set headphone volume.");
    save(m_headphone.volume);
}

void rx1::setPhoneVolume(int db)
{
    const double gain = VesmoraIoControl::dbToGain(db);
    report(sendRoutes(phoneRoutes, gain), "OTG to HP volume set to:", gain,
           "Failed to set OTG to HP volume.");
}
