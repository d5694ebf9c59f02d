#include "knobfixture.h"

#include <QLineEdit>
#include <QRegularExpression>
#include <QTest>

#include <limits>

namespace {

using namespace knobfixture;

/// A shown window with a knob in it, and another widget to give the focus to.
class Window : public QWidget
{
public:
    Window()
    {
        resize(2 * side, side);
        elsewhere.setGeometry(side + 10, 10, side - 20, 30);
    }

    bool showActive()
    {
        show();
        activateWindow();
        return QTest::qWaitForWindowActive(this);
    }

    RangedKnob knob{-80, 6, -20, this};
    QLineEdit elsewhere{this};
};

void openEditor(Knob &knob)
{
    QTest::mouseDClick(&knob, Qt::LeftButton, Qt::NoModifier, knob.textRect.center());
}

} // namespace

class KnobEditingTest : public QObject
{
    Q_OBJECT

private slots:
    void init();

    void doubleClickBesideTheTextSetsTheMinimum();
    void doubleClickOnTheTextSetsTheMinimumWhenTextIsOff();
    void doubleClickBeforeTheFirstPaintSetsTheMinimum();
    void doubleClickOnTheTextOpensTheEditor();
    void editorCoversTheTextLessItsMargins();
    void editorMarginsAreTruncatedPartsOfTheText();
    void editorShowsTheOffsetValueWithoutSuffix();
    void editorShowsTheOffsetAlsoForZero();
    void editorShowsNumbersBeyondAnyInt();

    void typingANumberAndReturnCommitsOnce();
    void losingFocusCommitsOnce();
    void typingTheSuffixIsAllowed();
    void typingSpaceAroundTheNumberAndASignIsAllowed_data();
    void typingSpaceAroundTheNumberAndASignIsAllowed();
    void typingBeyondTheRangeCommitsTheBound_data();
    void typingBeyondTheRangeCommitsTheBound();
    void typingNoNumberKeepsTheValueAndEmits_data();
    void typingNoNumberKeepsTheValueAndEmits();
    void anEmptySuffixIsAllowed();
    void escapeLeavesTheEditorOpen();
    void committingWithoutChangeKeepsTheValueAndEmits();
    void commitSubtractsTheOffset();
    void returnSubtractsTheOffsetOnlyOnce();
    void finishingFromOutsideSubtractsTheOffsetOnlyOnce();
    void commitOfNoNumberSubtractsTheOffsetFromTheOldValue();
    void commitSurvivesHugeNumbersAndOffsets_data();
    void commitSurvivesHugeNumbersAndOffsets();
    void aReopenedEditorShowsTheCommittedValue();
    void destructionWhileEditingCommitsNothing();
};

void KnobEditingTest::init()
{
    QTest::failOnWarning(QRegularExpression(".?"));
}

void KnobEditingTest::doubleClickBesideTheTextSetsTheMinimum()
{
    RangedKnob knob(-80, 6, -20);
    picture(knob);
    const QSignalSpy spy(&knob, &Knob::valueChangedSig);
    const QPoint beside(knob.textRect.center().x(), knob.textRect.top() - 1);
    QTest::mouseDClick(&knob, Qt::LeftButton, Qt::NoModifier, beside);
    QCOMPARE(knob.value, -80);
    QCOMPARE(values(spy), QList<int>({-80}));
    QVERIFY(knob.editor->isHidden());
}

void KnobEditingTest::doubleClickOnTheTextSetsTheMinimumWhenTextIsOff()
{
    RangedKnob knob(-80, 6, -20);
    picture(knob);
    knob.showText = false;
    const QSignalSpy spy(&knob, &Knob::valueChangedSig);
    openEditor(knob);
    QCOMPARE(values(spy), QList<int>({-80}));
    QVERIFY(knob.editor->isHidden());
}

void KnobEditingTest::doubleClickBeforeTheFirstPaintSetsTheMinimum()
{
    RangedKnob knob(-80, 6, -20);
    const QSignalSpy spy(&knob, &Knob::valueChangedSig);
    QTest::mouseDClick(&knob, Qt::LeftButton, Qt::NoModifier, knob.rect().center());
    QCOMPARE(values(spy), QList<int>({-80}));
    QVERIFY(knob.editor->isHidden());
}

void KnobEditingTest::doubleClickOnTheTextOpensTheEditor()
{
    Window window;
    QVERIFY(window.showActive());
    QTRY_VERIFY(!window.knob.textRect.isEmpty());
    const QSignalSpy spy(&window.knob, &Knob::valueChangedSig);
    openEditor(window.knob);
    QVERIFY(window.knob.editor->isVisible());
    QVERIFY(window.knob.editor->hasFocus());
    QCOMPARE(window.knob.editor->text(), QString("-20"));
    QCOMPARE(window.knob.editor->selectedText(), QString("-20"));
    QCOMPARE(window.knob.value, -20);
    QCOMPARE(spy.count(), 0);
}

void KnobEditingTest::editorCoversTheTextLessItsMargins()
{
    RangedKnob knob(-80, 6, -20);
    picture(knob);
    const QRect text = knob.textRect;
    openEditor(knob);
    const int dx = static_cast<int>(text.width() * 0.025);
    const int dy = static_cast<int>(text.height() * 0.025);
    QCOMPARE(knob.editor->geometry(), text.adjusted(dx, dy, -dx, -dy));
}

void KnobEditingTest::editorMarginsAreTruncatedPartsOfTheText()
{
    RangedKnob knob(-80, 6, -20);
    knob.textRect = QRect(10, 20, 79, 80); // 1.975 and 2.0 pixels
    openEditor(knob);
    QCOMPARE(knob.editor->geometry(), QRect(QPoint(11, 22), QPoint(87, 97)));
}

void KnobEditingTest::editorShowsTheOffsetValueWithoutSuffix()
{
    RangedKnob knob(-80, 6, -20);
    knob.displayOffset = 25;
    picture(knob);
    openEditor(knob);
    QCOMPARE(knob.editor->text(), QString("5"));
    QCOMPARE(knob.value, -20);
}

void KnobEditingTest::editorShowsTheOffsetAlsoForZero()
{
    RangedKnob knob(-80, 6, 0);
    knob.displayOffset = 25;
    picture(knob);
    openEditor(knob);
    QCOMPARE(knob.editor->text(), QString("25"));
}

void KnobEditingTest::editorShowsNumbersBeyondAnyInt()
{
    RangedKnob knob(-80, 6, 6);
    knob.displayOffset = std::numeric_limits<int>::max();
    picture(knob);
    openEditor(knob);
    QCOMPARE(knob.editor->text(), "2147483653");
    knob.finishEdit();
    QCOMPARE(knob.value, 6);
}

void KnobEditingTest::typingANumberAndReturnCommitsOnce()
{
    Window window;
    QVERIFY(window.showActive());
    QTRY_VERIFY(!window.knob.textRect.isEmpty());
    openEditor(window.knob);
    const QSignalSpy spy(&window.knob, &Knob::valueChangedSig);
    QTest::keyClicks(window.knob.editor, "-33"); // replaces the selected text
    QCOMPARE(spy.count(), 0);
    QTest::keyClick(window.knob.editor, Qt::Key_Return);
    QVERIFY(!window.knob.editor->isVisible());
    QVERIFY(!window.knob.editor->hasFocus());
    QCOMPARE(window.knob.value, -33);
    QCOMPARE(values(spy), QList<int>({-33}));
}

void KnobEditingTest::losingFocusCommitsOnce()
{
    Window window;
    QVERIFY(window.showActive());
    QTRY_VERIFY(!window.knob.textRect.isEmpty());
    openEditor(window.knob);
    const QSignalSpy spy(&window.knob, &Knob::valueChangedSig);
    QTest::keyClicks(window.knob.editor, "4");
    window.elsewhere.setFocus(Qt::MouseFocusReason);
    QVERIFY(!window.knob.editor->isVisible());
    QCOMPARE(window.knob.value, 4);
    QCOMPARE(values(spy), QList<int>({4}));
    QVERIFY(window.elsewhere.hasFocus());
}

void KnobEditingTest::typingTheSuffixIsAllowed()
{
    RangedKnob knob(0, 42, 0);
    const QSignalSpy spy(&knob, &Knob::valueChangedSig);
    knob.editor->setText("12dB");
    knob.finishEdit();
    knob.editor->setText("13 dB");
    knob.finishEdit();
    knob.suffix = "%";
    knob.editor->setText("14%");
    knob.finishEdit();
    QCOMPARE(values(spy), QList<int>({12, 13, 14}));
}

void KnobEditingTest::typingSpaceAroundTheNumberAndASignIsAllowed_data()
{
    QTest::addColumn<QString>("text");
    QTest::newRow("plus") << "+5";
    QTest::newRow("space") << "  5 ";
    QTest::newRow("other space") << "\t5\t";
    QTest::newRow("space and plus") << " +5 ";
    QTest::newRow("space and suffix") << " 5 dB";
    QTest::newRow("zeros") << "00000000000000000000000005";
}

void KnobEditingTest::typingSpaceAroundTheNumberAndASignIsAllowed()
{
    QFETCH(QString, text);
    RangedKnob knob(-80, 6, -20);
    const QSignalSpy spy(&knob, &Knob::valueChangedSig);
    knob.editor->setText(text);
    knob.finishEdit();
    QCOMPARE(values(spy), QList<int>({5}));
}

void KnobEditingTest::typingBeyondTheRangeCommitsTheBound_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<int>("expected");
    QTest::newRow("above") << "99" << 6;
    QTest::newRow("below") << "-99" << -80;
    QTest::newRow("above, with suffix") << "99dB" << 6;
    QTest::newRow("above any int") << "99999999999" << 6;
    QTest::newRow("below any int") << "-99999999999" << -80;
    QTest::newRow("5 after 2^32") << "4294967301" << 6;
    QTest::newRow("5 before -2^32") << "-4294967291" << -80;
    QTest::newRow("above 64 bits") << "99999999999999999999" << 6;
    QTest::newRow("below 64 bits") << "-99999999999999999999" << -80;
    QTest::newRow("above 64 bits, with sign and suffix") << "+99999999999999999999 dB" << 6;
    QTest::newRow("5 after 2^64") << "18446744073709551621" << 6;
    QTest::newRow("5 before -2^64") << "-18446744073709551611" << -80;
    QTest::newRow("a thousand digits") << QString(1000, '9') << 6;
    QTest::newRow("minus and a thousand digits") << '-' + QString(1000, '9') << -80;
}

void KnobEditingTest::typingBeyondTheRangeCommitsTheBound()
{
    QFETCH(QString, text);
    QFETCH(int, expected);
    RangedKnob knob(-80, 6, -20);
    const QSignalSpy spy(&knob, &Knob::valueChangedSig);
    knob.editor->setText(text);
    knob.finishEdit();
    QCOMPARE(knob.value, expected);
    QCOMPARE(values(spy), QList<int>({expected}));
}

void KnobEditingTest::typingNoNumberKeepsTheValueAndEmits_data()
{
    QTest::addColumn<QString>("text");
    QTest::newRow("letters") << "loud";
    QTest::newRow("nothing") << "";
    QTest::newRow("suffix alone") << "dB";
    QTest::newRow("suffix in another case") << "5DB";
    QTest::newRow("two suffixes") << "5dBdB";
    QTest::newRow("fraction") << "5.5";
    QTest::newRow("hexadecimal") << "0x5";
    QTest::newRow("number, then letters") << "5 loud";
    QTest::newRow("two numbers") << "5 5";
    QTest::newRow("sign alone") << "-";
    QTest::newRow("two signs") << "+-5";
    QTest::newRow("sign apart") << "- 5";
    QTest::newRow("group separator") << "1,000";
    QTest::newRow("full-width digit") << "\uff15";
    QTest::newRow("long fraction") << "99999999999999999999.5";
}

void KnobEditingTest::typingNoNumberKeepsTheValueAndEmits()
{
    QFETCH(QString, text);
    RangedKnob knob(-80, 6, -20);
    picture(knob);
    openEditor(knob);
    const QSignalSpy spy(&knob, &Knob::valueChangedSig);
    knob.editor->setText(text);
    QTest::keyClick(knob.editor, Qt::Key_Return);
    QCOMPARE(knob.value, -20);
    QCOMPARE(values(spy), QList<int>({-20}));
    QVERIFY(knob.editor->isHidden());
}

void KnobEditingTest::anEmptySuffixIsAllowed()
{
    RangedKnob knob(-80, 6, -20);
    knob.suffix.clear();
    knob.editor->setText("-7");
    knob.finishEdit();
    QCOMPARE(knob.value, -7);
}

void KnobEditingTest::escapeLeavesTheEditorOpen()
{
    Window window;
    QVERIFY(window.showActive());
    QTRY_VERIFY(!window.knob.textRect.isEmpty());
    openEditor(window.knob);
    const QSignalSpy spy(&window.knob, &Knob::valueChangedSig);
    QTest::keyClicks(window.knob.editor, "5");
    QTest::keyClick(window.knob.editor, Qt::Key_Escape);
    QVERIFY(window.knob.editor->isVisible());
    QCOMPARE(window.knob.value, -20);
    QCOMPARE(spy.count(), 0);
}

void KnobEditingTest::committingWithoutChangeKeepsTheValueAndEmits()
{
    RangedKnob knob(-80, 6, -20);
    picture(knob);
    openEditor(knob);
    const QSignalSpy spy(&knob, &Knob::valueChangedSig);
    QTest::keyClick(knob.editor, Qt::Key_Return);
    QCOMPARE(values(spy), QList<int>({-20}));
    QVERIFY(knob.editor->isHidden());
}

void KnobEditingTest::commitSubtractsTheOffset()
{
    RangedKnob knob(-80, 6, -20);
    knob.displayOffset = 25;
    const QSignalSpy spy(&knob, &Knob::valueChangedSig);
    knob.editor->setText("10dB");
    knob.finishEdit();
    knob.editor->setText("99");
    knob.finishEdit();
    QCOMPARE(values(spy), QList<int>({-15, 6}));
}

void KnobEditingTest::returnSubtractsTheOffsetOnlyOnce()
{
    Window window;
    window.knob.displayOffset = 25;
    QVERIFY(window.showActive());
    QTRY_VERIFY(!window.knob.textRect.isEmpty());
    openEditor(window.knob);
    const QSignalSpy spy(&window.knob, &Knob::valueChangedSig);
    QTest::keyClicks(window.knob.editor, "10");
    QTest::keyClick(window.knob.editor, Qt::Key_Return);
    window.elsewhere.setFocus(Qt::MouseFocusReason);
    QCOMPARE(values(spy), QList<int>({-15}));
    QCOMPARE(window.knob.value, -15);
}

void KnobEditingTest::finishingFromOutsideSubtractsTheOffsetOnlyOnce()
{
    Window window;
    window.knob.displayOffset = 25;
    QVERIFY(window.showActive());
    QTRY_VERIFY(!window.knob.textRect.isEmpty());
    openEditor(window.knob);
    const QSignalSpy spy(&window.knob, &Knob::valueChangedSig);
    QTest::keyClicks(window.knob.editor, "10");
    window.knob.finishEdit(); // takes the focus from the editor
    QVERIFY(!window.knob.editor->isVisible());
    QCOMPARE(values(spy), QList<int>({-15}));
}

void KnobEditingTest::commitOfNoNumberSubtractsTheOffsetFromTheOldValue()
{
    RangedKnob knob(-80, 6, -20);
    knob.displayOffset = 25;
    const QSignalSpy spy(&knob, &Knob::valueChangedSig);
    knob.editor->setText("loud");
    knob.finishEdit();
    knob.finishEdit();
    knob.finishEdit();
    QCOMPARE(values(spy), QList<int>({-45, -70, -80}));
}

void KnobEditingTest::commitSurvivesHugeNumbersAndOffsets_data()
{
    QTest::addColumn<int>("offset");
    QTest::addColumn<QString>("text");
    QTest::addColumn<int>("expected");
    using Bounds = std::numeric_limits<int>;
    const QString above("9223372036854775807");
    const QString below("-9223372036854775808");
    QTest::newRow("above, least offset") << Bounds::min() << above << 6;
    QTest::newRow("above, greatest offset") << Bounds::max() << above << 6;
    QTest::newRow("below, least offset") << Bounds::min() << below << -80;
    QTest::newRow("below, greatest offset") << Bounds::max() << below << -80;
    QTest::newRow("within, least offset") << Bounds::min() << "-2147483653" << -5;
    QTest::newRow("within, greatest offset") << Bounds::max() << "2147483642" << -5;
    QTest::newRow("zero, least offset") << Bounds::min() << "0" << 6;
    QTest::newRow("zero, greatest offset") << Bounds::max() << "0" << -80;
}

void KnobEditingTest::commitSurvivesHugeNumbersAndOffsets()
{
    QFETCH(int, offset);
    QFETCH(QString, text);
    QFETCH(int, expected);
    RangedKnob knob(-80, 6, -20);
    const QSignalSpy spy(&knob, &Knob::valueChangedSig);
    knob.displayOffset = offset;
    knob.editor->setText(text);
    knob.finishEdit();
    QCOMPARE(values(spy), QList<int>({expected}));
}

void KnobEditingTest::aReopenedEditorShowsTheCommittedValue()
{
    RangedKnob knob(-80, 6, -20);
    picture(knob);
    openEditor(knob);
    knob.editor->setText("99");
    QTest::keyClick(knob.editor, Qt::Key_Return);
    picture(knob);
    openEditor(knob);
    QCOMPARE(knob.editor->text(), QString("6"));
    QCOMPARE(knob.editor->selectedText(), QString("6"));
    QVERIFY(!knob.editor->isHidden());
}

void KnobEditingTest::destructionWhileEditingCommitsNothing()
{
    auto *knob = new RangedKnob(-80, 6, -20);
    knob->show();
    knob->activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(knob));
    QTRY_VERIFY(!knob->textRect.isEmpty());
    openEditor(*knob);
    QVERIFY(knob->editor->hasFocus());
    QTest::keyClicks(knob->editor, "5");
    const QSignalSpy spy(knob, &Knob::valueChangedSig);
    delete knob;
    QCOMPARE(spy.count(), 0);
}

QTEST_MAIN(KnobEditingTest)

#include "tst_knobediting.moc"
