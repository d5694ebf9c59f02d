#include "story.h"

#include "interruption.h"
#include "settingspicture.h"
#include "waiting.h"

#include <QDir>
#include <QSaveFile>

namespace {

using Kind = PanelControl::Kind;

/// How far a knob is turned up.
int notchesOf(const PanelControl &knob)
{
    return knob.kind == Kind::Gain ? 20 : 60;
}

} // namespace

Story::Story(const PanelModel &model, const LanePrograms &programs, const QString &folder)
    : m_model(model)
    , m_expected(model)
    , m_folder(folder)
    , m_programs(programs)
    , m_out(stdout)
{ }

bool Story::play(const QString &locale)
{
    return prepare() && dockIcon(locale) && openWindow() && plug() && useControls() && unplug()
        && plugAgain() && openSettings() && changeSampleRate() && saveRecord() && quit();
}

bool Story::prepare()
{
    if (!QDir().mkpath(m_folder))
        return fail(QStringLiteral("cannot create %1").arg(m_folder));
    if (!m_desktop.startPrivate() || !m_desktop.ensureTray())
        return fail(m_desktop.errorString());
    m_pointer = std::make_unique<Pointer>(m_desktop.environment());
    m_tray = std::make_unique<Tray>(m_desktop.windows(), *m_pointer);
    m_lane = std::make_unique<HostLane>(m_desktop, m_programs);
    m_lane->setFolder(m_folder + QStringLiteral("/story"));
    if (!m_lane->clearSettings())
        return fail(QStringLiteral("cannot clear %1").arg(m_lane->settingsFolder()));
    return m_lane->open() || fail(m_lane->errorString());
}

bool Story::dockIcon(const QString &locale)
{
    m_panel = m_lane->launch(locale);
    if (!m_panel)
        return fail(m_lane->errorString());
    return (m_tray->waitForIcon() || fail(QStringLiteral("did not happen: the icon in the tray")))
        && expect(QStringLiteral("no window at the start"), [this] { return !window(); })
        && saw(QStringLiteral("the panel starts as an icon in the tray"), QStringLiteral("tray"));
}

bool Story::openWindow()
{
    return (m_tray->click() || fail(QStringLiteral("the tray icon cannot be clicked")))
        && expect(QStringLiteral("the main window after a click on the icon"),
                  [this] { return window().has_value(); })
        && expect(QStringLiteral("a search that finds no device"),
                  [this] { return m_panel->log().count(QStringLiteral("Device PID: 0")) > 0; })
        && expect(QStringLiteral("a window without a panel"), [this] { return showsNoPanel(); })
        && saw(QStringLiteral("a click opens the window; no sound card is connected"),
               QStringLiteral("not-connected"));
}

bool Story::plug()
{
    if (!m_lane->simulator().plug(m_model.name))
        return fail(m_lane->simulator().errorString());
    m_expected.construct();
    return expect(QStringLiteral("the panel of the plugged model"), [this] { return showsPanel(); })
        && expect(QStringLiteral("the first settings file"),
                  [this] {
                      const QString key = m_model.controls.last().key();
                      return m_lane->setting(m_model.file(), key).isValid();
                  })
        && expect(QStringLiteral("a first start at the interface"),
                  [&, requests = m_expected.takeRequests()] { return hasReceived(requests, 0); })
        && saw(QStringLiteral("plugged in: \"%1\", first start").arg(window()->title),
               QStringLiteral("first-start"));
}

/// What changes something also when it is replayed, so that the record shows it: a panel begins
/// with open outputs, and closes them from its saved state.
QList<PanelControl> Story::used() const
{
    QList<PanelControl> controls = m_model.controls;
    controls.removeIf([](const PanelControl &control) {
        return control.kind != Kind::Gain && control.kind != Kind::Volume
            && control.kind != Kind::Phantom && control.kind != Kind::Dim;
    });
    return controls;
}

bool Story::useControls()
{
    const QList<PanelControl> controls = used();
    return std::all_of(controls.cbegin(), controls.cend(),
                       [this](const PanelControl &control) { return use(control); });
}

bool Story::use(const PanelControl &control)
{
    const qsizetype before = m_lane->simulator().record().size();
    const PanelPicture panel = picture();
    const int value = control.isKnob() ? control.initial + notchesOf(control) : 1;
    const bool made = control.isKnob()
        ? m_pointer->wheel(panel.knobs().at(control.place).centre, notchesOf(control))
        : m_pointer->click(panel.buttons().at(control.place).centre);
    if (!made)
        return fail(QStringLiteral("the mouse cannot reach %1").arg(control.name));
    m_expected.act(control, value);
    const QString sent = m_expected.takeRequests().constLast();
    const QString verb = control.isKnob() ? QStringLiteral("turned") : QStringLiteral("pressed");
    const QString saved = control.saved(value);
    return expect(
               QStringLiteral("%1 = %2 in the settings file").arg(control.key(), saved),
               [&] { return m_lane->setting(m_model.file(), control.key()).toString() == saved; })
        && expect(QStringLiteral("\"%1\" at the interface").arg(sent),
                  [&] { return hasReceived({sent}, before); })
        && expect(QStringLiteral("%1 shown as %2").arg(control.name, verb),
                  [&] { return showsUse(control); })
        && saw(QStringLiteral("%1 %2: %3=%4, the interface got \"%5\"")
                   .arg(control.name, verb, control.key(), saved, sent),
               control.name.toLower());
}

bool Story::unplug()
{
    if (!m_lane->simulator().unplug())
        return fail(m_lane->simulator().errorString());
    return expect(QStringLiteral("the end of the lost panel"),
                  [this] {
                      return m_panel->log().count(QStringLiteral("Meter driver handle deleted."))
                          == 1;
                  })
        && expect(QStringLiteral("a window without a panel"), [this] { return showsNoPanel(); })
        && saw(QStringLiteral("unplugged: the panel is gone"), QStringLiteral("unplugged"));
}

bool Story::plugAgain()
{
    const qsizetype before = m_lane->simulator().record().size();
    if (!m_lane->simulator().plug(m_model.name))
        return fail(m_lane->simulator().errorString());
    ExpectedPanel replayed(m_model, m_expected.saved());
    replayed.construct();
    const QStringList requests = replayed.takeRequests();
    const QList<PanelControl> controls = used();
    return expect(QStringLiteral("the panel of the plugged model"), [this] { return showsPanel(); })
        && expect(QStringLiteral("every saved setting at the interface"),
                  [&] { return hasReceived(requests, before); })
        && expect(QStringLiteral("the controls as they were left"),
                  [&] {
                      return std::all_of(
                          controls.cbegin(), controls.cend(),
                          [this](const PanelControl &control) { return showsUse(control); });
                  })
        && saw(QStringLiteral("plugged in again: the interface got its saved state back"),
               QStringLiteral("plugged-again"));
}

bool Story::openSettings()
{
    // The fifth word of the message asks for the window.
    const QStringList request{QStringLiteral("send"), QStringLiteral("0"), QStringLiteral("0"),
                              QStringLiteral("0"),    QStringLiteral("0"), QStringLiteral("1")};
    const CommandResult sent = m_lane->asio(request);
    if (!sent.succeeded())
        return fail(QString::fromUtf8(sent.errorOutput).trimmed());
    return expect(QStringLiteral("the settings window"),
                  [this] { return settingsWindow(m_desktop.windows()).has_value(); })
        && saw(QStringLiteral("the ASIO driver asked for the settings window"),
               QStringLiteral("settings"));
}

/// Turns the wheel by one notch, which chooses the second rate.
bool Story::changeSampleRate()
{
    constexpr int sampleRate = 2; // of the choices from the top
    const WindowInfo dialog = *settingsWindow(m_desktop.windows());
    SettingsPicture picture;
    const auto showsChoices = [&] {
        picture = SettingsPicture(m_desktop.windows().picture(dialog.area), dialog.area.topLeft());
        return picture.choices().size() > sampleRate;
    };
    if (!expect(QStringLiteral("the choices of the settings window"), showsChoices))
        return false;
    const qsizetype before = m_lane->simulator().record().size();
    if (!m_pointer->wheel(picture.choices().at(sampleRate), -1))
        return fail(QStringLiteral("the mouse cannot reach the sample rate"));
    return expect(QStringLiteral("\"setSampleRate 48000\" at the interface"),
                  [&] { return hasReceived({QStringLiteral("setSampleRate 48000")}, before); })
        && expect(QStringLiteral("48000 in the settings file"),
                  [this] {
                      return m_lane
                                 ->setting(QStringLiteral("setting.ini"),
                                           QStringLiteral("Audio/SampleRate"))
                                 .toInt()
                          == 48000;
                  })
        && expect(QStringLiteral("the restarted USB audio"),
                  [&] { return hasReceived({QStringLiteral("initAudio")}, before); })
        && saw(QStringLiteral("sample rate changed: Audio/SampleRate=48000, the interface got "
                              "\"setSampleRate 48000\" and started anew"),
               QStringLiteral("sample-rate"));
}

bool Story::quit()
{
    if (!m_tray->choose(Tray::Quit))
        return fail(QStringLiteral("the tray menu did not open"));
    if (!expect(QStringLiteral("the end of the program"), [this] { return !m_panel->isRunning(); }))
        return false;
    if (m_panel->exitCode() != 0)
        return fail(QStringLiteral("the program ended with %1").arg(m_panel->exitCode()));
    m_out << QStringLiteral("Quit in the tray menu ended the program.") << Qt::endl;
    return true;
}

bool Story::showsUse(const PanelControl &control) const
{
    if (!showsPanel())
        return false;
    const PanelPicture panel = picture();
    return control.isKnob() ? panel.knobs().at(control.place).turned > 0.1
                            : panel.buttons().at(control.place).lit;
}

/// Whether the interface has received these since, in this order.
bool Story::hasReceived(const QStringList &texts, qsizetype since)
{
    const QList<RecordEntry> record = m_lane->simulator().record();
    qsizetype found = 0;
    for (qsizetype i = since; i < record.size() && found < texts.size(); ++i)
        found += record.at(i).text() == texts.at(found) ? 1 : 0;
    return found == texts.size();
}

bool Story::showsPanel() const
{
    const std::optional<WindowInfo> found = window();
    if (!found || !found->title.startsWith(m_model.title()))
        return false;
    const PanelPicture panel = picture();
    return panel.knobs().size() == m_model.knobs().size()
        && panel.buttons().size() == m_model.buttons().size();
}

bool Story::showsNoPanel() const
{
    const PanelPicture panel = picture();
    return window() && panel.knobs().isEmpty() && panel.buttons().isEmpty();
}

bool Story::expect(const QString &what, const std::function<bool()> &condition)
{
    bool happened = false;
    waitUntil([&] { return interruption::requested() || (happened = condition()); });
    if (interruption::requested())
        return fail(QStringLiteral("interrupted"));
    return happened || fail(QStringLiteral("did not happen: %1").arg(what));
}

bool Story::saw(const QString &what, const QString &pictureName)
{
    const QString name =
        QStringLiteral("%1-%2.png").arg(++m_pictures, 2, 10, QChar(u'0')).arg(pictureName);
    const QString path = m_folder + u'/' + name;
    if (!m_desktop.saveScreen(path))
        return fail(QStringLiteral("cannot write %1").arg(path));
    m_out << name << QStringLiteral(": ") << what << Qt::endl;
    return true;
}

bool Story::saveRecord()
{
    QSaveFile file(m_folder + QStringLiteral("/record.jsonl"));
    const QByteArray lines = m_lane->simulator().recordLines();
    if (lines.isEmpty() || !file.open(QIODevice::WriteOnly) || file.write(lines) != lines.size()
        || !file.commit())
        return fail(QStringLiteral("cannot write %1").arg(file.fileName()));
    m_out << QStringLiteral("record.jsonl: the %1 things that the interface saw")
                 .arg(lines.count('\n'))
          << Qt::endl;
    return true;
}

bool Story::fail(const QString &why)
{
    m_error = why;
    return false;
}
