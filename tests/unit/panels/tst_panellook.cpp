#include "layouttext.h"
#include "markingtranslator.h"
#include "panelfixture.h"

#include <QBoxLayout>
#include <QLabel>

namespace {

const QString bold = "font-weight: bold; font-size: 12px; color: white;";
const QString plain = "font-size: 12px; color: white;";
const QString smallPlain = "font-size: 10px; color: white;";
const QString meter = "label \"-160 dB\" color: #888888; font-size: 8px;";

QString label(const QString &text, const QString &style)
{
    return QString("label \"%1\" %2").arg(text, style);
}

QStringList indented(const QStringList &lines)
{
    QStringList result;
    for (const QString &line : lines)
        result << "  " + line;
    return result;
}

QStringList buttonRow(const QString &output)
{
    return {"row centred", "  button " + output + "Mute", "  button " + output + "Dim"};
}

QStringList volume(const QString &output, const QString &captionStyle = plain)
{
    return QStringList{"row", "  knob " + output, label("Volume", captionStyle)}
    + buttonRow(output);
}

QStringList phone(const QString &name, const QString &readout, const QString &caption)
{
    return {"row centred", "  knob " + name, "  " + readout, "    " + meter,
            "    " + label(caption, smallPlain)};
}

QStringList rx1Layout()
{
    const QStringList input{label("INPUT", bold), "knob Mic",        meter,
                            label("Gain", plain), "column centred",  "  button MicInstr",
                            "  button Mic20dB",   "  button Mic48V", "  button MonitorMic"};
    const QStringList output = QStringList{label("HEADPHONE", bold)} + volume("Headphone")
        + phone("OtgToHp", "column centred", "Phone To HP Volume") + QStringList{"stretch"};
    return QStringList{"row centred", "  column margins 10,10,20,10"} + indented(indented(input))
        + QStringList{"  separator", "  column centred margins 20,10,10,10"}
    + indented(indented(output));
}

QStringList rx2Input(const QString &title, const QString &mic)
{
    const QStringList input{label(title, bold),
                            "knob " + mic,
                            meter,
                            label("Gain", plain),
                            "column centred",
                            "  button " + mic + "20dB",
                            "  button " + mic + "48V",
                            "  button Monitor" + mic,
                            "stretch"};
    return QStringList{"  column margins 10,10,20,10"} + indented(indented(input));
}

QStringList rx2Output(const QString &title, const QString &output, const QString &phoneName,
                      const QString &caption)
{
    const QStringList lines = QStringList{label(title, bold)} + volume(output)
        + phone(phoneName, "column", caption) + QStringList{"stretch"};
    return QStringList{"  column margins 20,10,10,10"} + indented(indented(lines));
}

QStringList rx2Layout()
{
    return QStringList{"row centred"} + rx2Input("MIC1", "Mic1") + rx2Input("MIC2", "Mic2")
        + QStringList{"  separator"}
    + rx2Output("SPEAKER", "Speaker", "OtgToSP", "Phone To SP Volume")
        + rx2Output("HEADPHONE", "Headphone", "OtgToHp", "Phone To HP Volume");
}

QStringList rmLayout()
{
    // The captions' styles begin with a space on this model.
    const QString spaced = ' ' + plain;
    const QStringList input{label("MIC", bold),    "knob Mic",       meter,
                            label("Gain", spaced), "column centred", "  button MonitorMic"};
    const QStringList output = QStringList{label("HEADPHONE", bold)} + volume("Headphone", spaced)
        + QStringList{"stretch"};
    return QStringList{"row centred", "  column margins 10,10,20,10"} + indented(indented(input))
        + QStringList{"  separator", "  column margins 20,10,10,10"} + indented(indented(output));
}

QString gainKnob(const QString &name, int maximum)
{
    return QString("%1 at 10,10 120x120 range 0..%2 arc 7 #f1fa8c text 12pt #00ff7f accent #00ff7f")
        .arg(name)
        .arg(maximum);
}

QString volumeKnob(const QString &name)
{
    return name + " at 10,10 120x120 range -80..6 arc 7 #00ffff text 12pt #00ff7f accent #00ff7f";
}

QString phoneKnob(const QString &name)
{
    return name + " at 10,10 70x70 range -80..6 arc 3 #00ffff text 10pt #00ff7f accent #00ff7f";
}

QString button(const QString &name, const QString &text, const QString &accent, int spareMetric,
               int minimumHeight)
{
    return QString("%1 %2 on %3/#1b1e23 off #8a95aa/#1b1e23 glow %3 radius 3 spare %4 at least "
                   "80x%5 at most 80x16777215")
        .arg(name, text, accent)
        .arg(spareMetric)
        .arg(minimumHeight);
}

QString inputButton(const QString &name, const QString &text, const QString &accent)
{
    return button(name, text, accent, 10, 0);
}

QStringList outputButtons(const QString &output)
{
    return {button(output + "Mute", "MUTE", "#00FFFF", 12, 40),
            button(output + "Dim", "DIM", "#00FFFF", 12, 40)};
}

QStringList rx2InputButtons(const QString &mic)
{
    return {inputButton(mic + "20dB", "20dB", "#ff7f00"),
            inputButton(mic + "48V", "48V", "#ff1111"),
            inputButton("Monitor" + mic, "DIRECT", "#00FFFF")};
}

QString styleOf(const Button &button)
{
    return QString("QPushButton {   color: %1;   background-color: #1b1e23;   border-radius: 3px;}"
                   "QPushButton:pressed {   background-color: #1b1e23;}")
        .arg(button.isSelected ? button.textColorOn : button.textColorOff);
}

} // namespace

/// What the panels are made of and what they look like.
class tst_PanelLook : public PanelFixture
{
    Q_OBJECT

public:
    tst_PanelLook()
        : PanelFixture("rx1")
    { }

private slots:
    void columnsHoldTheseWidgetsInOrder_data();
    void columnsHoldTheseWidgetsInOrder();
    void knobsLookLikeThis_data();
    void knobsLookLikeThis();
    void buttonsLookLikeThis_data();
    void buttonsLookLikeThis();
    void buttonsAreStyledFromTheStart_data() { addModelRows(); }
    void buttonsAreStyledFromTheStart();
    void buttonsIgnoreNoPress_data() { addModelRows(); }
    void buttonsIgnoreNoPress();
    void phoneRowsAreSpacedByEight();
    void exactlyTheseTextsAreTranslated_data();
    void exactlyTheseTextsAreTranslated();
    void bothTextsOfTheInstrumentButtonAreTranslated();
    void panelsHaveNoParent_data() { addModelRows(); }
    void panelsHaveNoParent();

private:
    template <typename Control> QStringList descriptions();
    /// The texts of labels and buttons in order.
    QStringList texts();
};

template <typename Control> QStringList tst_PanelLook::descriptions()
{
    QStringList lines;
    const QList<QWidget *> widgets = widgetsInOrder(*panel().layout());
    for (const QWidget *widget : widgets) {
        if (const auto *control = qobject_cast<const Control *>(widget))
            lines << describe(*control);
    }
    return lines;
}

QStringList tst_PanelLook::texts()
{
    QStringList lines;
    const QList<QWidget *> widgets = widgetsInOrder(*panel().layout());
    for (const QWidget *widget : widgets) {
        if (const auto *label = qobject_cast<const QLabel *>(widget))
            lines << label->text();
        else if (const auto *button = qobject_cast<const Button *>(widget))
            lines << button->text();
    }
    return lines;
}

void tst_PanelLook::columnsHoldTheseWidgetsInOrder_data()
{
    QTest::addColumn<PanelModel>("model");
    QTest::addColumn<QStringList>("layout");
    QTest::newRow("rx1") << panelModel("rx1") << rx1Layout();
    QTest::newRow("rx2") << panelModel("rx2") << rx2Layout();
    QTest::newRow("rm") << panelModel("rm") << rmLayout();
}

void tst_PanelLook::columnsHoldTheseWidgetsInOrder()
{
    QFETCH(PanelModel, model);
    begin(model);
    build();
    QVERIFY(panel().layout());
    QTEST(describe(*panel().layout()), "layout");
    // And nothing beside the layout.
    const QList<QWidget *> children =
        panel().findChildren<QWidget *>(QString(), Qt::FindDirectChildrenOnly);
    QCOMPARE(children.size(), widgetsInOrder(*panel().layout()).size());
}

void tst_PanelLook::knobsLookLikeThis_data()
{
    QTest::addColumn<PanelModel>("model");
    QTest::addColumn<QStringList>("knobs");
    QTest::newRow("rx1") << panelModel(
        "rx1") << QStringList({gainKnob("Mic", 42), volumeKnob("Headphone"), phoneKnob("OtgToHp")});
    QTest::newRow("rx2") << panelModel("rx2")
                         << QStringList({gainKnob("Mic1", 56), gainKnob("Mic2", 56),
                                         volumeKnob("Speaker"), phoneKnob("OtgToSP"),
                                         volumeKnob("Headphone"), phoneKnob("OtgToHp")});
    QTest::newRow("rm") << panelModel("rm")
                        << QStringList({gainKnob("Mic", 42), volumeKnob("Headphone")});
}

void tst_PanelLook::knobsLookLikeThis()
{
    QFETCH(PanelModel, model);
    begin(model);
    build();
    QTEST(descriptions<Knob>(), "knobs");
}

void tst_PanelLook::buttonsLookLikeThis_data()
{
    QTest::addColumn<PanelModel>("model");
    QTest::addColumn<QStringList>("buttons");
    const QString direct = inputButton("MonitorMic", "DIRECT", "#00FFFF");
    QTest::newRow("rx1") << panelModel("rx1")
                         << QStringList{inputButton("MicInstr", "MIC", "#00ff7f"),
                                        inputButton("Mic20dB", "20dB", "#ff7f00"),
                                        inputButton("Mic48V", "48V", "#ff1111"), direct}
            + outputButtons("Headphone");
    QTest::newRow("rx2") << panelModel("rx2")
                         << rx2InputButtons("Mic1") + rx2InputButtons("Mic2")
            + outputButtons("Speaker") + outputButtons("Headphone");
    QTest::newRow("rm") << panelModel("rm") << QStringList{direct} + outputButtons("Headphone");
}

void tst_PanelLook::buttonsLookLikeThis()
{
    QFETCH(PanelModel, model);
    begin(model);
    build();
    QTEST(descriptions<Button>(), "buttons");
}

void tst_PanelLook::buttonsAreStyledFromTheStart()
{
    QFETCH(PanelModel, model);
    begin(model);
    build();
    const QList<Button *> buttons = panel().findChildren<Button *>();
    QVERIFY(!buttons.isEmpty());
    for (Button *button : buttons) {
        QCOMPARE(button->styleSheet(), styleOf(*button));
        button->setSelected(true);
        QCOMPARE(button->styleSheet(), styleOf(*button));
    }
}

void tst_PanelLook::buttonsIgnoreNoPress()
{
    QFETCH(PanelModel, model);
    begin(model);
    build();
    const QList<Button *> buttons = panel().findChildren<Button *>();
    for (Button *button : buttons) {
        QTest::mouseClick(button, Qt::LeftButton, Qt::ControlModifier);
        QVERIFY(button->isSelected);
    }
}

void tst_PanelLook::phoneRowsAreSpacedByEight()
{
    for (const PanelModel &model : allPanelModels()) {
        begin(model);
        build();
        const QList<Knob *> knobs = panel().findChildren<Knob *>();
        for (const Knob *knob : knobs) {
            if (!knob->objectName().startsWith("Otg"))
                continue;
            const auto *row = layoutOf(*panel().layout(), *knob);
            QVERIFY(row);
            QCOMPARE(row->spacing(), 8);
        }
    }
}

void tst_PanelLook::exactlyTheseTextsAreTranslated_data()
{
    QTest::addColumn<PanelModel>("model");
    QTest::addColumn<QStringList>("asked");
    QTest::addColumn<QStringList>("shown");
    QTest::newRow("rx1") << panelModel("rx1")
                         << QStringList({"rx1: DIRECT", "rx1: Gain", "rx1: HEADPHONE", "rx1: INPUT",
                                         "rx1: MIC", "rx1: Phone To HP Volume", "rx1: Volume"})
                         << QStringList({"«INPUT»", "-160 dB", "«Gain»", "«MIC»", "20dB", "48V",
                                         "«DIRECT»", "«HEADPHONE»", "«Volume»", "MUTE", "DIM",
                                         "-160 dB", "«Phone To HP Volume»"});
    QTest::newRow("rx2")
        << panelModel("rx2")
        << QStringList({"rx2: DIRECT", "rx2: Gain", "rx2: HEADPHONE", "rx2: MIC1", "rx2: MIC2",
                        "rx2: Phone To HP Volume", "rx2: Phone To SP Volume", "rx2: SPEAKER",
                        "rx2: Volume"})
        << QStringList(
               {"«MIC1»",      "-160 dB",  "«Gain»", "20dB", "48V",     "«DIRECT»",
                "«MIC2»",      "-160 dB",  "«Gain»", "20dB", "48V",     "«DIRECT»",
                "«SPEAKER»",   "«Volume»", "MUTE",   "DIM",  "-160 dB", "«Phone To SP Volume»",
                "«HEADPHONE»", "«Volume»", "MUTE",   "DIM",  "-160 dB", "«Phone To HP Volume»"});
    QTest::newRow("rm") << panelModel("rm")
                        << QStringList({"rm: DIRECT", "rm: Gain", "rm: MIC", "rm: Volume"})
                        << QStringList({"«MIC»", "-160 dB", "«Gain»", "«DIRECT»", "HEADPHONE",
                                        "«Volume»", "MUTE", "DIM"});
}

void tst_PanelLook::exactlyTheseTextsAreTranslated()
{
    QFETCH(PanelModel, model);
    begin(model);
    const MarkingTranslator translator;
    build();
    QStringList asked = translator.asked();
    asked.sort();
    QTEST(asked, "asked");
    QTEST(texts(), "shown");
}

void tst_PanelLook::bothTextsOfTheInstrumentButtonAreTranslated()
{
    const MarkingTranslator translator;
    build();
    click("MicInstr");
    QCOMPARE(button("MicInstr").text(), "«INST»");
    QVERIFY(translator.asked().contains("rx1: INST"));
    click("MicInstr");
    QCOMPARE(button("MicInstr").text(), "«MIC»");
}

void tst_PanelLook::panelsHaveNoParent()
{
    QFETCH(PanelModel, model);
    begin(model);
    build();
    QVERIFY(!panel().parent());
    QCOMPARE(panel().metaObject()->className(), model.name);
}

QTEST_MAIN(tst_PanelLook)
#include "tst_panellook.moc"
