#include "expectedpanel.h"
#include "goldenstart.h"
#include "knownmessages.h"
#include "pixelclusters.h"
#include "programfixture.h"
#include "waiting.h"

#include <QTest>

#include <algorithm>
#include <optional>
#include <utility>

namespace {

// Only a panel sends it.
const QString firstCommand = "setOutVolume";
const QString loaded = "已从配置文件加载控件状态";

/// Where pixels differ, as areas of what belongs together in a line of text.
QList<QRect> changes(const QImage &before, const QImage &after)
{
    QImage different(after.size(), QImage::Format_RGB32);
    different.fill(Qt::black);
    for (int y = 0; y < after.height(); ++y) {
        for (int x = 0; x < after.width(); ++x) {
            if (before.pixel(x, y) != after.pixel(x, y))
                different.setPixel(x, y, qRgb(255, 255, 255));
        }
    }
    return pixelClusters(
        different, [](QRgb pixel) { return pixel == qRgb(255, 255, 255); }, 8);
}

int nearestKnob(const QList<PanelPicture::Knob> &knobs, QPoint point)
{
    const auto nearest =
        std::min_element(knobs.cbegin(), knobs.cend(), [point](const auto &a, const auto &b) {
            return (a.centre - point).manhattanLength() < (b.centre - point).manhattanLength();
        });
    return static_cast<int>(nearest - knobs.cbegin());
}

/// Where the tests begin: neither at an end nor, for what is turned by a few notches, near one.
int inTheMiddle(const PanelControl &knob)
{
    return knob.kind == PanelControl::Kind::Gain ? 10 : -20;
}

} // namespace

/// What every model's panel has to do in the running program: what the mouse does reaches the
/// interface, the file and the log. The environment's VESMORA_MODEL says whose panel it is.
class tst_Mixer : public ProgramFixture
{
    Q_OBJECT

private slots:
    void theFirstStartBringsTheEngineUp();
    void theFirstStartSendsTheDefaultsInOrderAndSavesThem();
    void theFirstStartSendsThesePackets();
    void storedValuesAreClampedSentAndSavedBack();
    void everyKnobFollows_data();
    void everyKnobFollows();
    void typedTextsAreReadAsNumbers();
    void everyButtonIsSentTwiceAndSaved();
    void muteWinsOverDimAndLeavesOtherOutputsAlone();
    void theStateSetByHandComesBackWhenPluggedInAgain();
    void levelsChangeTheNumbersBesideTheirKnobs();
    void aMeterThatCannotBeReadIsOnlyLogged();

private:
    /// Uses a knob that shows its stored value, and checks what comes of it.
    using Gesture = void (tst_Mixer::*)(const PanelControl &, const PanelPicture::Knob &);

    /// Starts the panel with its model plugged and its window open, and these values stored, by
    /// "Section/Key"; what it does meanwhile is forgotten.
    bool showPanel(const QMap<QString, QString> &stored = {});
    /// The same with stored values that keep every control away from its ends.
    bool showStoredPanel();
    /// Compares all that the panel has sent and logged since it was shown with what is expected.
    void compare();
    bool waitForSaved(const PanelControl &control, int value);
    /// The whole panel, as soon as it is there.
    PanelPicture wholePicture() const;
    /// The middle of a knob or button.
    QPoint place(const PanelControl &control) const;

    void turnByWheel(const PanelControl &knob, const PanelPicture::Knob &shown);
    void drag(const PanelControl &knob, const PanelPicture::Knob &shown);
    void clickWithControl(const PanelControl &knob, const PanelPicture::Knob &shown);
    void doubleClick(const PanelControl &knob, const PanelPicture::Knob &shown);
    void type(const PanelControl &knob, const PanelPicture::Knob &shown);
    bool edit(QPoint number);
    void press(const PanelControl &button, bool on);
    bool expectValues(const PanelControl &knob, const QList<int> &values);
    bool turnedBecomes(const PanelControl &knob, double least, double most);
    void compareShown(const ExpectedPanel &panel);
    QList<int> knobsWithChangedNumbers(const QImage &before) const;

    const PanelModel m_model = panelModel(qEnvironmentVariable("VESMORA_MODEL"));
    std::optional<ExpectedPanel> m_expected; ///< what the panel does, according to the family
    int m_handle = 0;
    qsizetype m_logStart = 0;
    QStringList m_sent;
    QStringList m_logged;
};

bool tst_Mixer::showPanel(const QMap<QString, QString> &stored)
{
    if (!stored.isEmpty() && !iniFile(m_model.file()).write(stored))
        return false;
    if (!start() || !openWindow() || !plug(m_model.name) || wholePicture().knobs().isEmpty())
        return false;
    const QList<RecordEntry> opening = entriesBesides(firstCommand);
    if (opening.isEmpty() || !simulator().clearRecord())
        return false;
    m_handle = opening.first().handle();
    m_logStart = log().lines().size();
    m_sent.clear();
    m_logged.clear();
    m_expected.emplace(m_model, stored);
    m_expected->construct();
    m_expected->takeRequests();
    m_expected->takeLog();
    return true;
}

bool tst_Mixer::showStoredPanel()
{
    QMap<QString, QString> stored;
    const QList<PanelControl> knobs = m_model.knobs();
    for (const PanelControl &knob : knobs)
        stored[knob.key()] = knob.saved(inTheMiddle(knob));
    return showPanel(stored);
}

bool tst_Mixer::waitForSaved(const PanelControl &control, int value)
{
    return waitUntil([&] {
        return iniFile(m_model.file()).values().value(control.key()) == control.saved(value);
    });
}

void tst_Mixer::compare()
{
    m_sent << m_expected->takeRequests();
    waitUntil([this] { return sentThrough(m_handle).size() >= m_sent.size(); });
    QCOMPARE(sentThrough(m_handle), m_sent);
    m_logged << m_expected->takeLog();
    const auto lines = [this] { return panelMessages(log().lines().mid(m_logStart)); };
    waitUntil([&] { return lines().size() >= m_logged.size(); });
    QCOMPARE(lines(), m_logged);
}

PanelPicture tst_Mixer::wholePicture() const
{
    return pictureWith(static_cast<int>(m_model.knobs().size()),
                       static_cast<int>(m_model.buttons().size()));
}

QPoint tst_Mixer::place(const PanelControl &control) const
{
    const PanelPicture shown = wholePicture();
    return control.isKnob() ? shown.knobs().at(control.place).centre
                            : shown.buttons().at(control.place).centre;
}

/// Whether the window shows what @p panel has saved.
void tst_Mixer::compareShown(const ExpectedPanel &panel)
{
    const PanelPicture shown = wholePicture();
    for (const PanelControl &control : m_model.controls) {
        const QString saved = panel.saved().value(control.key());
        if (control.isKnob()) {
            const double share =
                double(saved.toInt() - control.minimum) / (control.maximum - control.minimum);
            const double turned = shown.knobs().at(control.place).turned;
            // At its ends a knob is shown more exactly.
            const double tolerance = share == 0.0 ? 1e-9 : share == 1.0 ? 0.03 : 0.04;
            QVERIFY2(qAbs(turned - share) < tolerance, qPrintable(control.name));
        } else {
            const bool isLit = shown.buttons().at(control.place).lit;
            QVERIFY2(control.saved(isLit) == saved, qPrintable(control.name));
        }
    }
}

void tst_Mixer::theFirstStartBringsTheEngineUp()
{
    QVERIFY(start());
    QVERIFY(plug(m_model.name));
    QVERIFY(log().waitFor("设置初始化完成"));
    QCOMPARE(
        sentBesides("setWdmChannelCount"),
        QStringList({"open", "getBufferSize", "getUsbLatency", "stopAudio", "setBufferSize 192",
                     "restartAudio", "getSampleRate", "stopAudio", "setSampleRate 44100",
                     "setWdmChannelCount 4", "setOtgOff", "setOtgOn", "initAudio"}));
    QCOMPARE(sentBesides("getFirmwareVersion"),
             QStringList({"open", "getDevicePid", "getFirmwareVersion", "close"}));
    QCOMPARE(iniFile("setting.ini").values().value("Audio/BufferSize"), "192");
}

void tst_Mixer::theFirstStartSendsTheDefaultsInOrderAndSavesThem()
{
    const GoldenStart golden = goldenFirstStart(m_model.name);
    QVERIFY(start());
    QVERIFY(plug(m_model.name));
    QCOMPARE(sentBesides(firstCommand), golden.requests);
    QCOMPARE(iniFile(m_model.file()).text(), iniText(golden.saved, iniLayout()));
    // The settings dialog says so, too, and before the panel.
    QCOMPARE(log().count(loaded), 2);
}

void tst_Mixer::theFirstStartSendsThesePackets()
{
    QVERIFY(start());
    QVERIFY(plug(m_model.name));
    QList<QByteArray> packets;
    const QList<RecordEntry> entries = entriesBesides(firstCommand);
    for (const RecordEntry &entry : entries) {
        if (!entry.bytes().isEmpty())
            packets << entry.bytes();
    }
    QCOMPARE(packets, goldenFirstStart(m_model.name).packets);
}

void tst_Mixer::storedValuesAreClampedSentAndSavedBack()
{
    // In an order that is neither the panel's nor that of the alphabet: by turns above and below
    // what a knob can have, and every third button off.
    QStringList before;
    QMap<QString, QString> stored;
    int knobs = 0;
    int buttons = 0;
    for (const PanelControl &control : m_model.controls) {
        const int value = !control.isKnob() ? buttons++ % 3 != 1
            : knobs++ % 2 == 0              ? control.maximum + 8
                                            : control.minimum - 1;
        stored[control.key()] = control.saved(value);
        before.prepend(control.key() + '=' + control.saved(value));
    }
    ExpectedPanel panel(m_model, stored);
    panel.construct();
    QStringList after;
    for (const QString &line : std::as_const(before)) {
        const QString key = line.section('=', 0, 0);
        after << key + '=' + panel.saved().value(key);
    }
    QVERIFY(iniFile(m_model.file()).write(before));
    QVERIFY(start());
    QVERIFY(openWindow());
    QVERIFY(plug(m_model.name));
    QCOMPARE(sentBesides(firstCommand), QStringList("open") + panel.takeRequests());
    QCOMPARE(iniFile(m_model.file()).text(), iniText(after, iniLayout()));
    compareShown(panel);
}

void tst_Mixer::everyKnobFollows_data()
{
    QTest::addColumn<Gesture>("gesture");
    QTest::newRow("the wheel") << &tst_Mixer::turnByWheel;
    QTest::newRow("a drag") << &tst_Mixer::drag;
    QTest::newRow("Ctrl and click") << &tst_Mixer::clickWithControl;
    QTest::newRow("a double-click beside its number") << &tst_Mixer::doubleClick;
    QTest::newRow("a number typed after a double-click") << &tst_Mixer::type;
}

void tst_Mixer::everyKnobFollows()
{
    QFETCH(Gesture, gesture);
    QVERIFY(showStoredPanel());
    const QList<PanelControl> knobs = m_model.knobs();
    for (const PanelControl &knob : knobs) {
        const PanelPicture::Knob shown = wholePicture().knobs().at(knob.place);
        QVERIFY2(shown.turned > 0.1 && shown.turned < 0.9, qPrintable(knob.name));
        (this->*gesture)(knob, shown);
        if (QTest::currentTestFailed())
            return;
    }
}

void tst_Mixer::turnByWheel(const PanelControl &knob, const PanelPicture::Knob &shown)
{
    const int first = inTheMiddle(knob);
    QVERIFY(pointer().wheel(shown.centre, 3));
    QVERIFY2(expectValues(knob, {first + 1, first + 2, first + 3}), qPrintable(knob.name));
    QVERIFY(pointer().wheel(shown.centre, -3));
    QVERIFY2(expectValues(knob, {first + 2, first + 1, first}), qPrintable(knob.name));
}

void tst_Mixer::drag(const PanelControl &knob, const PanelPicture::Knob &shown)
{
    // The first move counts from the knob's corner, so it goes down and right: one down, one up.
    // Then two up, one up and right, one left.
    const int first = inTheMiddle(knob);
    const std::pair<QPoint, int> steps[] = {{{0, -4}, first},
                                            {{0, -8}, first + 1},
                                            {{0, -12}, first + 2},
                                            {{4, -16}, first + 4},
                                            {{0, -16}, first + 3}};
    QVERIFY(pointer().press(shown.centre));
    for (const auto &[offset, value] : steps) {
        // One move at a time: moves that nobody has seen yet become one.
        QVERIFY(pointer().moveTo(shown.centre + offset));
        QVERIFY2(expectValues(knob, {value}), qPrintable(knob.name));
    }
    QVERIFY(pointer().release());
}

void tst_Mixer::clickWithControl(const PanelControl &knob, const PanelPicture::Knob &shown)
{
    QVERIFY(pointer().controlClick(shown.centre));
    QVERIFY2(expectValues(knob, {knob.minimum}), qPrintable(knob.name));
    QVERIFY2(turnedBecomes(knob, 0.0, 0.0), qPrintable(knob.name));
    // At an end a knob stays and still sends.
    QVERIFY(pointer().wheel(shown.centre, -1));
    QVERIFY2(expectValues(knob, {knob.minimum}), qPrintable(knob.name));
}

void tst_Mixer::doubleClick(const PanelControl &knob, const PanelPicture::Knob &shown)
{
    QVERIFY(pointer().doubleClick(shown.ring));
    QVERIFY2(expectValues(knob, {knob.minimum}), qPrintable(knob.name));
    QVERIFY2(turnedBecomes(knob, 0.0, 0.0), qPrintable(knob.name));
}

/// Double-clicks a knob's number and waits for the editor: a key that comes earlier is lost.
bool tst_Mixer::edit(QPoint number)
{
    const QRect area(number - QPoint(15, 8), QSize(30, 16));
    const QImage shown = stillPicture(area);
    return pointer().doubleClick(number)
        && waitUntil([&] { return desktop().windows().picture(area) != shown; });
}

void tst_Mixer::type(const PanelControl &knob, const PanelPicture::Knob &shown)
{
    QVERIFY2(edit(shown.centre), qPrintable(knob.name));
    QVERIFY(pointer().type("99"));
    QVERIFY(pointer().key("Return"));
    QVERIFY2(expectValues(knob, {knob.maximum}), qPrintable(knob.name));
    QVERIFY2(turnedBecomes(knob, 0.97, 1.0), qPrintable(knob.name));
    QVERIFY(pointer().wheel(shown.centre, 2));
    QVERIFY2(expectValues(knob, {knob.maximum, knob.maximum}), qPrintable(knob.name));
}

/// Waits until the knob's values, one after the other, were sent, logged and saved.
bool tst_Mixer::expectValues(const PanelControl &knob, const QList<int> &values)
{
    for (const int value : values)
        m_expected->act(knob, value);
    compare();
    return !QTest::currentTestFailed() && waitForSaved(knob, values.last());
}

bool tst_Mixer::turnedBecomes(const PanelControl &knob, double least, double most)
{
    return waitUntil([&] {
        const double turned = wholePicture().knobs().at(knob.place).turned;
        return turned >= least && turned <= most;
    });
}

void tst_Mixer::typedTextsAreReadAsNumbers()
{
    QVERIFY(showStoredPanel());
    const PanelControl gain = m_model.knobs().first();
    // Above the maximum, and with letters alone, which change nothing.
    const std::pair<const char *, int> typings[] = {
        {"12", 12}, {"7dB", 7}, {"99", gain.maximum}, {"loud", gain.maximum}};
    for (const auto &[text, value] : typings) {
        QVERIFY2(edit(place(gain)), text);
        QVERIFY(pointer().type(text));
        compare();
        QVERIFY(pointer().key("Return"));
        QVERIFY2(expectValues(gain, {value}), text);
    }
}

void tst_Mixer::everyButtonIsSentTwiceAndSaved()
{
    QVERIFY(showStoredPanel());
    const QList<PanelControl> buttons = m_model.buttons();
    for (const PanelControl &button : buttons) {
        QVERIFY2(!wholePicture().buttons().at(button.place).lit, qPrintable(button.name));
        for (const bool on : {true, false}) {
            press(button, on);
            QVERIFY2(waitForSaved(button, on), qPrintable(button.name));
            QVERIFY2(waitUntil([&] { return wholePicture().buttons().at(button.place).lit == on; }),
                     qPrintable(button.name));
        }
    }
}

void tst_Mixer::press(const PanelControl &button, bool on)
{
    QVERIFY2(pointer().click(place(button)), qPrintable(button.name));
    // Once for the press, once for the click.
    m_expected->act(button, on);
    m_expected->act(button, on);
    compare();
}

void tst_Mixer::muteWinsOverDimAndLeavesOtherOutputsAlone()
{
    const std::pair<const char *, bool> steps[] = {{"Dim", true}, {"Mute", true},  {"Dim", false},
                                                   {"Dim", true}, {"Mute", false}, {"Dim", false}};
    QList<PanelControl> volumes = m_model.knobs();
    volumes.removeIf([](const PanelControl &knob) { return knob.output.isEmpty(); });
    QVERIFY(showStoredPanel());
    for (const auto &[action, on] : steps) {
        for (const PanelControl &volume : std::as_const(volumes))
            press(m_model.control(volume.name + action), on);
    }
    for (const PanelControl &volume : std::as_const(volumes))
        QVERIFY(waitForSaved(volume, inTheMiddle(volume)));
}

void tst_Mixer::theStateSetByHandComesBackWhenPluggedInAgain()
{
    const GoldenStart golden = goldenReplay(m_model.name);
    const QMap<QString, QString> values = golden.values();
    QVERIFY(showPanel());
    for (const PanelControl &control : m_model.controls) {
        const QString value = values.value(control.key());
        if (!control.isKnob() && value == "true")
            QVERIFY2(pointer().click(place(control)), qPrintable(control.name));
        else if (control.isKnob() && value.toInt() != control.initial)
            QVERIFY2(pointer().wheel(place(control), value.toInt() - control.initial),
                     qPrintable(control.name));
    }
    for (const PanelControl &control : m_model.controls) {
        const QString value = values.value(control.key());
        QVERIFY2(waitForSaved(control, control.isKnob() ? value.toInt() : value == "true"),
                 qPrintable(control.name));
    }
    const QByteArray saved = iniFile(m_model.file()).text();

    QVERIFY(unplug());
    QVERIFY(plug(m_model.name));
    QCOMPARE(sentBesides(firstCommand), golden.requests);
    QCOMPARE(iniFile(m_model.file()).text(), saved);
    compareShown(ExpectedPanel(m_model, values));
}

void tst_Mixer::levelsChangeTheNumbersBesideTheirKnobs()
{
    const QList<qint32> quiet(4, minus20Db);
    QVERIFY(simulator().setLevels(quiet));
    QVERIFY(showPanel());
    QVERIFY(waitForLevels());
    const QImage before = stillPicture(window()->area);
    for (int field = 0; field < quiet.size(); ++field) {
        QList<qint32> levels = quiet;
        // The phone is shown as the mean of two levels.
        if (field == 0)
            levels = {minus20Db, minus20Db, 0, 2 * minus20Db};
        levels[field] = minus6Db;
        QList<int> expected;
        const QList<PanelControl> knobs = m_model.knobs();
        for (const PanelControl &knob : knobs) {
            if (knob.levels.contains(field))
                expected << knob.place;
        }
        QVERIFY(simulator().setLevels(levels));
        QVERIFY(!expected.isEmpty() || waitForLevels());
        waitUntil([&] { return knobsWithChangedNumbers(before) == expected; });
        QCOMPARE(knobsWithChangedNumbers(before), expected);
        QVERIFY(simulator().setLevels(quiet));
        QVERIFY(waitUntil([&] { return knobsWithChangedNumbers(before).isEmpty(); }));
    }
}

QList<int> tst_Mixer::knobsWithChangedNumbers(const QImage &before) const
{
    const QRect area = window()->area;
    const QImage now = desktop().windows().picture(area);
    const PanelPicture panel(now, area.topLeft());
    QList<int> found;
    if (now.size() != before.size() || panel.knobs().size() != m_model.knobs().size())
        return found;
    const QList<QRect> places = changes(before, now);
    for (const QRect &place : places)
        found << nearestKnob(panel.knobs(), area.topLeft() + place.center());
    std::sort(found.begin(), found.end());
    found.erase(std::unique(found.begin(), found.end()), found.end());
    return found;
}

void tst_Mixer::aMeterThatCannotBeReadIsOnlyLogged()
{
    const QString failure = "Failed to read meter data from driver.";
    QVERIFY(showPanel());
    QVERIFY(simulator().fail("readMeterData", 2));
    QVERIFY(log().waitFor(failure, 2));
    QVERIFY(simulator().clearRecord());
    QVERIFY(waitUntil([this] {
        const QList<RecordEntry> entries = simulator().record();
        return std::any_of(entries.cbegin(), entries.cend(), [](const RecordEntry &entry) {
            return entry.text() == "readMeterData";
        });
    }));
    QCOMPARE(log().count(failure), 2);
    QCOMPARE(wholePicture().knobs().size(), m_model.knobs().size());
}

QTEST_GUILESS_MAIN(tst_Mixer)
#include "tst_mixer.moc"
