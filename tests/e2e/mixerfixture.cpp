#include "mixerfixture.h"

#include "goldenstart.h"
#include "knownmessages.h"
#include "pixelclusters.h"
#include "waiting.h"

#include <QTest>

#include <algorithm>
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

QString entry(const PanelControl &control, int value)
{
    return control.key() + '=' + control.saved(value);
}

} // namespace

MixerFixture::MixerFixture(const QString &model)
    : m_model(panelModel(model))
{ }

bool MixerFixture::showPanel(const QMap<QString, QString> &stored)
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

bool MixerFixture::showStoredPanel()
{
    QMap<QString, QString> stored;
    const QList<PanelControl> knobs = m_model.knobs();
    for (const PanelControl &knob : knobs)
        stored[knob.key()] = knob.saved(inTheMiddle(knob));
    return showPanel(stored);
}

bool MixerFixture::waitForSaved(const PanelControl &control, int value)
{
    return waitUntil([&] {
        return iniFile(m_model.file()).values().value(control.key()) == control.saved(value);
    });
}

void MixerFixture::compare()
{
    m_sent << m_expected->takeRequests();
    waitUntil([this] { return sentThrough(m_handle).size() >= m_sent.size(); });
    QCOMPARE(sentThrough(m_handle), m_sent);
    m_logged << m_expected->takeLog();
    const auto lines = [this] { return panelMessages(log().lines().mid(m_logStart)); };
    waitUntil([&] { return lines().size() >= m_logged.size(); });
    QCOMPARE(lines(), m_logged);
}

PanelPicture MixerFixture::wholePicture() const
{
    return pictureWith(static_cast<int>(m_model.knobs().size()),
                       static_cast<int>(m_model.buttons().size()));
}

QPoint MixerFixture::place(const PanelControl &control) const
{
    const PanelPicture shown = wholePicture();
    return control.isKnob() ? shown.knobs().at(control.place).centre
                            : shown.buttons().at(control.place).centre;
}

/// Whether the window shows what @p panel has saved.
void MixerFixture::compareShown(const ExpectedPanel &panel)
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

void MixerFixture::theFirstStartSendsTheDefaultsInOrderAndSavesThem()
{
    const GoldenStart golden = goldenFirstStart(m_model.name);
    QVERIFY(start());
    QVERIFY(plug(m_model.name));
    QCOMPARE(sentBesides(firstCommand), golden.requests);
    QCOMPARE(iniFile(m_model.file()).text(), iniText(golden.saved, iniLayout()));
    // The settings dialog says so, too, and before the panel.
    QCOMPARE(log().count(loaded), 2);
}

void MixerFixture::theFirstStartSendsThesePackets()
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

void MixerFixture::storedValuesAreClampedSentAndSavedBack()
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
        before.prepend(entry(control, value));
        stored[control.key()] = control.saved(value);
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

void MixerFixture::everyKnobFollows_data()
{
    QTest::addColumn<Gesture>("gesture");
    QTest::newRow("the wheel") << &MixerFixture::turnByWheel;
    QTest::newRow("a drag") << &MixerFixture::drag;
    QTest::newRow("Ctrl and click") << &MixerFixture::clickWithControl;
    QTest::newRow("a double-click beside its number") << &MixerFixture::doubleClick;
    QTest::newRow("a number typed after a double-click") << &MixerFixture::type;
}

void MixerFixture::everyKnobFollows()
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

void MixerFixture::turnByWheel(const PanelControl &knob, const PanelPicture::Knob &shown)
{
    const int first = inTheMiddle(knob);
    QVERIFY(pointer().wheel(shown.centre, 3));
    QVERIFY2(expectValues(knob, {first + 1, first + 2, first + 3}), qPrintable(knob.name));
    QVERIFY(pointer().wheel(shown.centre, -3));
    QVERIFY2(expectValues(knob, {first + 2, first + 1, first}), qPrintable(knob.name));
}

void MixerFixture::drag(const PanelControl &knob, const PanelPicture::Knob &shown)
{
    struct Step {
        QPoint to;
        int value;
    };
    // The first move counts from the knob's corner, so it goes down and right: one down, one up.
    // Then two up, one up and right, one left.
    const int first = inTheMiddle(knob);
    const Step steps[] = {{{0, -4}, first},
                          {{0, -8}, first + 1},
                          {{0, -12}, first + 2},
                          {{4, -16}, first + 4},
                          {{0, -16}, first + 3}};
    QVERIFY(pointer().press(shown.centre));
    for (const Step &step : steps) {
        // One move at a time: moves that nobody has seen yet become one.
        QVERIFY(pointer().moveTo(shown.centre + step.to));
        QVERIFY2(expectValues(knob, {step.value}), qPrintable(knob.name));
    }
    QVERIFY(pointer().release());
}

void MixerFixture::clickWithControl(const PanelControl &knob, const PanelPicture::Knob &shown)
{
    QVERIFY(pointer().controlClick(shown.centre));
    QVERIFY2(expectValues(knob, {knob.minimum}), qPrintable(knob.name));
    QVERIFY2(turnedBecomes(knob, 0.0, 0.0), qPrintable(knob.name));
    // At an end a knob stays and still sends.
    QVERIFY(pointer().wheel(shown.centre, -1));
    QVERIFY2(expectValues(knob, {knob.minimum}), qPrintable(knob.name));
}

void MixerFixture::doubleClick(const PanelControl &knob, const PanelPicture::Knob &shown)
{
    QVERIFY(pointer().doubleClick(shown.ring));
    QVERIFY2(expectValues(knob, {knob.minimum}), qPrintable(knob.name));
    QVERIFY2(turnedBecomes(knob, 0.0, 0.0), qPrintable(knob.name));
}

void MixerFixture::type(const PanelControl &knob, const PanelPicture::Knob &shown)
{
    QVERIFY(pointer().doubleClick(shown.centre));
    QVERIFY(pointer().type("99"));
    QVERIFY(pointer().key("Return"));
    QVERIFY2(expectValues(knob, {knob.maximum}), qPrintable(knob.name));
    QVERIFY2(turnedBecomes(knob, 0.97, 1.0), qPrintable(knob.name));
    QVERIFY(pointer().wheel(shown.centre, 2));
    QVERIFY2(expectValues(knob, {knob.maximum, knob.maximum}), qPrintable(knob.name));
}

/// Waits until the knob's values, one after the other, were sent, logged and saved.
bool MixerFixture::expectValues(const PanelControl &knob, const QList<int> &values)
{
    for (const int value : values)
        m_expected->act(knob, value);
    compare();
    return !QTest::currentTestFailed() && waitForSaved(knob, values.last());
}

bool MixerFixture::turnedBecomes(const PanelControl &knob, double least, double most)
{
    return waitUntil([&] {
        const double turned = wholePicture().knobs().at(knob.place).turned;
        return turned >= least && turned <= most;
    });
}

void MixerFixture::everyButtonIsSentTwiceAndSaved()
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

void MixerFixture::press(const PanelControl &button, bool on)
{
    QVERIFY2(pointer().click(place(button)), qPrintable(button.name));
    // Once for the press, once for the click.
    m_expected->act(button, on);
    m_expected->act(button, on);
    compare();
}

void MixerFixture::muteWinsOverDimAndLeavesOtherOutputsAlone()
{
    struct Step {
        const char *button;
        bool on;
    };
    QList<PanelControl> volumes = m_model.knobs();
    volumes.removeIf([](const PanelControl &knob) { return knob.output.isEmpty(); });
    QVERIFY(showStoredPanel());
    for (const Step &step : {Step{"Dim", true}, Step{"Mute", true}, Step{"Dim", false},
                             Step{"Dim", true}, Step{"Mute", false}, Step{"Dim", false}}) {
        for (const PanelControl &volume : std::as_const(volumes))
            press(m_model.control(volume.name + step.button), step.on);
    }
    for (const PanelControl &volume : std::as_const(volumes))
        QVERIFY(waitForSaved(volume, inTheMiddle(volume)));
}

void MixerFixture::theStateSetByHandComesBackWhenPluggedInAgain()
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

void MixerFixture::levelsChangeTheNumbersBesideTheirKnobs()
{
    const QList<qint32> quiet(4, minus20Db);
    QVERIFY(simulator().setLevels(quiet));
    QVERIFY(showPanel());
    QVERIFY(waitForLevels());
    const QImage before = stillPicture(*window());
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

QList<int> MixerFixture::knobsWithChangedNumbers(const QImage &before) const
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

void MixerFixture::aMeterThatCannotBeReadIsOnlyLogged()
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
