#include "rx2.h"

#include "panelparts.h"
#include "vesmoraiocontrol.h"

#include <QLabel>
#include <QVBoxLayout>

namespace {

constexpr Microphone mic1{
    .name = QLatin1StringView("Mic1"), .channel = 1, .level = LevelMeters::Input1};
constexpr Microphone mic2{
    .name = QLatin1StringView("Mic2"), .channel = 2, .level = LevelMeters::Input2};
constexpr int maximumGainDb = 56;
constexpr Route mic1Routes[] = {{64, 0}, {65, 0}, {68, 0}, {69, 0}};
constexpr Route mic2Routes[] = {{64, 1}, {65, 1}, {68, 1}, {69, 1}};
constexpr Route phoneToHeadphoneRoutes[] = {{68, 2}, {69, 3}};
/// The second output pair, which the other models lack.
constexpr Route secondPairRoutes[] = {{100, 0}, {101, 1}, {132, 0}, {133, 1}};

/// Both outputs report a failing phone volume in the headphone's words.
constexpr char phoneFailed[] = "Failed to set OTG to HP volume.";

} // namespace

rx2::rx2()
    : DevicePanel(Saves::Logged)
    , m_mic1{.mic = mic1, .monitorRoutes = mic1Routes}
    , m_mic2{.mic = mic2, .monitorRoutes = mic2Routes}
    , m_headphone{.level = {.firstGain = 4},
                  .phoneRoutes = phoneToHeadphoneRoutes,
                  .log = {.volumeCalled = "Headphone Knob value changed:",
                          .volumeSet = "Headphone volume set to:",
                          .volumeFailed = "Failed to set headphone volume.",
                          .phoneSet = "OTG to HP volume set to:"}}
    , m_speaker{.level = {.firstGain = 0},
                .phoneRoutes = phoneToFirstOutput,
                .log = {.volumeCalled = "Speaker Knob value changed:",
                        .volumeSet = "Speaker volume set to:",
                        .volumeFailed = "Failed to set speaker volume.",
                        .phoneSet = "OTG to SP volume set to:",
                        .switches = {.muteOn = "Speaker Mute Button Clicked: Mute ON",
                                     .muteOff = "Speaker Mute Button Clicked: Mute OFF"}}}
{
    if (!connectToDevice({1, 2, 5, 6}))
        return;
    QLayout *input1 = inputColumn(m_mic1, tr("MIC1"));
    QLayout *input2 = inputColumn(m_mic2, tr("MIC2"));
    QLayout *speaker = speakerColumn();
    QLayout *headphone = headphoneColumn();
    layOutColumns({input1, input2}, {speaker, headphone});
    seedMixer(mixer());
    setRoutes(mixer(), secondPairRoutes, 1.0);
    startMeters();
    restoreState();
}

QLayout *rx2::inputColumn(Input &input, const QString &title)
{
    auto *column = panelparts::column(panelparts::inputMargins);
    column->addWidget(panelparts::heading(title, this));
    input.gain = addGain(column, input.mic, maximumGainDb);
    column->addWidget(panelparts::caption(tr("Gain"), this));

    auto *buttons = panelparts::centredColumn();
    input.pad = addPad(buttons, input.mic);
    input.phantom = addPhantom(buttons, input.mic);
    input.direct = addMonitor(buttons, input.mic, tr("DIRECT"), input.monitorRoutes);
    column->addLayout(buttons);
    column->addStretch();
    return column;
}

QLayout *rx2::speakerColumn()
{
    auto *column = panelparts::column(panelparts::outputMargins);
    column->addWidget(panelparts::heading(tr("SPEAKER"), this));
    addVolume(column, m_speaker.level, QStringLiteral("Speaker"),
              panelparts::caption(tr("Volume"), this), m_speaker.log.switches,
              [this](int db) { setVolume(m_speaker, db); });
    addPhone(column, m_speaker, QStringLiteral("OtgToSP"), tr("Phone To SP Volume"));
    return column;
}

QLayout *rx2::headphoneColumn()
{
    auto *column = panelparts::column(panelparts::outputMargins);
    column->addWidget(panelparts::heading(tr("HEADPHONE"), this));
    // Its mute, unlike the speaker's, logs the knob's value.
    addVolume(column, m_headphone.level, QStringLiteral("Headphone"),
              panelparts::caption(tr("Volume"), this), m_headphone.log.switches,
              [this](int) { setVolume(m_headphone, m_headphone.level.volume->value); });
    addPhone(column, m_headphone, QStringLiteral("OtgToHp"), tr("Phone To HP Volume"));
    return column;
}

void rx2::addPhone(QBoxLayout *column, Output &output, const QString &name, const QString &text)
{
    output.phone =
        addPhoneVolume(column, name, new QVBoxLayout, panelparts::smallCaption(text, this),
                       [this, &output](int db) { setPhoneVolume(output, db); });
    column->addStretch();
}

void rx2::restoreState()
{
    restore(m_mic1.pad);
    restore(m_mic1.phantom);
    restore(m_mic1.direct);
    restore(m_mic1.gain, 0);
    restore(m_mic2.gain, 0);
    restore(m_mic2.pad);
    restore(m_mic2.phantom);
    restore(m_mic2.direct);
    restore(m_speaker.level.volume, -80);
    restore(m_speaker.level.mute);
    restore(m_speaker.level.dim);
    restore(m_headphone.level.volume, -80);
    restore(m_headphone.level.mute);
    restore(m_headphone.level.dim);
    restore(m_headphone.phone, 0);
    restore(m_speaker.phone, 0);
    finishRestore();
}

void rx2::setVolume(const Output &output, int db)
{
    qDebug() << output.log.volumeCalled << db;
    report(sendVolume(output.level, db), output.log.volumeSet, output.level.effectiveDb(db),
           output.log.volumeFailed);
}

void rx2::setPhoneVolume(const Output &output, int db)
{
    const double gain = VesmoraIoControl::dbToGain(db);
    report(sendRoutes(output.phoneRoutes, gain), output.log.phoneSet, gain, phoneFailed);
}
