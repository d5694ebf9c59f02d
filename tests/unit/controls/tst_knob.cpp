#include "knobfixture.h"

#include <QApplication>
#include <QEnterEvent>
#include <QLineEdit>
#include <QMetaMethod>
#include <QRegularExpression>
#include <QTest>
#include <QWheelEvent>

namespace {

using namespace knobfixture;

void turnWheel(QWidget &widget, QPoint angleDelta)
{
    const QPointF position = widget.rect().center();
    QWheelEvent event(position, widget.mapToGlobal(position), QPoint(), angleDelta, Qt::NoButton,
                      Qt::NoModifier, Qt::NoScrollPhase, false);
    QApplication::sendEvent(&widget, &event);
}

void move(QWidget &widget, QPoint position, Qt::MouseButtons held = Qt::LeftButton)
{
    QMouseEvent event(QEvent::MouseMove, position, widget.mapToGlobal(QPointF(position)),
                      Qt::NoButton, held, Qt::NoModifier);
    QApplication::sendEvent(&widget, &event);
}

} // namespace

class KnobTest : public QObject
{
    Q_OBJECT

private slots:
    void init();

    void startsAtItsDefaults();
    void startsWithAHiddenEditorOfItsOwn();
    void declaresItsSignalAndSlot();

    void setValueStoresAndEmits();
    void setValueEmitsTheSameValueAgain();
    void setValueClampsToTheRange();
    void setValueTakesTheMinimumWhenTheBoundsAreInverted();
    void setValueRepaints();

    void ctrlClickSetsTheMinimum();
    void ctrlClickAtTheMinimumStillEmits();
    void ctrlClickWorksWithOtherModifiersAndButtons();
    void plainClickDoesNothing();

    void dragUpAddsOne();
    void dragDownSubtractsOne();
    void dragRightAddsOne();
    void dragLeftSubtractsOne();
    void dragDiagonallyUpRightAddsTwoInOneEvent();
    void dragDiagonallyDownLeftSubtractsTwoInOneEvent();
    void dragUpLeftCancelsOutAndStillEmits();
    void dragWithoutMovementStillEmits();
    void dragStepsByOneHoweverFarThePointerMoved();
    void firstDragMoveComparesAgainstTheOrigin();
    void firstMoveOfALaterDragComparesAgainstTheEndOfTheEarlierOne();
    void dragUpRightOneBelowTheMaximumStopsThere();
    void dragAtTheMaximumStaysAndStillEmits();
    void dragAtTheMinimumStaysAndStillEmits();
    void dragDownRightAtTheMaximumEndsAtTheMaximum();
    void dragClampsAValueBeyondTheRange();
    void dragWithInvertedBoundsGivesTheMinimum();
    void moveWithoutTheLeftButtonDoesNothing();

    void wheelUpAddsOne();
    void wheelDownSubtractsOne();
    void wheelStepsByOneWhateverTheDelta();
    void wheelUpAtTheMaximumStaysAndStillEmits();
    void wheelDownAtTheMinimumStaysAndStillEmits();
    void wheelWithoutVerticalDeltaCountsDown();
    void wheelClampsAValueBeyondTheRange();
    void wheelWithInvertedBoundsGivesTheMinimum();
    void wheelIsNotPassedOnToTheParent();

    void enterAndLeaveKeepHovered();
};

void KnobTest::init()
{
    QTest::failOnWarning(QRegularExpression(".?"));
}

// Construction

void KnobTest::startsAtItsDefaults()
{
    const Knob knob;
    QCOMPARE(knob.value, -80);
    QCOMPARE(knob.arcWidth, 7);
    QCOMPARE(knob.roundCap, true);
    QCOMPARE(knob.maxValue, 6);
    QCOMPARE(knob.minValue, -80);
    QCOMPARE(knob.arcColor, QColor("#00ffff"));
    QCOMPARE(knob.showText, true);
    QCOMPARE(knob.fontFamily, QString("Segoe UI"));
    QCOMPARE(knob.fontSize, 12);
    QCOMPARE(knob.suffix, QString("dB"));
    QCOMPARE(knob.textColor, QColor("#ff79c6"));
    QCOMPARE(knob.showTrack, true);
    QCOMPARE(knob.trackColor, QColor("#44475a"));
    QCOMPARE(knob.faceRatio, 0.8);
    QCOMPARE(knob.accentColor.isValid(), false);
    QCOMPARE(knob.lastY, 0);
    QCOMPARE(knob.lastX, 0);
    QCOMPARE(knob.hovered, false);
    QCOMPARE(knob.displayOffset, 0);
    QCOMPARE(knob.textRect, QRect());
}

void KnobTest::startsWithAHiddenEditorOfItsOwn()
{
    QWidget parent;
    auto *knob = new Knob(&parent);
    QCOMPARE(knob->parentWidget(), &parent);
    QCOMPARE(knob->editor->parentWidget(), knob);
    parent.show();
    QVERIFY(QTest::qWaitForWindowExposed(&parent));
    QVERIFY(knob->isVisible());
    QVERIFY(!knob->editor->isVisible());
}

void KnobTest::declaresItsSignalAndSlot()
{
    const QMetaObject &meta = Knob::staticMetaObject;
    QCOMPARE(meta.className(), "Knob");
    const QMetaMethod changed = meta.method(meta.indexOfMethod("valueChangedSig(int)"));
    QCOMPARE(changed.methodType(), QMetaMethod::Signal);
    QCOMPARE(changed.parameterNames(), QByteArrayList({"value"}));
    const QMetaMethod finish = meta.method(meta.indexOfMethod("finishEdit()"));
    QCOMPARE(finish.methodType(), QMetaMethod::Slot);
}

// setValue()

void KnobTest::setValueStoresAndEmits()
{
    Knob knob;
    const QSignalSpy spy(&knob, &Knob::valueChangedSig);
    knob.setValue(-20);
    QCOMPARE(knob.value, -20);
    QCOMPARE(values(spy), QList<int>({-20}));
}

void KnobTest::setValueEmitsTheSameValueAgain()
{
    Knob knob;
    const QSignalSpy spy(&knob, &Knob::valueChangedSig);
    knob.setValue(-80);
    knob.setValue(-80);
    QCOMPARE(values(spy), QList<int>({-80, -80}));
}

void KnobTest::setValueClampsToTheRange()
{
    RangedKnob knob(0, 42, 0);
    const QSignalSpy spy(&knob, &Knob::valueChangedSig);
    knob.setValue(50);
    QCOMPARE(knob.value, 42);
    knob.setValue(-1);
    QCOMPARE(knob.value, 0);
    knob.setValue(42);
    knob.setValue(0);
    QCOMPARE(values(spy), QList<int>({42, 0, 42, 0}));
}

void KnobTest::setValueTakesTheMinimumWhenTheBoundsAreInverted()
{
    RangedKnob knob(10, -10, 0);
    const QSignalSpy spy(&knob, &Knob::valueChangedSig);
    knob.setValue(0);
    knob.setValue(20);
    knob.setValue(-20);
    QCOMPARE(values(spy), QList<int>({10, 10, 10}));
    QCOMPARE(knob.value, 10);
}

void KnobTest::setValueRepaints()
{
    RangedKnob knob(-80, 6, -20);
    knob.show();
    QVERIFY(QTest::qWaitForWindowExposed(&knob));
    QTRY_VERIFY(!knob.textRect.isEmpty());
    const int width = knob.textRect.width();
    knob.setValue(5);
    QTRY_VERIFY(knob.textRect.width() < width);
}

// Press

void KnobTest::ctrlClickSetsTheMinimum()
{
    RangedKnob knob(-80, 6, -20);
    const QSignalSpy spy(&knob, &Knob::valueChangedSig);
    QTest::mousePress(&knob, Qt::LeftButton, Qt::ControlModifier);
    QCOMPARE(knob.value, -80);
    QTest::mouseRelease(&knob, Qt::LeftButton, Qt::ControlModifier);
    QCOMPARE(values(spy), QList<int>({-80}));
}

void KnobTest::ctrlClickAtTheMinimumStillEmits()
{
    RangedKnob knob(0, 42, 0);
    const QSignalSpy spy(&knob, &Knob::valueChangedSig);
    QTest::mouseClick(&knob, Qt::LeftButton, Qt::ControlModifier);
    QCOMPARE(values(spy), QList<int>({0}));
}

void KnobTest::ctrlClickWorksWithOtherModifiersAndButtons()
{
    RangedKnob knob(-80, 6, -20);
    const QSignalSpy spy(&knob, &Knob::valueChangedSig);
    QTest::mouseClick(&knob, Qt::RightButton, Qt::ControlModifier | Qt::ShiftModifier);
    QCOMPARE(values(spy), QList<int>({-80}));
}

void KnobTest::plainClickDoesNothing()
{
    RangedKnob knob(-80, 6, -20);
    const QSignalSpy spy(&knob, &Knob::valueChangedSig);
    QTest::mouseClick(&knob, Qt::LeftButton, Qt::NoModifier, QPoint(30, 40));
    QTest::mouseClick(&knob, Qt::LeftButton, Qt::ShiftModifier, QPoint(30, 40));
    QCOMPARE(knob.value, -20);
    QCOMPARE(spy.count(), 0);
    QCOMPARE(QPoint(knob.lastX, knob.lastY), QPoint(0, 0));
}

// Drag

void KnobTest::dragUpAddsOne()
{
    RangedKnob knob(-80, 6, -20);
    knob.lastX = 60;
    knob.lastY = 60;
    const QSignalSpy spy(&knob, &Knob::valueChangedSig);
    QTest::mousePress(&knob, Qt::LeftButton, Qt::NoModifier, QPoint(60, 60));
    QTest::mouseMove(&knob, QPoint(60, 59));
    QTest::mouseMove(&knob, QPoint(60, 58));
    QTest::mouseRelease(&knob, Qt::LeftButton, Qt::NoModifier, QPoint(60, 58));
    QCOMPARE(values(spy), QList<int>({-19, -18}));
    QCOMPARE(knob.value, -18);
    QCOMPARE(QPoint(knob.lastX, knob.lastY), QPoint(60, 58));
}

void KnobTest::dragDownSubtractsOne()
{
    RangedKnob knob(-80, 6, -20);
    knob.lastX = 60;
    knob.lastY = 60;
    const QSignalSpy spy(&knob, &Knob::valueChangedSig);
    move(knob, QPoint(60, 61));
    move(knob, QPoint(60, 62));
    QCOMPARE(values(spy), QList<int>({-21, -22}));
}

void KnobTest::dragRightAddsOne()
{
    RangedKnob knob(-80, 6, -20);
    knob.lastX = 60;
    knob.lastY = 60;
    const QSignalSpy spy(&knob, &Knob::valueChangedSig);
    move(knob, QPoint(61, 60));
    QCOMPARE(values(spy), QList<int>({-19}));
}

void KnobTest::dragLeftSubtractsOne()
{
    RangedKnob knob(-80, 6, -20);
    knob.lastX = 60;
    knob.lastY = 60;
    const QSignalSpy spy(&knob, &Knob::valueChangedSig);
    move(knob, QPoint(59, 60));
    QCOMPARE(values(spy), QList<int>({-21}));
}

void KnobTest::dragDiagonallyUpRightAddsTwoInOneEvent()
{
    RangedKnob knob(-80, 6, -20);
    knob.lastX = 60;
    knob.lastY = 60;
    const QSignalSpy spy(&knob, &Knob::valueChangedSig);
    move(knob, QPoint(61, 59));
    QCOMPARE(values(spy), QList<int>({-18}));
}

void KnobTest::dragDiagonallyDownLeftSubtractsTwoInOneEvent()
{
    RangedKnob knob(-80, 6, -20);
    knob.lastX = 60;
    knob.lastY = 60;
    const QSignalSpy spy(&knob, &Knob::valueChangedSig);
    move(knob, QPoint(59, 61));
    QCOMPARE(values(spy), QList<int>({-22}));
}

void KnobTest::dragUpLeftCancelsOutAndStillEmits()
{
    RangedKnob knob(-80, 6, -20);
    knob.lastX = 60;
    knob.lastY = 60;
    const QSignalSpy spy(&knob, &Knob::valueChangedSig);
    move(knob, QPoint(59, 59));
    QCOMPARE(values(spy), QList<int>({-20}));
}

void KnobTest::dragWithoutMovementStillEmits()
{
    RangedKnob knob(-80, 6, -20);
    knob.lastX = 60;
    knob.lastY = 60;
    const QSignalSpy spy(&knob, &Knob::valueChangedSig);
    move(knob, QPoint(60, 60));
    QCOMPARE(values(spy), QList<int>({-20}));
}

void KnobTest::dragStepsByOneHoweverFarThePointerMoved()
{
    RangedKnob knob(-80, 6, -20);
    knob.lastX = 60;
    knob.lastY = 60;
    const QSignalSpy spy(&knob, &Knob::valueChangedSig);
    move(knob, QPoint(60, -500));
    move(knob, QPoint(900, -500));
    QCOMPARE(values(spy), QList<int>({-19, -18}));
}

void KnobTest::firstDragMoveComparesAgainstTheOrigin()
{
    RangedKnob knob(-80, 6, -20);
    const QSignalSpy spy(&knob, &Knob::valueChangedSig);
    QTest::mousePress(&knob, Qt::LeftButton, Qt::NoModifier, QPoint(60, 60));
    // Up by one, but below and right of the origin: down and up cancel out.
    QTest::mouseMove(&knob, QPoint(60, 59));
    QTest::mouseRelease(&knob, Qt::LeftButton, Qt::NoModifier, QPoint(60, 59));
    QCOMPARE(values(spy), QList<int>({-20}));

    // In the origin's own column only the way down counts.
    RangedKnob other(-80, 6, -20);
    const QSignalSpy otherSpy(&other, &Knob::valueChangedSig);
    QTest::mousePress(&other, Qt::LeftButton, Qt::NoModifier, QPoint(0, 60));
    QTest::mouseMove(&other, QPoint(0, 59));
    QTest::mouseRelease(&other, Qt::LeftButton, Qt::NoModifier, QPoint(0, 59));
    QCOMPARE(values(otherSpy), QList<int>({-21}));
}

void KnobTest::firstMoveOfALaterDragComparesAgainstTheEndOfTheEarlierOne()
{
    RangedKnob knob(-80, 6, -20);
    QTest::mousePress(&knob, Qt::LeftButton, Qt::NoModifier, QPoint(60, 60));
    QTest::mouseMove(&knob, QPoint(50, 30));
    QTest::mouseRelease(&knob, Qt::LeftButton, Qt::NoModifier, QPoint(50, 30));
    const QSignalSpy spy(&knob, &Knob::valueChangedSig);
    const int before = knob.value;
    QTest::mousePress(&knob, Qt::LeftButton, Qt::NoModifier, QPoint(50, 80));
    QTest::mouseMove(&knob, QPoint(50, 79)); // up within this drag, down from the earlier one
    QTest::mouseRelease(&knob, Qt::LeftButton, Qt::NoModifier, QPoint(50, 79));
    QCOMPARE(values(spy), QList<int>({before - 1}));
}

void KnobTest::dragUpRightOneBelowTheMaximumStopsThere()
{
    RangedKnob knob(-80, 6, 5);
    knob.lastX = 60;
    knob.lastY = 60;
    const QSignalSpy spy(&knob, &Knob::valueChangedSig);
    move(knob, QPoint(61, 59));
    QCOMPARE(values(spy), QList<int>({6}));
}

void KnobTest::dragAtTheMaximumStaysAndStillEmits()
{
    RangedKnob knob(-80, 6, 6);
    knob.lastX = 60;
    knob.lastY = 60;
    const QSignalSpy spy(&knob, &Knob::valueChangedSig);
    move(knob, QPoint(60, 59));
    move(knob, QPoint(61, 59));
    QCOMPARE(values(spy), QList<int>({6, 6}));
}

void KnobTest::dragAtTheMinimumStaysAndStillEmits()
{
    RangedKnob knob(-80, 6, -80);
    knob.lastX = 60;
    knob.lastY = 60;
    const QSignalSpy spy(&knob, &Knob::valueChangedSig);
    move(knob, QPoint(60, 61));
    move(knob, QPoint(59, 61));
    QCOMPARE(values(spy), QList<int>({-80, -80}));
}

void KnobTest::dragDownRightAtTheMaximumEndsAtTheMaximum()
{
    RangedKnob knob(-80, 6, 6);
    knob.lastX = 60;
    knob.lastY = 60;
    const QSignalSpy spy(&knob, &Knob::valueChangedSig);
    move(knob, QPoint(61, 61)); // first down, then up again
    knob.value = -80;
    move(knob, QPoint(62, 62)); // cannot go down, then up
    QCOMPARE(values(spy), QList<int>({6, -79}));
}

void KnobTest::dragClampsAValueBeyondTheRange()
{
    RangedKnob knob(-80, 6, 20);
    const QSignalSpy spy(&knob, &Knob::valueChangedSig);
    move(knob, QPoint(0, 0));
    knob.value = -100;
    move(knob, QPoint(0, 0));
    QCOMPARE(values(spy), QList<int>({6, -80}));
}

void KnobTest::dragWithInvertedBoundsGivesTheMinimum()
{
    RangedKnob knob(10, -10, 0);
    const QSignalSpy spy(&knob, &Knob::valueChangedSig);
    move(knob, QPoint(5, 0));
    move(knob, QPoint(0, 0));
    QCOMPARE(values(spy), QList<int>({10, 10}));
}

void KnobTest::moveWithoutTheLeftButtonDoesNothing()
{
    RangedKnob knob(-80, 6, -20);
    const QSignalSpy spy(&knob, &Knob::valueChangedSig);
    move(knob, QPoint(30, 40), Qt::NoButton);
    move(knob, QPoint(40, 50), Qt::RightButton);
    QCOMPARE(knob.value, -20);
    QCOMPARE(spy.count(), 0);
    QCOMPARE(QPoint(knob.lastX, knob.lastY), QPoint(0, 0));
    move(knob, QPoint(0, 50), Qt::LeftButton | Qt::RightButton);
    QCOMPARE(values(spy), QList<int>({-21}));
}

// Wheel

void KnobTest::wheelUpAddsOne()
{
    RangedKnob knob(-80, 6, -20);
    const QSignalSpy spy(&knob, &Knob::valueChangedSig);
    turnWheel(knob, QPoint(0, 120));
    QCOMPARE(knob.value, -19);
    QCOMPARE(values(spy), QList<int>({-19}));
}

void KnobTest::wheelDownSubtractsOne()
{
    RangedKnob knob(-80, 6, -20);
    const QSignalSpy spy(&knob, &Knob::valueChangedSig);
    turnWheel(knob, QPoint(0, -120));
    QCOMPARE(knob.value, -21);
    QCOMPARE(values(spy), QList<int>({-21}));
}

void KnobTest::wheelStepsByOneWhateverTheDelta()
{
    RangedKnob knob(-80, 6, -20);
    const QSignalSpy spy(&knob, &Knob::valueChangedSig);
    turnWheel(knob, QPoint(0, 1));
    turnWheel(knob, QPoint(0, 960));
    turnWheel(knob, QPoint(0, -1));
    turnWheel(knob, QPoint(0, -960));
    QCOMPARE(values(spy), QList<int>({-19, -18, -19, -20}));
}

void KnobTest::wheelUpAtTheMaximumStaysAndStillEmits()
{
    RangedKnob knob(-80, 6, 6);
    const QSignalSpy spy(&knob, &Knob::valueChangedSig);
    turnWheel(knob, QPoint(0, 120));
    QCOMPARE(knob.value, 6);
    QCOMPARE(values(spy), QList<int>({6}));
}

void KnobTest::wheelDownAtTheMinimumStaysAndStillEmits()
{
    RangedKnob knob(-80, 6, -80);
    const QSignalSpy spy(&knob, &Knob::valueChangedSig);
    turnWheel(knob, QPoint(0, -120));
    QCOMPARE(knob.value, -80);
    QCOMPARE(values(spy), QList<int>({-80}));
}

void KnobTest::wheelWithoutVerticalDeltaCountsDown()
{
    RangedKnob knob(-80, 6, -20);
    const QSignalSpy spy(&knob, &Knob::valueChangedSig);
    turnWheel(knob, QPoint(120, 0));
    turnWheel(knob, QPoint(0, 0));
    QCOMPARE(values(spy), QList<int>({-21, -22}));
}

void KnobTest::wheelClampsAValueBeyondTheRange()
{
    RangedKnob knob(-80, 6, 20);
    const QSignalSpy spy(&knob, &Knob::valueChangedSig);
    turnWheel(knob, QPoint(0, 120));
    knob.value = -100;
    turnWheel(knob, QPoint(0, -120));
    QCOMPARE(values(spy), QList<int>({6, -80}));
}

void KnobTest::wheelWithInvertedBoundsGivesTheMinimum()
{
    RangedKnob knob(10, -10, 0);
    const QSignalSpy spy(&knob, &Knob::valueChangedSig);
    turnWheel(knob, QPoint(0, 120));
    turnWheel(knob, QPoint(0, -120));
    QCOMPARE(values(spy), QList<int>({10, 10}));
}

void KnobTest::wheelIsNotPassedOnToTheParent()
{
    RangedKnob parent(-80, 6, -20);
    RangedKnob child(-80, 6, 6, &parent);
    const QSignalSpy parentSpy(&parent, &Knob::valueChangedSig);
    const QSignalSpy childSpy(&child, &Knob::valueChangedSig);
    turnWheel(child, QPoint(0, 120));
    QCOMPARE(childSpy.count(), 1);
    QCOMPARE(parentSpy.count(), 0);
}

// Hovering

void KnobTest::enterAndLeaveKeepHovered()
{
    RangedKnob knob(-80, 6, -20);
    const QSignalSpy spy(&knob, &Knob::valueChangedSig);
    const QCursor cursor = knob.cursor();
    QEnterEvent enter(QPointF(5, 5), QPointF(5, 5), QPointF(5, 5));
    QApplication::sendEvent(&knob, &enter);
    QCOMPARE(knob.hovered, true);
    QEvent leave(QEvent::Leave);
    QApplication::sendEvent(&knob, &leave);
    QCOMPARE(knob.hovered, false);
    QCOMPARE(knob.cursor().shape(), cursor.shape());
    QCOMPARE(spy.count(), 0);
}

QTEST_MAIN(KnobTest)

#include "tst_knob.moc"
