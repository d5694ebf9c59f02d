#include "panelfixture.h"

#include <QLineEdit>
#include <QPointer>
#include <QTimer>
#include <QVBoxLayout>

/// What all panels share: how they begin without a device and how they end.
class tst_DevicePanel : public PanelFixture
{
    Q_OBJECT

public:
    tst_DevicePanel()
        : PanelFixture("rx1")
    { }

private slots:
    void withoutADeviceThePanelStaysEmpty_data() { addModelRows(); }
    void withoutADeviceThePanelStaysEmpty();
    void aRefusedOpenLeavesThePanelEmpty_data() { addModelRows(); }
    void aRefusedOpenLeavesThePanelEmpty();
    void aDeviceOnAnyBusIsFound();
    void outputVolumesAreNotAnsweredFor_data() { addModelRows(); }
    void outputVolumesAreNotAnsweredFor();

    void deletingClosesTheDeviceAndSendsNothing_data() { addModelRows(); }
    void deletingClosesTheDeviceAndSendsNothing();
    void deletingStopsTheMeters();
    void deletingAnUnpluggedPanelClosesItsHandle();
    void deletingWithAnEditorOpenCommitsNothing_data() { addModelRows(); }
    void deletingWithAnEditorOpenCommitsNothing();
    void aWindowDeletesItsPanel();
    void eachPanelHasAConnectionOfItsOwn();

    void aPanelBuiltAgainTakesOverTheState_data() { addModelRows(); }
    void aPanelBuiltAgainTakesOverTheState();
    void aTypedValueIsSentAndSaved();

private:
    void verifyEmpty();
    /// Opens the editor of the knob's number, as a double-click on it does.
    void edit(Knob &knob, const QString &text);
};

void tst_DevicePanel::verifyEmpty()
{
    QVERIFY(panel().children().isEmpty());
    QVERIFY(!panel().layout());
    QVERIFY(!QFile::exists(settingsFile()));
}

void tst_DevicePanel::edit(Knob &knob, const QString &text)
{
    panel().show();
    QVERIFY(QTest::qWaitForWindowActive(&panel()));
    panel().grab(); // paints, which tells the knob where its number is
    QTest::mouseDClick(&knob, Qt::LeftButton, Qt::NoModifier, knob.textRect.center());
    QVERIFY(knob.editor->isVisible());
    QTRY_VERIFY(knob.editor->hasFocus());
    QTest::keyClicks(knob.editor, text);
    QCOMPARE(knob.editor->text(), text);
}

void tst_DevicePanel::withoutADeviceThePanelStaysEmpty()
{
    QFETCH(PanelModel, model);
    begin(model);
    QVERIFY(simulator().unplug());
    QVERIFY(simulator().clearRecord());
    build();
    QCOMPARE(takeLog(), QStringList(model.createFailure()));
    QCOMPARE(takeEvents(), QStringList());
    verifyEmpty();
}

void tst_DevicePanel::aRefusedOpenLeavesThePanelEmpty()
{
    if (!simulator().canRefuseOpens())
        QSKIP("Opening a device cannot be refused here.");
    QFETCH(PanelModel, model);
    begin(model);
    QVERIFY(simulator().fail("open", 1, ERROR_ACCESS_DENIED));
    build();
    QCOMPARE(takeLog(), QStringList(model.createFailure()));
    QCOMPARE(takeEvents(), QStringList("open !5"));
    verifyEmpty();
    deletePanel();
    QCOMPARE(takeEvents(), QStringList());
}

void tst_DevicePanel::aDeviceOnAnyBusIsFound()
{
    QVERIFY(simulator().unplug());
    QVERIFY(simulator().plug(model().identifier(), 15));
    QVERIFY(simulator().clearRecord());
    build();
    QCOMPARE(takeEvents().mid(0, 2), QStringList({"open", "setOutVolume 1 100"}));
    QCOMPARE(panel().findChildren<Knob *>().size(), model().knobs().size());
}

void tst_DevicePanel::outputVolumesAreNotAnsweredFor()
{
    QFETCH(PanelModel, model);
    begin(model);
    QVERIFY(simulator().fail("setOutVolume", 1, ERROR_GEN_FAILURE, 0));
    build();
    QStringList expected;
    for (const int channel : model.outputChannels)
        expected << QString("setOutVolume %1 100 !31").arg(channel);
    QCOMPARE(takeSent().filter("setOutVolume"), expected);
    const QStringList log = takeLog();
    QVERIFY(!log.contains("Failed to set output volume."));
    QCOMPARE(log.last(), "已从配置文件加载控件状态");
    QVERIFY(panel().layout());
}

void tst_DevicePanel::deletingClosesTheDeviceAndSendsNothing()
{
    QFETCH(PanelModel, model);
    begin(model);
    buildQuietly();
    const QStringList before = savedLines();
    deletePanel();
    QCOMPARE(takeEvents(), QStringList("close"));
    QCOMPARE(takeLog(), QStringList());
    QCOMPARE(savedLines(), before);
}

void tst_DevicePanel::deletingStopsTheMeters()
{
    buildQuietly();
    const QPointer<QTimer> timer = panel().findChild<QTimer *>();
    QVERIFY(timer);
    timer->start(1);
    QTRY_VERIFY(simulator().events().contains("readMeterData"));
    deletePanel();
    QVERIFY(!timer);
    QCoreApplication::processEvents();
    QCOMPARE(takeEvents().last(), "close");
}

void tst_DevicePanel::deletingAnUnpluggedPanelClosesItsHandle()
{
    buildQuietly();
    QVERIFY(simulator().unplug());
    takeEvents();
    deletePanel();
    QCOMPARE(takeEvents(), QStringList("close"));
}

void tst_DevicePanel::deletingWithAnEditorOpenCommitsNothing()
{
    QFETCH(PanelModel, model);
    begin(model);
    build();
    edit(knob(model.knobs().first().name), "12");
    takeSent();
    const QStringList before = savedLines();
    deletePanel();
    QCOMPARE(takeSent(), QStringList());
    QCOMPARE(savedLines(), before);
}

void tst_DevicePanel::aWindowDeletesItsPanel()
{
    buildQuietly();
    {
        QWidget window;
        auto *layout = new QVBoxLayout(&window);
        layout->addWidget(releasePanel());
        window.show();
        QVERIFY(QTest::qWaitForWindowExposed(&window));
        takeEvents();
    }
    QCOMPARE(takeEvents(), QStringList("close"));
}

void tst_DevicePanel::eachPanelHasAConnectionOfItsOwn()
{
    build();
    const std::unique_ptr<QWidget> second = createPanel(model());
    QCOMPARE(simulator().state().openHandles, 2u);
}

void tst_DevicePanel::aPanelBuiltAgainTakesOverTheState()
{
    QFETCH(PanelModel, model);
    begin(model);
    build();
    for (Knob *knob : panel().findChildren<Knob *>())
        knob->setValue(3);
    for (Button *button : panel().findChildren<Button *>())
        button->setSelected(true);
    const QList<double> block = simulator().mixerBlock();
    const QStringList lines = savedLines();
    deletePanel();
    QVERIFY(simulator().unplug());
    QVERIFY(simulator().plug(model.identifier()));

    build();
    QCOMPARE(simulator().mixerBlock(), block);
    QCOMPARE(savedLines(), lines);
    for (const Knob *knob : panel().findChildren<Knob *>())
        QCOMPARE(knob->value, 3);
    for (const Button *button : panel().findChildren<Button *>())
        QVERIFY(button->isSelected);
}

void tst_DevicePanel::aTypedValueIsSentAndSaved()
{
    build();
    edit(knob("Mic"), "99");
    takeSent();
    QTest::keyClick(knob("Mic").editor, Qt::Key_Return);
    QCOMPARE(takeSent(), QStringList("setMicVolume 1 84"));
    QCOMPARE(saved().value("Dial/MicValue"), "42");
}

QTEST_MAIN(tst_DevicePanel)
#include "tst_devicepanel.moc"
