#include "knobfixture.h"

#include <QApplication>
#include <QEnterEvent>
#include <QLineEdit>
#include <QMetaMethod>
#include <QWheelEvent>

namespace {

void turnWheel(QWidget &widget, QPoint angleDelta)
{
    const QPointF position = widget.rect().center();
    QWheelEvent event(position, widget.mapToGlobal(position), QPoint(), angleDelta, Qt::NoButton,
                      Qt::NoModifier, Qt::NoScrollPhase, false);
    QApplication::sendEvent(&widget, &event);
}

using Path = QList<QPoint>;

void move(QWidget &widget, QPoint position, Qt::MouseButtons held = Qt::LeftButton)
{
    QMouseEvent event(QEvent::MouseMove, position, widget.mapToGlobal(QPointF(position)),
                      Qt::NoButton, held, Qt::NoModifier);
    QApplication::sendEvent(&widget, &event);
}

/// Presses at the first point, releases at the last.
void drag(QWidget &widget, const Path &path)
{
    QTest::mousePress(&widget, Qt::LeftButton, Qt::NoModifier, path.constFirst());
    for (const QPoint &position : path.mid(1))
        QTest::mouseMove(&widget, position);
    QTest::mouseRelease(&widget, Qt::LeftButton, Qt::NoModifier, path.constLast());
}

} // namespace

class tst_Knob : public KnobFixture
{
    Q_OBJECT

private slots:
    void startsAtItsDefaults();
    void startsWithAHiddenEditorOfItsOwn();
    void declaresItsSignalAndSlot();

    void setValueStoresInRangeAndEmits_data();
    void setValueStoresInRangeAndEmits();
    void setValueRepaints();

    void ctrlClickSetsTheMinimum();
    void ctrlClickAtTheMinimumStillEmits();
    void ctrlClickWorksWithOtherModifiersAndButtons();
    void plainClickDoesNothing();

    void aDragWithTheMouseStepsAndKeepsThePosition();
    void aMoveStepsByWhereThePointerWas_data();
    void aMoveStepsByWhereThePointerWas();
    void firstDragMoveComparesAgainstTheOrigin_data();
    void firstDragMoveComparesAgainstTheOrigin();
    void firstMoveOfALaterDragComparesAgainstTheEndOfTheEarlierOne();
    void moveWithoutTheLeftButtonDoesNothing();

    void theWheelSteps_data();
    void theWheelSteps();
    void wheelIsNotPassedOnToTheParent();

    void enterAndLeaveKeepHovered();
};

// Construction

void tst_Knob::startsAtItsDefaults()
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

void tst_Knob::startsWithAHiddenEditorOfItsOwn()
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

void tst_Knob::declaresItsSignalAndSlot()
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

void tst_Knob::setValueStoresInRangeAndEmits_data()
{
    QTest::addColumn<Range>("range");
    QTest::addColumn<QList<int>>("set");
    QTest::addColumn<QList<int>>("emitted");
    QTest::newRow("a value") << decibels << QList<int>{-20} << QList<int>{-20};
    QTest::newRow("the same again") << decibels << QList<int>{-80, -80} << QList<int>{-80, -80};
    QTest::newRow("beyond the range")
        << gains << QList<int>{50, -1, 42, 0} << QList<int>{42, 0, 42, 0};
    QTest::newRow("inverted bounds")
        << inverted << QList<int>{0, 20, -20} << QList<int>{10, 10, 10};
}

void tst_Knob::setValueStoresInRangeAndEmits()
{
    QFETCH(Range, range);
    QFETCH(QList<int>, set);
    QFETCH(QList<int>, emitted);
    ObservedKnob knob(range, range.minimum);
    for (int i = 0; i < set.size(); ++i) {
        knob.setValue(set.at(i));
        QCOMPARE(knob.value, emitted.at(i));
    }
    QCOMPARE(knob.takeEmitted(), emitted);
}

void tst_Knob::setValueRepaints()
{
    ObservedKnob knob(decibels, -20);
    knob.show();
    QVERIFY(QTest::qWaitForWindowExposed(&knob));
    QTRY_VERIFY(!knob.textRect.isEmpty());
    const int width = knob.textRect.width();
    knob.setValue(5);
    QTRY_VERIFY(knob.textRect.width() < width);
}

// Press

void tst_Knob::ctrlClickSetsTheMinimum()
{
    ObservedKnob knob(decibels, -20);
    QTest::mousePress(&knob, Qt::LeftButton, Qt::ControlModifier);
    QCOMPARE(knob.value, -80);
    QTest::mouseRelease(&knob, Qt::LeftButton, Qt::ControlModifier);
    QCOMPARE(knob.takeEmitted(), QList<int>({-80}));
}

void tst_Knob::ctrlClickAtTheMinimumStillEmits()
{
    ObservedKnob knob(gains, 0);
    QTest::mouseClick(&knob, Qt::LeftButton, Qt::ControlModifier);
    QCOMPARE(knob.takeEmitted(), QList<int>({0}));
}

void tst_Knob::ctrlClickWorksWithOtherModifiersAndButtons()
{
    ObservedKnob knob(decibels, -20);
    QTest::mouseClick(&knob, Qt::RightButton, Qt::ControlModifier | Qt::ShiftModifier);
    QCOMPARE(knob.takeEmitted(), QList<int>({-80}));
}

void tst_Knob::plainClickDoesNothing()
{
    ObservedKnob knob(decibels, -20);
    QTest::mouseClick(&knob, Qt::LeftButton, Qt::NoModifier, QPoint(30, 40));
    QTest::mouseClick(&knob, Qt::LeftButton, Qt::ShiftModifier, QPoint(30, 40));
    QCOMPARE(knob.value, -20);
    QCOMPARE(knob.takeEmitted(), QList<int>());
    QCOMPARE(QPoint(knob.lastX, knob.lastY), QPoint(0, 0));
}

// Drag

void tst_Knob::aDragWithTheMouseStepsAndKeepsThePosition()
{
    ObservedKnob knob(decibels, -20);
    knob.lastX = 60;
    knob.lastY = 60;
    drag(knob, {QPoint(60, 60), QPoint(60, 59), QPoint(60, 58)});
    QCOMPARE(knob.takeEmitted(), QList<int>({-19, -18}));
    QCOMPARE(knob.value, -18);
    QCOMPARE(QPoint(knob.lastX, knob.lastY), QPoint(60, 58));
}

void tst_Knob::aMoveStepsByWhereThePointerWas_data()
{
    QTest::addColumn<Range>("range");
    QTest::addColumn<int>("value");
    QTest::addColumn<Path>("path");
    QTest::addColumn<QList<int>>("emitted");
    const auto row = [](const char *name, int value, const Path &path, const QList<int> &emitted) {
        QTest::newRow(name) << decibels << value << path << emitted;
    };
    const QPoint start(60, 60);
    row("down", -20, {start, {60, 61}, {60, 62}}, {-21, -22});
    row("right", -20, {start, {61, 60}}, {-19});
    row("left", -20, {start, {59, 60}}, {-21});
    row("up and right at once", -20, {start, {61, 59}}, {-18});
    row("down and left at once", -20, {start, {59, 61}}, {-22});
    row("up and left cancel out", -20, {start, {59, 59}}, {-20});
    row("nowhere", -20, {start, start}, {-20});
    row("far", -20, {start, {60, -500}, {900, -500}}, {-19, -18});

    row("up and right one below the maximum", 5, {start, {61, 59}}, {6});
    row("at the maximum", 6, {start, {60, 59}, {61, 59}}, {6, 6});
    row("at the minimum", -80, {start, {60, 61}, {59, 61}}, {-80, -80});
    row("first down, then up at the maximum", 6, {start, {61, 61}}, {6});
    row("cannot go down, then up at the minimum", -80, {start, {61, 61}}, {-79});
    row("above the range", 20, {start, start}, {6});
    row("below the range", -100, {start, start}, {-80});
    QTest::newRow("inverted bounds")
        << inverted << 0 << Path{{0, 0}, {5, 0}, {0, 0}} << QList<int>{10, 10};
}

void tst_Knob::aMoveStepsByWhereThePointerWas()
{
    QFETCH(Range, range);
    QFETCH(int, value);
    QFETCH(Path, path);
    ObservedKnob knob(range, value);
    knob.lastX = path.constFirst().x();
    knob.lastY = path.constFirst().y();
    for (const QPoint &position : path.mid(1))
        move(knob, position);
    QTEST(knob.takeEmitted(), "emitted");
}

void tst_Knob::firstDragMoveComparesAgainstTheOrigin_data()
{
    QTest::addColumn<Path>("path");
    QTest::addColumn<int>("emitted");
    // Up by one, but below and right of the origin: down and up cancel out.
    QTest::newRow("below and right of it") << Path{{60, 60}, {60, 59}} << -20;
    QTest::newRow("in its column only the way down counts") << Path{{0, 60}, {0, 59}} << -21;
}

void tst_Knob::firstDragMoveComparesAgainstTheOrigin()
{
    QFETCH(Path, path);
    QFETCH(int, emitted);
    ObservedKnob knob(decibels, -20);
    drag(knob, path);
    QCOMPARE(knob.takeEmitted(), QList<int>({emitted}));
}

void tst_Knob::firstMoveOfALaterDragComparesAgainstTheEndOfTheEarlierOne()
{
    ObservedKnob knob(decibels, -20);
    drag(knob, {QPoint(60, 60), QPoint(50, 30)});
    knob.takeEmitted();
    const int before = knob.value;
    drag(knob, {QPoint(50, 80), QPoint(50, 79)}); // up within this one, down from the earlier one
    QCOMPARE(knob.takeEmitted(), QList<int>({before - 1}));
}

void tst_Knob::moveWithoutTheLeftButtonDoesNothing()
{
    ObservedKnob knob(decibels, -20);
    move(knob, QPoint(30, 40), Qt::NoButton);
    move(knob, QPoint(40, 50), Qt::RightButton);
    QCOMPARE(knob.value, -20);
    QCOMPARE(knob.takeEmitted(), QList<int>());
    QCOMPARE(QPoint(knob.lastX, knob.lastY), QPoint(0, 0));
    move(knob, QPoint(0, 50), Qt::LeftButton | Qt::RightButton);
    QCOMPARE(knob.takeEmitted(), QList<int>({-21}));
}

// Wheel

void tst_Knob::theWheelSteps_data()
{
    QTest::addColumn<Range>("range");
    QTest::addColumn<int>("value");
    QTest::addColumn<Path>("turns");
    QTest::addColumn<QList<int>>("emitted");
    const auto row = [](const char *name, int value, const Path &turns, const QList<int> &emitted) {
        QTest::newRow(name) << decibels << value << turns << emitted;
    };
    row("up", -20, {{0, 120}}, {-19});
    row("down", -20, {{0, -120}}, {-21});
    row("by one whatever the delta", -20, {{0, 1}, {0, 960}, {0, -1}, {0, -960}},
        {-19, -18, -19, -20});
    row("up at the maximum", 6, {{0, 120}}, {6});
    row("down at the minimum", -80, {{0, -120}}, {-80});
    row("without vertical delta counts down", -20, {{120, 0}, {0, 0}}, {-21, -22});
    row("above the range", 20, {{0, 120}}, {6});
    row("below the range", -100, {{0, -120}}, {-80});
    QTest::newRow("inverted bounds")
        << inverted << 0 << Path{{0, 120}, {0, -120}} << QList<int>{10, 10};
}

void tst_Knob::theWheelSteps()
{
    QFETCH(Range, range);
    QFETCH(int, value);
    QFETCH(Path, turns);
    QFETCH(QList<int>, emitted);
    ObservedKnob knob(range, value);
    for (const QPoint &turn : turns)
        turnWheel(knob, turn);
    QCOMPARE(knob.takeEmitted(), emitted);
    QCOMPARE(knob.value, emitted.constLast());
}

void tst_Knob::wheelIsNotPassedOnToTheParent()
{
    ObservedKnob parent(decibels, -20);
    ObservedKnob child(decibels, 6, &parent);
    turnWheel(child, QPoint(0, 120));
    QCOMPARE(child.takeEmitted(), QList<int>({6}));
    QCOMPARE(parent.takeEmitted(), QList<int>());
}

// Hovering

void tst_Knob::enterAndLeaveKeepHovered()
{
    ObservedKnob knob(decibels, -20);
    const QCursor cursor = knob.cursor();
    QEnterEvent enter(QPointF(5, 5), QPointF(5, 5), QPointF(5, 5));
    QApplication::sendEvent(&knob, &enter);
    QCOMPARE(knob.hovered, true);
    QEvent leave(QEvent::Leave);
    QApplication::sendEvent(&knob, &leave);
    QCOMPARE(knob.hovered, false);
    QCOMPARE(knob.cursor().shape(), cursor.shape());
    QCOMPARE(knob.takeEmitted(), QList<int>());
}

QTEST_MAIN(tst_Knob)

#include "tst_knob.moc"
