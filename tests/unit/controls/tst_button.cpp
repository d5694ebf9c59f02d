#include "button.h"

#include <QGraphicsDropShadowEffect>
#include <QLabel>
#include <QMetaMethod>
#include <QRegularExpression>
#include <QSignalSpy>
#include <QTest>
#include <QVBoxLayout>

namespace {

const QString styleOff =
    "QPushButton {   color: #00ff7f;   background-color: #1b1e23;   border-radius: 3px;}"
    "QPushButton:pressed {   background-color: #1b1e23;}";
const QString styleOn =
    "QPushButton {   color: #000000;   background-color: #00ff7f;   border-radius: 3px;}"
    "QPushButton:pressed {   background-color: #00ff7f;}";

struct Click {
    Qt::MouseButton button;
    Qt::KeyboardModifiers modifiers = {};
};

constexpr auto pressedSignal = qOverload<bool>(&Button::pressed);

QList<bool> statuses(const QSignalSpy &spy)
{
    QList<bool> list;
    for (const QList<QVariant> &arguments : spy)
        list.append(arguments.first().toBool());
    return list;
}

/// Counts the style sheets a button is given.
class StyleCounter : public QObject
{
public:
    explicit StyleCounter(Button &button) { button.installEventFilter(this); }

    int count = 0;

protected:
    bool eventFilter(QObject *watched, QEvent *event) override
    {
        if (event->type() == QEvent::StyleChange)
            ++count;
        return QObject::eventFilter(watched, event);
    }
};

void sendLeave(QWidget &widget)
{
    QEvent leave(QEvent::Leave);
    QApplication::sendEvent(&widget, &leave);
}

} // namespace

class tst_Button : public QObject
{
    Q_OBJECT

private slots:
    void init();

    void startsUnselectedWithItsDefaultLook();
    void startsWithoutAStyleSheet();
    void startsWithADisabledGlowOfItsOwn();
    void showsItsTextUnderAPointingHand();
    void takesTheBlurRadiusFromTheProvisionalWidth();
    void keepsTheBlurRadiusWhenResized();
    void keepsTheBlurRadiusWhenLaidOut();
    void declaresItsSignalsInOrder();

    void eachClickTogglesAndEmitsTwice_data();
    void eachClickTogglesAndEmitsTwice();
    void oneClickRefreshesTheStyleTwice();
    void aFurtherClickSetsOneStyleSheet();
    void aDoubleClickTogglesTwice();
    void theMouseFiresNoInheritedSignal();
    void theMouseNeverPushesTheButtonDown();
    void bothEmissionsCarryTheSameStatusWhateverTheReceiverDoes();
    void neverEmitsSelectedItself();

    void setSelectedSelectsAndEmitsOnce();
    void setSelectedTwiceEmitsOnceEachTimeAndRefreshesTheStyle();
    void setSelectedFalseDeselectsAndEmitsOnce();
    void setSelectedHasStateGlowAndStyleReadyWhenItEmits();

    void stylesAnUnselectedButton();
    void stylesASelectedButton();
    void stylesWithChangedMembers();
    void insertsColoursAsTheyAre();
    void refreshAppliesTheGlowColour();
    void refreshBringsTheGlowInLineWithTheState();
    void refreshEmitsNothing();
    void refreshSetsNoStyleSheetThatIsSetAlready();
    void paintsTheStyledBackground();
    void glowsBeyondItsEdgeOnlyWhileSelected();

    void leavingClearsHovered();
};

void tst_Button::init()
{
    QTest::failOnWarning(QRegularExpression(".?"));
}

void tst_Button::startsUnselectedWithItsDefaultLook()
{
    const Button button("48V");
    QCOMPARE(button.label, QString("48V"));
    QCOMPARE(button.spareMetric, 10);
    QCOMPARE(button.borderRadius, 3);
    QCOMPARE(button.textColorOn, QString("#000000"));
    QCOMPARE(button.textColorOff, QString("#00ff7f"));
    QCOMPARE(button.glowColor, QString("#00ff7f"));
    QCOMPARE(button.backgroundOn, QString("#00ff7f"));
    QCOMPARE(button.backgroundOff, QString("#1b1e23"));
    QCOMPARE(button.spareColor1, QString("#1b1e23"));
    QCOMPARE(button.spareColor2, QString("#1b1e23"));
    QCOMPARE(button.ctrlLock, false);
    QCOMPARE(button.hovered, false);
    QCOMPARE(button.isSelected, false);
}

void tst_Button::startsWithoutAStyleSheet()
{
    const Button button("48V");
    QCOMPARE(button.styleSheet(), QString());
}

void tst_Button::startsWithADisabledGlowOfItsOwn()
{
    const Button button("48V");
    QVERIFY(button.glow);
    QCOMPARE(button.graphicsEffect(), button.glow);
    QCOMPARE(button.glow->parent(), &button);
    QCOMPARE(button.glow->isEnabled(), false);
    QCOMPARE(button.glow->offset(), QPointF(0, 0));
    QCOMPARE(button.glow->color(), QColor("#00ff7f"));
}

void tst_Button::showsItsTextUnderAPointingHand()
{
    QWidget parent;
    const Button button("DIRECT", &parent);
    QCOMPARE(button.parentWidget(), &parent);
    QCOMPARE(button.text(), QString("DIRECT"));
    QCOMPARE(button.cursor().shape(), Qt::PointingHandCursor);
}

void tst_Button::takesTheBlurRadiusFromTheProvisionalWidth()
{
    QWidget parent;
    const Button child("MUTE", &parent);
    QVERIFY(child.width() > 0);
    QCOMPARE(child.glow->blurRadius(), child.width() * 0.01);

    const Button window("MUTE");
    QVERIFY(window.width() != child.width());
    QCOMPARE(window.glow->blurRadius(), window.width() * 0.01);
}

void tst_Button::keepsTheBlurRadiusWhenResized()
{
    QWidget parent;
    Button button("MUTE", &parent);
    const qreal radius = button.glow->blurRadius();
    button.resize(button.width() * 3, button.height());
    button.setSelected(true);
    QCOMPARE(button.glow->blurRadius(), radius);
}

void tst_Button::keepsTheBlurRadiusWhenLaidOut()
{
    QWidget window;
    auto *button = new Button("MUTE");
    const int provisionalWidth = button->width();
    const qreal radius = button->glow->blurRadius();
    button->setFixedWidth(80);
    (new QVBoxLayout(&window))->addWidget(button);
    window.grab(); // carries out the layout
    QCOMPARE(button->width(), 80);
    QVERIFY(provisionalWidth != 80);
    QCOMPARE(button->glow->blurRadius(), radius);
}

void tst_Button::declaresItsSignalsInOrder()
{
    const QMetaObject &meta = Button::staticMetaObject;
    QCOMPARE(meta.className(), "Button");
    const QMetaMethod first = meta.method(meta.methodOffset());
    const QMetaMethod second = meta.method(meta.methodOffset() + 1);
    QCOMPARE(first.methodType(), QMetaMethod::Signal);
    QCOMPARE(first.methodSignature(), QByteArray("selected(QString)"));
    QCOMPARE(first.parameterNames(), QByteArrayList({"text"}));
    QCOMPARE(second.methodType(), QMetaMethod::Signal);
    QCOMPARE(second.methodSignature(), QByteArray("pressed(bool)"));
    QCOMPARE(second.parameterNames(), QByteArrayList({"status"}));
}

void tst_Button::eachClickTogglesAndEmitsTwice_data()
{
    QTest::addColumn<bool>("ctrlLock");
    QTest::addColumn<QList<Click>>("clicks");
    QTest::addColumn<QList<bool>>("emitted");
    const Click plain{Qt::LeftButton, Qt::NoModifier};
    const Click withCtrl{Qt::LeftButton, Qt::ControlModifier};
    const Click withShift{Qt::LeftButton, Qt::ShiftModifier};
    const Click withBoth{Qt::LeftButton, Qt::ControlModifier | Qt::ShiftModifier};
    const QList<bool> on{true, true};
    const QList<bool> onAndOff{true, true, false, false};
    QTest::newRow("one") << false << QList{plain} << on;
    QTest::newRow("two") << false << QList{plain, plain} << onAndOff;
    QTest::newRow("other mouse buttons")
        << false << QList{Click{Qt::RightButton}, Click{Qt::MiddleButton}} << onAndOff;
    QTest::newRow("with Ctrl") << false << QList{withCtrl} << on;
    QTest::newRow("locked, with Ctrl") << true << QList{withCtrl} << QList<bool>();
    QTest::newRow("locked, with Ctrl and another") << true << QList{withBoth} << QList<bool>();
    QTest::newRow("locked, without Ctrl") << true << QList{plain, withShift} << onAndOff;
}

void tst_Button::eachClickTogglesAndEmitsTwice()
{
    QFETCH(bool, ctrlLock);
    QFETCH(QList<Click>, clicks);
    QFETCH(QList<bool>, emitted);
    Button button("48V");
    button.ctrlLock = ctrlLock;
    const QSignalSpy spy(&button, pressedSignal);
    const QSignalSpy inherited(&button, &QAbstractButton::pressed);
    for (const Click &click : clicks)
        QTest::mouseClick(&button, click.button, click.modifiers);
    QCOMPARE(statuses(spy), emitted);
    QCOMPARE(inherited.count(), 0);
    const bool isOn = !emitted.isEmpty() && emitted.constLast();
    QCOMPARE(button.isSelected, isOn);
    QCOMPARE(button.glow->isEnabled(), isOn);
    QCOMPARE(button.styleSheet(), emitted.isEmpty() ? QString() : isOn ? styleOn : styleOff);
}

void tst_Button::oneClickRefreshesTheStyleTwice()
{
    Button button("48V");
    button.ensurePolished();
    const StyleCounter styles(button);
    QTest::mouseClick(&button, Qt::LeftButton);
    QCOMPARE(styles.count, 2);
}

void tst_Button::aFurtherClickSetsOneStyleSheet()
{
    Button button("48V");
    button.ensurePolished();
    QTest::mouseClick(&button, Qt::LeftButton);
    const StyleCounter styles(button);
    QTest::mouseClick(&button, Qt::LeftButton);
    QCOMPARE(styles.count, 1);
    QCOMPARE(button.styleSheet(), styleOff);
}

void tst_Button::aDoubleClickTogglesTwice()
{
    Button button("48V");
    const QSignalSpy spy(&button, pressedSignal);
    QTest::mouseClick(&button, Qt::LeftButton);
    QTest::mouseDClick(&button, Qt::LeftButton);
    QCOMPARE(button.isSelected, false);
    QCOMPARE(statuses(spy), QList<bool>({true, true, false, false}));
}

void tst_Button::theMouseFiresNoInheritedSignal()
{
    Button button("48V");
    const QSignalSpy pressed(&button, &QAbstractButton::pressed);
    const QSignalSpy released(&button, &QAbstractButton::released);
    const QSignalSpy clicked(&button, &QAbstractButton::clicked);
    const QSignalSpy toggled(&button, &QAbstractButton::toggled);
    QTest::mouseClick(&button, Qt::LeftButton);
    QCOMPARE(button.isSelected, true);
    QCOMPARE(pressed.count(), 0);
    QCOMPARE(released.count(), 0);
    QCOMPARE(clicked.count(), 0);
    QCOMPARE(toggled.count(), 0);
}

void tst_Button::theMouseNeverPushesTheButtonDown()
{
    Button button("48V");
    QTest::mousePress(&button, Qt::LeftButton);
    QCOMPARE(button.isSelected, true);
    QCOMPARE(button.isDown(), false);
    QTest::mouseRelease(&button, Qt::LeftButton);
    QCOMPARE(button.isDown(), false);
    QCOMPARE(button.isSelected, true);
}

void tst_Button::bothEmissionsCarryTheSameStatusWhateverTheReceiverDoes()
{
    Button button("48V");
    QList<bool> received;
    QObject::connect(&button, pressedSignal, &button, [&](bool status) {
        received.append(status);
        button.isSelected = false;
    });
    QTest::mouseClick(&button, Qt::LeftButton);
    QCOMPARE(received, QList<bool>({true, true}));
}

void tst_Button::neverEmitsSelectedItself()
{
    Button button("48V");
    const QSignalSpy spy(&button, &Button::selected);
    QTest::mouseClick(&button, Qt::LeftButton);
    button.setSelected(false);
    button.setSelected(true);
    QVERIFY(spy.isValid());
    QCOMPARE(spy.count(), 0);
}

void tst_Button::setSelectedSelectsAndEmitsOnce()
{
    Button button("48V");
    const QSignalSpy spy(&button, pressedSignal);
    button.setSelected(true);
    QCOMPARE(button.isSelected, true);
    QCOMPARE(button.glow->isEnabled(), true);
    QCOMPARE(button.styleSheet(), styleOn);
    QCOMPARE(statuses(spy), QList<bool>({true}));
}

void tst_Button::setSelectedTwiceEmitsOnceEachTimeAndRefreshesTheStyle()
{
    Button button("48V");
    button.setSelected(true);
    button.setStyleSheet(QString());
    const QSignalSpy spy(&button, pressedSignal);
    button.setSelected(true);
    QCOMPARE(statuses(spy), QList<bool>({true}));
    QCOMPARE(button.isSelected, true);
    QCOMPARE(button.glow->isEnabled(), true);
    QCOMPARE(button.styleSheet(), styleOn);
}

void tst_Button::setSelectedFalseDeselectsAndEmitsOnce()
{
    Button button("48V");
    button.setSelected(true);
    const QSignalSpy spy(&button, pressedSignal);
    button.setSelected(false);
    QCOMPARE(button.isSelected, false);
    QCOMPARE(button.glow->isEnabled(), false);
    QCOMPARE(button.styleSheet(), styleOff);
    QCOMPARE(statuses(spy), QList<bool>({false}));
}

void tst_Button::setSelectedHasStateGlowAndStyleReadyWhenItEmits()
{
    Button button("48V");
    QString style;
    bool state = false;
    bool glow = false;
    QObject::connect(&button, pressedSignal, &button, [&] {
        style = button.styleSheet();
        state = button.isSelected;
        glow = button.glow->isEnabled();
    });
    button.setSelected(true);
    QCOMPARE(style, styleOn);
    QCOMPARE(state, true);
    QCOMPARE(glow, true);
}

void tst_Button::stylesAnUnselectedButton()
{
    Button button("48V");
    button.refreshStyle();
    QCOMPARE(button.styleSheet(), styleOff);
    QCOMPARE(button.glow->isEnabled(), false);
}

void tst_Button::stylesASelectedButton()
{
    Button button("48V");
    button.isSelected = true;
    button.refreshStyle();
    QCOMPARE(button.styleSheet(), styleOn);
    QCOMPARE(button.glow->isEnabled(), true);
}

void tst_Button::stylesWithChangedMembers()
{
    Button button("48V");
    button.borderRadius = 12;
    button.textColorOn = "#ff1111";
    button.textColorOff = "#8a95aa";
    button.backgroundOn = "#222222";
    button.backgroundOff = "#333333";
    button.refreshStyle();
    QCOMPARE(button.styleSheet(),
             QString("QPushButton {   color: #8a95aa;   background-color: #333333;   "
                     "border-radius: 12px;}QPushButton:pressed {   background-color: #333333;}"));
    button.setSelected(true);
    QCOMPARE(button.styleSheet(),
             QString("QPushButton {   color: #ff1111;   background-color: #222222;   "
                     "border-radius: 12px;}QPushButton:pressed {   background-color: #222222;}"));
}

void tst_Button::insertsColoursAsTheyAre()
{
    Button button("48V");
    button.textColorOff = "#8a95aa /* %2 */";
    button.backgroundOff = "rgb(10%, 20%, 30%)";
    button.refreshStyle();
    QCOMPARE(button.styleSheet(),
             QString("QPushButton {   color: #8a95aa /* %2 */;   "
                     "background-color: rgb(10%, 20%, 30%);   border-radius: 3px;}"
                     "QPushButton:pressed {   background-color: rgb(10%, 20%, 30%);}"));
}

void tst_Button::refreshAppliesTheGlowColour()
{
    Button button("48V");
    button.glowColor = "#00FFFF";
    QCOMPARE(button.glow->color(), QColor("#00ff7f"));
    button.refreshStyle();
    QCOMPARE(button.glow->color(), QColor("#00ffff"));
}

void tst_Button::refreshBringsTheGlowInLineWithTheState()
{
    Button button("48V");
    button.glow->setEnabled(true);
    button.refreshStyle();
    QCOMPARE(button.glow->isEnabled(), false);
    button.isSelected = true;
    button.refreshStyle();
    QCOMPARE(button.glow->isEnabled(), true);
}

void tst_Button::refreshEmitsNothing()
{
    Button button("48V");
    const QSignalSpy spy(&button, pressedSignal);
    button.refreshStyle();
    QCOMPARE(spy.count(), 0);
}

void tst_Button::refreshSetsNoStyleSheetThatIsSetAlready()
{
    Button button("48V");
    button.ensurePolished();
    button.refreshStyle();
    const StyleCounter styles(button);
    button.refreshStyle();
    button.setSelected(false);
    QCOMPARE(styles.count, 0);
    button.setSelected(true);
    QCOMPARE(styles.count, 1);
}

void tst_Button::paintsTheStyledBackground()
{
    Button button("48V");
    button.resize(80, 30);
    const QPoint beside(6, 6); // within the background, off the text
    button.refreshStyle();
    QCOMPARE(button.grab().toImage().pixelColor(beside), QColor("#1b1e23"));
    button.setSelected(true);
    QCOMPARE(button.grab().toImage().pixelColor(beside), QColor("#00ff7f"));
}

void tst_Button::glowsBeyondItsEdgeOnlyWhileSelected()
{
    QWidget window;
    window.setStyleSheet("background-color: black");
    window.resize(120, 80);
    Button button("48V", &window);
    button.setGeometry(20, 20, 80, 30);
    button.glow->setBlurRadius(8);
    const QPoint outside(60, 51);
    button.refreshStyle();
    QCOMPARE(window.grab().toImage().pixelColor(outside), QColor(Qt::black));
    button.setSelected(true);
    QVERIFY(window.grab().toImage().pixelColor(outside).green() > 20);
}

void tst_Button::leavingClearsHovered()
{
    Button button("48V");
    button.hovered = true;
    sendLeave(button);
    QCOMPARE(button.hovered, false);
}

QTEST_MAIN(tst_Button)

#include "tst_button.moc"
