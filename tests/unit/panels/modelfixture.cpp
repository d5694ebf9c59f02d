#include "modelfixture.h"

#include <cmath>

namespace {

/// What an output's knob and buttons are set to, and the volume that is heard then.
struct Level {
    const char *name;
    int db;
    bool muted;
    bool dimmed;
    double gain;
};

const Level levels[] = {{"plain", -20, false, false, 0.1},
                        {"unity", 0, false, false, 1.0},
                        {"maximum", 6, false, false, std::pow(10.0, 6.0 / 20)},
                        {"just audible", -79, false, false, std::pow(10.0, -79.0 / 20)},
                        {"silent", -80, false, false, 0.0},
                        {"dimmed", 0, false, true, 0.1},
                        {"maximum dimmed", 6, false, true, std::pow(10.0, -14.0 / 20)},
                        {"just audible dimmed", -59, false, true, std::pow(10.0, -79.0 / 20)},
                        {"dimmed to the floor", -60, false, true, 0.0},
                        {"dimmed below the floor", -61, false, true, 0.0},
                        {"silent dimmed", -80, false, true, 0.0},
                        {"muted", 0, true, false, 0.0},
                        {"maximum muted", 6, true, false, 0.0},
                        {"muted and dimmed", 6, true, true, 0.0}};

} // namespace

ExpectedPanel ModelFixture::start(const QMap<QString, QString> &stored)
{
    ExpectedPanel expected(model(), stored);
    if (!stored.isEmpty() && !settings().write(stored))
        qFatal("%s cannot be written", qPrintable(settings().name()));
    build();
    expected.construct();
    compare(expected);
    return expected;
}

ExpectedPanel ModelFixture::startAudible()
{
    QMap<QString, QString> stored;
    for (const PanelControl &control : model().controls) {
        if (control.kind == Kind::Volume)
            stored[control.key()] = "-20";
    }
    return start(stored);
}

void ModelFixture::set(const QString &name, int value, ExpectedPanel &expected)
{
    const PanelControl &control = model().control(name);
    setControl(panel(), control, value);
    expected.act(control, value);
}

void ModelFixture::press(const QString &name, ExpectedPanel &expected)
{
    const bool on = !button(name).isSelected;
    click(name);
    QCOMPARE(button(name).isSelected, on);
    expected.act(model().control(name), on);
    expected.act(model().control(name), on);
}

double ModelFixture::volume(const QString &output)
{
    return simulator().mixerBlock().at(model().control(output).entries.first());
}

void ModelFixture::compareWith(const GoldenStart &golden)
{
    build();
    QStringList requests;
    QList<QByteArray> packets;
    const QList<Record> record = takeRecord();
    for (const Record &entry : record) {
        requests << entry.text();
        if (entry.code == VESMORA_SEND_PACKET)
            packets << entry.bytes;
    }
    QCOMPARE(requests, golden.requests);
    QCOMPARE(packets, golden.packets);
    QCOMPARE(takeLog(), golden.log);
}

void ModelFixture::theFirstStartSendsLogsAndSavesTheDefaultsInOrder()
{
    const GoldenStart golden = goldenFirstStart(model().name);
    compareWith(golden);
    QCOMPARE(settings().text(), iniText(golden.saved));
}

void ModelFixture::aSavedStateIsSentLoggedShownAndKept()
{
    const GoldenStart golden = goldenReplay(model().name);
    QVERIFY(settings().write(golden.saved));
    compareWith(golden);
    QCOMPARE(settings().entries(), golden.saved);
    for (const PanelControl &control : model().controls) {
        const int shown =
            control.isKnob() ? knob(control.name).value : button(control.name).isSelected;
        QCOMPARE(control.saved(shown), golden.values().value(control.key()));
    }
}

void ModelFixture::savedKnobsAreClamped_data()
{
    QTest::addColumn<bool>("isAbove");
    QTest::addColumn<int>("beyond");
    for (const bool isAbove : {false, true}) {
        for (const int beyond : {0, 1, 8, 120, 2000000000})
            QTest::addRow("%d %s", beyond, isAbove ? "above" : "below") << isAbove << beyond;
    }
}

void ModelFixture::savedKnobsAreClamped()
{
    QFETCH(bool, isAbove);
    QFETCH(int, beyond);
    QMap<QString, QString> stored;
    QMap<QString, QString> used;
    const QList<PanelControl> knobs = model().knobs();
    for (const PanelControl &control : knobs) {
        const int bound = isAbove ? control.maximum : control.minimum;
        stored[control.key()] = QString::number(isAbove ? bound + beyond : bound - beyond);
        used[control.key()] = QString::number(bound);
    }
    start(stored);
    for (const PanelControl &control : knobs) {
        QCOMPARE(QString::number(knob(control.name).value), used.value(control.key()));
        QCOMPARE(saved().value(control.key()), used.value(control.key()));
    }
}

void ModelFixture::addControlRows(std::optional<Kind> kind)
{
    QTest::addColumn<QString>("name");
    for (const PanelControl &control : model().controls) {
        if (!kind || control.kind == kind)
            QTest::newRow(qPrintable(control.name)) << control.name;
    }
}

void ModelFixture::eachControlSendsLogsAndSavesAtOnce()
{
    QFETCH(QString, name);
    const PanelControl &control = model().control(name);
    ExpectedPanel expected = startAudible();
    // What is saved when a signal comes, after the panel's own handler.
    QStringList values;
    const auto look = [&] { values << saved().value(control.key()); };
    if (control.isKnob()) {
        connect(&knob(name), &Knob::valueChangedSig, &panel(), look);
        for (const int db : {7, 1, 0, -20, 56, -80}) {
            set(name, db, expected);
            compare(expected);
            QCOMPARE(std::exchange(values, {}), QStringList(expected.saved()[control.key()]));
        }
        // The wheel sends each notch, also those that change nothing.
        const int top = control.maximum;
        knob(name).setValue(top - 1);
        turn(name, 3);
        turn(name, -1);
        for (const int db : {top - 1, top, top, top, top - 1})
            expected.act(control, db);
        compare(expected);
        return;
    }
    connect(&button(name), qOverload<bool>(&Button::pressed), &panel(), look);
    for (const char *state : {"true", "false"}) {
        press(name, expected);
        compare(expected);
        QCOMPARE(std::exchange(values, {}), twice(state));
    }
}

void ModelFixture::switchingDirectOnAndOffLeavesTheBlockAsBuilt()
{
    QFETCH(QString, name);
    build();
    const QList<double> built = simulator().mixerBlock();
    QList<double> switchedOn = built;
    for (const int entry : model().control(name).entries)
        switchedOn[entry] = 1.0;
    click(name);
    QCOMPARE(simulator().mixerBlock(), switchedOn);
    click(name);
    QCOMPARE(simulator().mixerBlock(), built);
}

void ModelFixture::theVolumeFollowsMuteAndDim_data()
{
    QTest::addColumn<QString>("output");
    QTest::addColumn<Level>("level");
    for (const PanelControl &control : model().controls) {
        if (control.kind != Kind::Volume)
            continue;
        for (const Level &level : levels)
            QTest::addRow("%s %s", qPrintable(control.name), level.name) << control.name << level;
    }
}

void ModelFixture::theVolumeFollowsMuteAndDim()
{
    QFETCH(QString, output);
    QFETCH(Level, level);
    const QMap<QString, int> values{{"Mute", level.muted}, {"Dim", level.dimmed}, {"", level.db}};
    ExpectedPanel expected = start();
    // The order in which they come makes no difference.
    for (const QStringList &order : {QStringList{"Mute", "Dim", ""}, {"", "Dim", "Mute"}}) {
        set(output + "Mute", false, expected);
        set(output + "Dim", false, expected);
        for (const QString &what : order)
            set(output + what, values[what], expected);
        compare(expected);
        QCOMPARE(volume(output), level.gain);
    }
}

void ModelFixture::aMutedVolumeKeepsTheKnobsValueAndComesBackDimmed()
{
    QFETCH(QString, name);
    const QString key = model().control(name).key();
    ExpectedPanel expected = start();
    set(name, -5, expected);
    press(name + "Dim", expected);
    press(name + "Mute", expected);
    compare(expected);
    QCOMPARE(saved().value(key), "-5");
    QCOMPARE(knob(name).value, -5);
    set(name, -20, expected);
    compare(expected);
    QCOMPARE(saved().value(key), "-20");
    QCOMPARE(volume(name), 0.0);
    press(name + "Mute", expected);
    compare(expected);
    QCOMPARE(volume(name), 0.01);
}
