#include "mixerpaneltest.h"

#include "knownmessages.h"
#include "pixelclusters.h"
#include "waiting.h"

#include <QTest>

#include <algorithm>
#include <utility>

namespace {

// Only a panel sends it.
const QString firstCommand = QStringLiteral("setOutVolume");
const QString loaded = QStringLiteral("已从配置文件加载控件状态");

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

} // namespace

MixerPanelTest::MixerPanelTest(MixerModel model)
    : m_model(std::move(model))
{ }

bool MixerPanelTest::showPanel()
{
    if (!start() || !openWindow() || !plug(m_model.name) || wholePicture().knobs().isEmpty())
        return false;
    const QList<RecordEntry> entries = entriesBesides(firstCommand);
    if (entries.isEmpty() || !simulator().clearRecord())
        return false;
    m_handle = entries.first().handle();
    m_logStart = log().lines().size();
    m_sent.clear();
    m_logged.clear();
    return true;
}

bool MixerPanelTest::showStoredPanel()
{
    QStringList entries;
    for (const KnobModel &knob : m_model.knobs)
        entries << QStringLiteral("%1=%2").arg(knob.key).arg(knob.stored);
    return save(entries) && showPanel();
}

bool MixerPanelTest::waitForSaved(const QString &key, const QString &value)
{
    return waitUntil([&] { return lane().setting(m_model.file(), key).toString() == value; });
}

void MixerPanelTest::compareSent(const QStringList &expected)
{
    m_sent << expected;
    waitUntil([this] { return sentThrough(m_handle).size() >= m_sent.size(); });
    QCOMPARE(sentThrough(m_handle), m_sent);
}

void MixerPanelTest::compareLogged(const QStringList &expected)
{
    m_logged << expected;
    const auto lines = [this] { return panelMessages(log().lines().mid(m_logStart)); };
    waitUntil([&] { return lines().size() >= m_logged.size(); });
    QCOMPARE(lines(), m_logged);
}

PanelPicture MixerPanelTest::wholePicture() const
{
    return pictureWith(static_cast<int>(m_model.knobs.size()),
                       static_cast<int>(m_model.buttons.size()));
}

void MixerPanelTest::theFirstStartSendsTheDefaultsInOrderAndSavesThem()
{
    QVERIFY(start());
    QVERIFY(plug(m_model.name));
    QCOMPARE(sentBesides(firstCommand), m_model.first.sent);
    QCOMPARE(iniFile(m_model.file()).text(), iniText(m_model.first.entries, iniLayout()));
    // The settings dialog says so, too, and before the panel.
    QCOMPARE(log().count(loaded), 2);
}

void MixerPanelTest::storedValuesAreClampedSentAndSavedBack()
{
    QVERIFY(save(m_model.beyond));
    QVERIFY(start());
    QVERIFY(openWindow());
    QVERIFY(plug(m_model.name));
    QCOMPARE(sentBesides(firstCommand), m_model.clamped.sent);
    QCOMPARE(iniFile(m_model.file()).text(), iniText(m_model.clamped.entries, iniLayout()));
    for (const ButtonModel &button : m_model.buttons) {
        const bool isOn = m_model.clamped.entries.contains(button.key + QStringLiteral("=true"));
        QVERIFY2(wholePicture().buttons().at(button.place).lit == isOn, button.name);
    }
    for (const KnobModel &knob : m_model.knobs) {
        const bool isUp = m_model.clamped.entries.contains(
            QStringLiteral("%1=%2").arg(knob.key).arg(knob.maximum));
        const double turned = wholePicture().knobs().at(knob.place).turned;
        QVERIFY2(isUp ? turned > 0.97 : turned == 0.0, knob.name);
    }
}

void MixerPanelTest::everyKnobFollows_data()
{
    QTest::addColumn<Gesture>("gesture");
    QTest::newRow("the wheel") << &MixerPanelTest::turnByWheel;
    QTest::newRow("a drag") << &MixerPanelTest::drag;
    QTest::newRow("Ctrl and click") << &MixerPanelTest::clickWithControl;
    QTest::newRow("a double-click beside its number") << &MixerPanelTest::doubleClick;
    QTest::newRow("a number typed after a double-click") << &MixerPanelTest::type;
}

void MixerPanelTest::everyKnobFollows()
{
    QFETCH(Gesture, gesture);
    QVERIFY(showStoredPanel());
    for (const KnobModel &knob : m_model.knobs) {
        const PanelPicture::Knob shown = wholePicture().knobs().at(knob.place);
        QVERIFY2(shown.turned > 0.1 && shown.turned < 0.9, knob.name);
        (this->*gesture)(knob, shown);
        if (QTest::currentTestFailed())
            return;
    }
}

void MixerPanelTest::turnByWheel(const KnobModel &knob, const PanelPicture::Knob &shown)
{
    const int first = knob.stored;
    QVERIFY2(pointer().wheel(shown.centre, 3), knob.name);
    QVERIFY2(expectValues(knob, first, {first + 1, first + 2, first + 3}), knob.name);
    QVERIFY2(pointer().wheel(shown.centre, -3), knob.name);
    QVERIFY2(expectValues(knob, first + 3, {first + 2, first + 1, first}), knob.name);
}

void MixerPanelTest::drag(const KnobModel &knob, const PanelPicture::Knob &shown)
{
    struct Step {
        QPoint to;
        int value;
    };
    // The first move counts from the knob's corner, so it goes down and right: one down, one up.
    // Then two up, one up and right, one left.
    const int first = knob.stored;
    const Step steps[] = {{{0, -4}, first},
                          {{0, -8}, first + 1},
                          {{0, -12}, first + 2},
                          {{4, -16}, first + 4},
                          {{0, -16}, first + 3}};
    int last = first;
    QVERIFY2(pointer().press(shown.centre), knob.name);
    for (const Step &step : steps) {
        // One move at a time: moves that nobody has seen yet become one.
        QVERIFY2(pointer().moveTo(shown.centre + step.to), knob.name);
        QVERIFY2(expectValues(knob, std::exchange(last, step.value), {step.value}), knob.name);
    }
    QVERIFY2(pointer().release(), knob.name);
}

void MixerPanelTest::clickWithControl(const KnobModel &knob, const PanelPicture::Knob &shown)
{
    QVERIFY2(pointer().controlClick(shown.centre), knob.name);
    QVERIFY2(expectValues(knob, knob.stored, {knob.minimum}), knob.name);
    QVERIFY2(turnedBecomes(knob.place, 0.0, 0.0), knob.name);
    // At an end a knob stays and still sends.
    QVERIFY2(pointer().wheel(shown.centre, -1), knob.name);
    QVERIFY2(expectValues(knob, knob.minimum, {knob.minimum}), knob.name);
}

void MixerPanelTest::doubleClick(const KnobModel &knob, const PanelPicture::Knob &shown)
{
    QVERIFY2(pointer().doubleClick(shown.ring), knob.name);
    QVERIFY2(expectValues(knob, knob.stored, {knob.minimum}), knob.name);
    QVERIFY2(turnedBecomes(knob.place, 0.0, 0.0), knob.name);
}

void MixerPanelTest::type(const KnobModel &knob, const PanelPicture::Knob &shown)
{
    QVERIFY2(pointer().doubleClick(shown.centre), knob.name);
    QVERIFY2(pointer().type(QStringLiteral("99")), knob.name);
    QVERIFY2(pointer().key(QStringLiteral("Return")), knob.name);
    QVERIFY2(expectValues(knob, knob.stored, {knob.maximum}), knob.name);
    QVERIFY2(turnedBecomes(knob.place, 0.97, 1.0), knob.name);
    QVERIFY2(pointer().wheel(shown.centre, 2), knob.name);
    QVERIFY2(expectValues(knob, knob.maximum, {knob.maximum, knob.maximum}), knob.name);
}

/// Waits until the knob's values, one after the other from @p from, were sent, logged and saved.
bool MixerPanelTest::expectValues(const KnobModel &knob, int from, const QList<int> &values)
{
    QStringList sent;
    QStringList logged;
    for (const int value : values) {
        sent << knob.sent(from, value);
        logged << knob.logged(value);
        from = value;
    }
    compareSent(sent);
    if (!QTest::currentTestFailed())
        compareLogged(logged);
    if (QTest::currentTestFailed())
        return false;
    return waitForSaved(knob.key, QString::number(from));
}

bool MixerPanelTest::turnedBecomes(int place, double least, double most)
{
    return waitUntil([&] {
        const double turned = wholePicture().knobs().at(place).turned;
        return turned >= least && turned <= most;
    });
}

void MixerPanelTest::everyButtonIsSentTwiceAndSaved()
{
    QVERIFY(showStoredPanel());
    for (const ButtonModel &button : m_model.buttons) {
        QVERIFY2(!wholePicture().buttons().at(button.place).lit, button.name);
        press(button, true);
        if (QTest::currentTestFailed())
            return;
        press(button, false);
        if (QTest::currentTestFailed())
            return;
    }
}

void MixerPanelTest::press(const ButtonModel &button, bool on)
{
    const QString sent = on ? button.sendsOn : button.sendsOff;
    const QStringList logged = on ? button.logsOn : button.logsOff;
    QVERIFY2(pointer().click(this->button(button.place)), button.name);
    // Once for the press, once for the click. The second block changes nothing.
    compareSent({sent, sent.startsWith(sameBlock) ? sameBlock : sent});
    if (!QTest::currentTestFailed())
        compareLogged(logged + logged);
    QVERIFY2(waitForSaved(button.key, on ? QStringLiteral("true") : QStringLiteral("false")),
             button.name);
    QVERIFY2(waitUntil([&] { return wholePicture().buttons().at(button.place).lit == on; }),
             button.name);
}

void MixerPanelTest::theStateSetByHandComesBackWhenPluggedInAgain()
{
    QVERIFY(showPanel());
    for (const int place : m_model.pressed)
        QVERIFY(pointer().click(button(place)));
    for (const KnobModel &knob : m_model.knobs)
        QVERIFY2(pointer().wheel(this->knob(knob.place), m_model.notches.at(knob.place)),
                 knob.name);
    for (const KnobModel &knob : m_model.knobs)
        QVERIFY2(waitForSaved(knob.key, QString::number(valueByHand(knob))), knob.name);
    const QByteArray saved = iniFile(m_model.file()).text();

    QVERIFY(unplug());
    QVERIFY(plug(m_model.name));
    QCOMPARE(sentBesides(firstCommand), m_model.replayed);
    QCOMPARE(iniFile(m_model.file()).text(), saved);
    const PanelPicture again = wholePicture();
    for (const ButtonModel &button : m_model.buttons)
        QVERIFY2(again.buttons().at(button.place).lit == m_model.pressed.contains(button.place),
                 button.name);
    for (const KnobModel &knob : m_model.knobs) {
        const double share =
            double(valueByHand(knob) - knob.minimum) / (knob.maximum - knob.minimum);
        QVERIFY2(qAbs(again.knobs().at(knob.place).turned - share) < 0.04, knob.name);
    }
}

/// Where the wheel takes a knob from its first start.
int MixerPanelTest::valueByHand(const KnobModel &knob) const
{
    const QString key = knob.key + u'=';
    const QStringList first = m_model.first.entries.filter(key);
    return first.value(0).mid(key.size()).toInt() + m_model.notches.at(knob.place);
}

void MixerPanelTest::levelsChangeTheNumbersBesideTheirKnobs()
{
    QVERIFY(simulator().setLevels({minus20Db, minus20Db, minus20Db, minus20Db}));
    QVERIFY(showPanel());
    QVERIFY(waitForLevels());
    const QImage before = stillPicture(*window());
    for (const LevelModel &level : m_model.levels) {
        QVERIFY(simulator().setLevels(level.levels));
        waitUntil([&] { return knobsWithChangedNumbers(before) == level.knobs; });
        QCOMPARE(knobsWithChangedNumbers(before), level.knobs);
        QVERIFY(simulator().setLevels({minus20Db, minus20Db, minus20Db, minus20Db}));
        QVERIFY(waitUntil([&] { return knobsWithChangedNumbers(before).isEmpty(); }));
    }
}

QList<int> MixerPanelTest::knobsWithChangedNumbers(const QImage &before) const
{
    const QRect area = window()->area;
    const QImage now = desktop().windows().picture(area);
    const PanelPicture panel(now, area.topLeft());
    QList<int> found;
    if (now.size() != before.size() || panel.knobs().size() != m_model.knobs.size())
        return found;
    const QList<QRect> places = changes(before, now);
    for (const QRect &place : places)
        found << nearestKnob(panel.knobs(), area.topLeft() + place.center());
    std::sort(found.begin(), found.end());
    found.erase(std::unique(found.begin(), found.end()), found.end());
    return found;
}

void MixerPanelTest::aMeterThatCannotBeReadIsOnlyLogged()
{
    const QString failure = QStringLiteral("Failed to read meter data from driver.");
    QVERIFY(showPanel());
    QVERIFY(simulator().fail(QStringLiteral("readMeterData"), 2));
    QVERIFY(log().waitFor(failure, 2));
    QVERIFY(simulator().clearRecord());
    QVERIFY(waitUntil([this] {
        const QList<RecordEntry> entries = simulator().record();
        return std::any_of(entries.cbegin(), entries.cend(), [](const RecordEntry &entry) {
            return entry.text() == QStringLiteral("readMeterData");
        });
    }));
    QCOMPARE(log().count(failure), 2);
    QCOMPARE(wholePicture().knobs().size(), m_model.knobs.size());
}
