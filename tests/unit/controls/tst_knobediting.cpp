#include "knobfixture.h"

#include <QLineEdit>
#include <QSignalSpy>

#include <limits>

class tst_KnobEditing : public KnobFixture
{
    Q_OBJECT

    /// A window with a knob in it, and another widget to give the focus to.
    class Window;

    static void openEditor(Knob &knob)
    {
        QTest::mouseDClick(&knob, Qt::LeftButton, Qt::NoModifier, knob.textRect.center());
    }
    /// What the knob emits when @p text is committed.
    static QList<int> commit(ObservedKnob &knob, const QString &text)
    {
        knob.editor->setText(text);
        knob.finishEdit();
        return knob.takeEmitted();
    }

private slots:
    void doubleClickBesideTheTextSetsTheMinimum();
    void doubleClickOnTheTextSetsTheMinimumWhenTextIsOff();
    void doubleClickBeforeTheFirstPaintSetsTheMinimum();
    void doubleClickOnTheTextOpensTheEditor();
    void editorCoversTheTextLessItsMargins();
    void editorMarginsAreTruncatedPartsOfTheText();
    void editorShowsTheOffsetValueWithoutSuffix_data();
    void editorShowsTheOffsetValueWithoutSuffix();

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

class tst_KnobEditing::Window : public QWidget
{
public:
    Window()
    {
        resize(2 * side, side);
        elsewhere.setGeometry(side + 10, 10, side - 20, 30);
    }

    /// Shows the window and opens the knob's editor.
    bool edit()
    {
        show();
        activateWindow();
        if (!QTest::qWaitForWindowActive(this)
            || !QTest::qWaitFor([this] { return !knob.textRect.isEmpty(); }))
            return false;
        openEditor(knob);
        return true;
    }

    ObservedKnob knob{decibels, -20, this};
    QLineEdit elsewhere{this};
};

void tst_KnobEditing::doubleClickBesideTheTextSetsTheMinimum()
{
    ObservedKnob knob(decibels, -20);
    picture(knob);
    const QPoint beside(knob.textRect.center().x(), knob.textRect.top() - 1);
    QTest::mouseDClick(&knob, Qt::LeftButton, Qt::NoModifier, beside);
    QCOMPARE(knob.value, -80);
    QCOMPARE(knob.takeEmitted(), QList<int>({-80}));
    QVERIFY(knob.editor->isHidden());
}

void tst_KnobEditing::doubleClickOnTheTextSetsTheMinimumWhenTextIsOff()
{
    ObservedKnob knob(decibels, -20);
    picture(knob);
    knob.showText = false;
    openEditor(knob);
    QCOMPARE(knob.takeEmitted(), QList<int>({-80}));
    QVERIFY(knob.editor->isHidden());
}

void tst_KnobEditing::doubleClickBeforeTheFirstPaintSetsTheMinimum()
{
    ObservedKnob knob(decibels, -20);
    QTest::mouseDClick(&knob, Qt::LeftButton, Qt::NoModifier, knob.rect().center());
    QCOMPARE(knob.takeEmitted(), QList<int>({-80}));
    QVERIFY(knob.editor->isHidden());
}

void tst_KnobEditing::doubleClickOnTheTextOpensTheEditor()
{
    Window window;
    QVERIFY(window.edit());
    QVERIFY(window.knob.editor->isVisible());
    QVERIFY(window.knob.editor->hasFocus());
    QCOMPARE(window.knob.editor->text(), QString("-20"));
    QCOMPARE(window.knob.editor->selectedText(), QString("-20"));
    QCOMPARE(window.knob.value, -20);
    QCOMPARE(window.knob.takeEmitted(), QList<int>());
}

void tst_KnobEditing::editorCoversTheTextLessItsMargins()
{
    ObservedKnob knob(decibels, -20);
    picture(knob);
    const QRect text = knob.textRect;
    openEditor(knob);
    const int dx = static_cast<int>(text.width() * 0.025);
    const int dy = static_cast<int>(text.height() * 0.025);
    QCOMPARE(knob.editor->geometry(), text.adjusted(dx, dy, -dx, -dy));
}

void tst_KnobEditing::editorMarginsAreTruncatedPartsOfTheText()
{
    ObservedKnob knob(decibels, -20);
    knob.textRect = QRect(10, 20, 79, 80); // 1.975 and 2.0 pixels
    openEditor(knob);
    QCOMPARE(knob.editor->geometry(), QRect(QPoint(11, 22), QPoint(87, 97)));
}

void tst_KnobEditing::editorShowsTheOffsetValueWithoutSuffix_data()
{
    QTest::addColumn<int>("value");
    QTest::addColumn<int>("offset");
    QTest::addColumn<QString>("text");
    QTest::newRow("an offset") << -20 << 25 << "5";
    QTest::newRow("also for zero") << 0 << 25 << "25";
    QTest::newRow("beyond any int") << 6 << std::numeric_limits<int>::max() << "2147483653";
}

void tst_KnobEditing::editorShowsTheOffsetValueWithoutSuffix()
{
    QFETCH(int, value);
    QFETCH(int, offset);
    ObservedKnob knob(decibels, value);
    knob.displayOffset = offset;
    picture(knob);
    openEditor(knob);
    QTEST(knob.editor->text(), "text");
    QCOMPARE(knob.value, value);
    knob.finishEdit();
    QCOMPARE(knob.value, value);
}

void tst_KnobEditing::typingANumberAndReturnCommitsOnce()
{
    Window window;
    QVERIFY(window.edit());
    QTest::keyClicks(window.knob.editor, "-33"); // replaces the selected text
    QCOMPARE(window.knob.takeEmitted(), QList<int>());
    QTest::keyClick(window.knob.editor, Qt::Key_Return);
    QVERIFY(!window.knob.editor->isVisible());
    QVERIFY(!window.knob.editor->hasFocus());
    QCOMPARE(window.knob.value, -33);
    QCOMPARE(window.knob.takeEmitted(), QList<int>({-33}));
}

void tst_KnobEditing::losingFocusCommitsOnce()
{
    Window window;
    QVERIFY(window.edit());
    QTest::keyClicks(window.knob.editor, "4");
    window.elsewhere.setFocus(Qt::MouseFocusReason);
    QVERIFY(!window.knob.editor->isVisible());
    QCOMPARE(window.knob.value, 4);
    QCOMPARE(window.knob.takeEmitted(), QList<int>({4}));
    QVERIFY(window.elsewhere.hasFocus());
}

void tst_KnobEditing::typingTheSuffixIsAllowed()
{
    ObservedKnob knob(gains, 0);
    QCOMPARE(commit(knob, "12dB"), QList<int>({12}));
    QCOMPARE(commit(knob, "13 dB"), QList<int>({13}));
    knob.suffix = "%";
    QCOMPARE(commit(knob, "14%"), QList<int>({14}));
}

void tst_KnobEditing::typingSpaceAroundTheNumberAndASignIsAllowed_data()
{
    QTest::addColumn<QString>("text");
    QTest::newRow("plus") << "+5";
    QTest::newRow("space") << "  5 ";
    QTest::newRow("other space") << "\t5\t";
    QTest::newRow("space and plus") << " +5 ";
    QTest::newRow("space and suffix") << " 5 dB";
    QTest::newRow("zeros") << "00000000000000000000000005";
}

void tst_KnobEditing::typingSpaceAroundTheNumberAndASignIsAllowed()
{
    QFETCH(QString, text);
    ObservedKnob knob(decibels, -20);
    QCOMPARE(commit(knob, text), QList<int>({5}));
}

void tst_KnobEditing::typingBeyondTheRangeCommitsTheBound_data()
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

void tst_KnobEditing::typingBeyondTheRangeCommitsTheBound()
{
    QFETCH(QString, text);
    QFETCH(int, expected);
    ObservedKnob knob(decibels, -20);
    QCOMPARE(commit(knob, text), QList<int>({expected}));
    QCOMPARE(knob.value, expected);
}

void tst_KnobEditing::typingNoNumberKeepsTheValueAndEmits_data()
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

void tst_KnobEditing::typingNoNumberKeepsTheValueAndEmits()
{
    QFETCH(QString, text);
    ObservedKnob knob(decibels, -20);
    picture(knob);
    openEditor(knob);
    knob.editor->setText(text);
    QTest::keyClick(knob.editor, Qt::Key_Return);
    QCOMPARE(knob.value, -20);
    QCOMPARE(knob.takeEmitted(), QList<int>({-20}));
    QVERIFY(knob.editor->isHidden());
}

void tst_KnobEditing::anEmptySuffixIsAllowed()
{
    ObservedKnob knob(decibels, -20);
    knob.suffix.clear();
    QCOMPARE(commit(knob, "-7"), QList<int>({-7}));
}

void tst_KnobEditing::escapeLeavesTheEditorOpen()
{
    Window window;
    QVERIFY(window.edit());
    QTest::keyClicks(window.knob.editor, "5");
    QTest::keyClick(window.knob.editor, Qt::Key_Escape);
    QVERIFY(window.knob.editor->isVisible());
    QCOMPARE(window.knob.value, -20);
    QCOMPARE(window.knob.takeEmitted(), QList<int>());
}

void tst_KnobEditing::committingWithoutChangeKeepsTheValueAndEmits()
{
    ObservedKnob knob(decibels, -20);
    picture(knob);
    openEditor(knob);
    QTest::keyClick(knob.editor, Qt::Key_Return);
    QCOMPARE(knob.takeEmitted(), QList<int>({-20}));
    QVERIFY(knob.editor->isHidden());
}

void tst_KnobEditing::commitSubtractsTheOffset()
{
    ObservedKnob knob(decibels, -20);
    knob.displayOffset = 25;
    QCOMPARE(commit(knob, "10dB"), QList<int>({-15}));
    QCOMPARE(commit(knob, "99"), QList<int>({6}));
}

void tst_KnobEditing::returnSubtractsTheOffsetOnlyOnce()
{
    Window window;
    window.knob.displayOffset = 25;
    QVERIFY(window.edit());
    QTest::keyClicks(window.knob.editor, "10");
    QTest::keyClick(window.knob.editor, Qt::Key_Return);
    window.elsewhere.setFocus(Qt::MouseFocusReason);
    QCOMPARE(window.knob.takeEmitted(), QList<int>({-15}));
    QCOMPARE(window.knob.value, -15);
}

void tst_KnobEditing::finishingFromOutsideSubtractsTheOffsetOnlyOnce()
{
    Window window;
    window.knob.displayOffset = 25;
    QVERIFY(window.edit());
    QTest::keyClicks(window.knob.editor, "10");
    window.knob.finishEdit(); // takes the focus from the editor
    QVERIFY(!window.knob.editor->isVisible());
    QCOMPARE(window.knob.takeEmitted(), QList<int>({-15}));
}

void tst_KnobEditing::commitOfNoNumberSubtractsTheOffsetFromTheOldValue()
{
    ObservedKnob knob(decibels, -20);
    knob.displayOffset = 25;
    knob.editor->setText("loud");
    knob.finishEdit();
    knob.finishEdit();
    knob.finishEdit();
    QCOMPARE(knob.takeEmitted(), QList<int>({-45, -70, -80}));
}

void tst_KnobEditing::commitSurvivesHugeNumbersAndOffsets_data()
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

void tst_KnobEditing::commitSurvivesHugeNumbersAndOffsets()
{
    QFETCH(int, offset);
    QFETCH(QString, text);
    QFETCH(int, expected);
    ObservedKnob knob(decibels, -20);
    knob.displayOffset = offset;
    QCOMPARE(commit(knob, text), QList<int>({expected}));
}

void tst_KnobEditing::aReopenedEditorShowsTheCommittedValue()
{
    ObservedKnob knob(decibels, -20);
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

void tst_KnobEditing::destructionWhileEditingCommitsNothing()
{
    auto *knob = new ObservedKnob(decibels, -20);
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

QTEST_MAIN(tst_KnobEditing)

#include "tst_knobediting.moc"
