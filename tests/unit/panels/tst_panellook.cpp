#include "layouttext.h"
#include "markingtranslator.h"
#include "panelfixture.h"

#include <QBoxLayout>
#include <QLabel>
#include <QMap>

namespace {

const QString bold = "font-weight: bold; font-size: 12px; color: white;";
const QString plain = "font-size: 12px; color: white;";
const QString smallPlain = "font-size: 10px; color: white;";
const QString meter = "label \"-160 dB\" color: #888888; font-size: 8px;";

/// As MarkingTranslator translates it.
QString marked(const QString &text)
{
    return QChar(0xab) + text + QChar(0xbb);
}

/// One whose text is translated.
QString label(const QString &text, const QString &style)
{
    return QString("label \"%1\" %2").arg(marked(text), style);
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
    // Its heading alone is not translated.
    const QStringList output = QStringList{"label \"HEADPHONE\" " + bold}
        + volume("Headphone", spaced) + QStringList{"stretch"};
    return QStringList{"row centred", "  column margins 10,10,20,10"} + indented(indented(input))
        + QStringList{"  separator", "  column margins 20,10,10,10"} + indented(indented(output));
}

const QMap<QString, QStringList (*)()> layouts{
    {"rx1", rx1Layout}, {"rx2", rx2Layout}, {"rm", rmLayout}};

QString knobLook(const PanelControl &knob)
{
    const bool isPhone = knob.kind == PanelControl::Kind::Phone;
    return QString("%1 at 10,10 %2 range %3..%4 arc %5 %6 text %7 #00ff7f accent #00ff7f")
        .arg(knob.name, isPhone ? "70x70" : "120x120")
        .arg(knob.minimum)
        .arg(knob.maximum)
        .arg(isPhone ? 3 : 7)
        .arg(knob.kind == PanelControl::Kind::Gain ? "#f1fa8c" : "#00ffff",
             isPhone ? "10pt" : "12pt");
}

/// What is on a button, in which colour it lights up, and how much room it takes at least.
struct ButtonLook {
    QString text;
    QString accent;
    int spareMetric = 10;
    int minimumHeight = 0;
};

ButtonLook lookOf(PanelControl::Kind kind)
{
    switch (kind) {
    case PanelControl::Kind::Instrument:
        return {marked("MIC"), "#00ff7f"};
    case PanelControl::Kind::Pad:
        return {"20dB", "#ff7f00"};
    case PanelControl::Kind::Phantom:
        return {"48V", "#ff1111"};
    case PanelControl::Kind::Monitor:
        return {marked("DIRECT"), "#00FFFF"};
    default:
        return {kind == PanelControl::Kind::Mute ? "MUTE" : "DIM", "#00FFFF", 12, 40};
    }
}

QString buttonLook(const PanelControl &button)
{
    const ButtonLook look = lookOf(button.kind);
    return QString("%1 %2 on %3/#1b1e23 off #8a95aa/#1b1e23 glow %3 radius 3 spare %4 at least "
                   "80x%5 at most 80x16777215")
        .arg(button.name, look.text, look.accent)
        .arg(look.spareMetric)
        .arg(look.minimumHeight);
}

QString look(const PanelControl &control)
{
    return control.isKnob() ? knobLook(control) : buttonLook(control);
}

QStringList looks(const QList<PanelControl> &controls)
{
    QStringList lines;
    for (const PanelControl &control : controls)
        lines << look(control);
    return lines;
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
    void columnsHoldTheseWidgetsInOrder_data() { addModelRows(); }
    void columnsHoldTheseWidgetsInOrder();
    void knobsLookLikeThis_data() { addModelRows(); }
    void knobsLookLikeThis();
    void buttonsLookLikeThis_data() { addModelRows(); }
    void buttonsLookLikeThis();
    void buttonsAreStyledFromTheStart_data() { addModelRows(); }
    void buttonsAreStyledFromTheStart();
    void buttonsIgnoreNoPress_data() { addModelRows(); }
    void buttonsIgnoreNoPress();
    void phoneRowsAreSpacedByEight();
    void noTextIsAskedForThatIsNotShown_data() { addModelRows(); }
    void noTextIsAskedForThatIsNotShown();
    void bothTextsOfTheInstrumentButtonAreTranslated_data() { addModelRows(); }
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

void tst_PanelLook::columnsHoldTheseWidgetsInOrder()
{
    QFETCH(PanelModel, model);
    begin(model);
    const MarkingTranslator translator;
    build();
    QVERIFY(panel().layout());
    QVERIFY2(layouts.contains(model.name), "The model's layout is not written out.");
    QCOMPARE(describe(*panel().layout()), layouts[model.name]());
    // And nothing beside the layout; screen readers go by the order of the children.
    const QList<QWidget *> children =
        panel().findChildren<QWidget *>(QString(), Qt::FindDirectChildrenOnly);
    QCOMPARE(children, widgetsInOrder(*panel().layout()));
}

void tst_PanelLook::knobsLookLikeThis()
{
    QFETCH(PanelModel, model);
    begin(model);
    build();
    QCOMPARE(descriptions<Knob>(), looks(model.knobs()));
}

void tst_PanelLook::buttonsLookLikeThis()
{
    QFETCH(PanelModel, model);
    begin(model);
    const MarkingTranslator translator;
    build();
    QCOMPARE(descriptions<Button>(), looks(model.buttons()));
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

void tst_PanelLook::noTextIsAskedForThatIsNotShown()
{
    QFETCH(PanelModel, model);
    begin(model);
    const MarkingTranslator translator;
    build();
    QStringList shown = texts().filter(QChar(0xab));
    shown.removeDuplicates();
    shown.sort();
    QStringList asked;
    const QStringList lines = translator.asked();
    for (const QString &line : lines) {
        QCOMPARE(line.section(": ", 0, 0), model.name);
        asked << marked(line.section(": ", 1));
    }
    asked.sort();
    QCOMPARE(asked, shown);
}

void tst_PanelLook::bothTextsOfTheInstrumentButtonAreTranslated()
{
    QFETCH(PanelModel, model);
    begin(model);
    const MarkingTranslator translator;
    build();
    for (const PanelControl &control : model.controls) {
        if (control.kind != PanelControl::Kind::Instrument)
            continue;
        const Button &instrument = button(control.name);
        QCOMPARE(instrument.text(), marked("MIC"));
        click(control.name);
        QCOMPARE(instrument.text(), marked("INST"));
        click(control.name);
        QCOMPARE(instrument.text(), marked("MIC"));
    }
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
