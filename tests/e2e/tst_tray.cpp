#include "panelmodel.h"
#include "programfixture.h"
#include "waiting.h"

#include <QTest>

/// The tray menu's entries that reach beyond the program: the interface's firmware and programs of
/// Windows.
class tst_Tray : public ProgramFixture
{
    Q_OBJECT

private slots:
    void upgradeFirmwareReachesTheInterfaceOnAConnectionOfItsOwn_data();
    void upgradeFirmwareReachesTheInterfaceOnAConnectionOfItsOwn();
    void upgradeFirmwareWithoutAnInterfaceSaysSoInTheLog();
    void winSoundPannelOpensWindowsOwn();
    // Last, because where Windows is a real one it takes the task bar with it.
    void refreshAudioDeviceStartsTheShellAnew();
};

void tst_Tray::upgradeFirmwareReachesTheInterfaceOnAConnectionOfItsOwn_data()
{
    QTest::addColumn<QString>("model");
    for (const PanelModel &model : allPanelModels())
        QTest::newRow(qPrintable(model.name)) << model.name;
}

void tst_Tray::upgradeFirmwareReachesTheInterfaceOnAConnectionOfItsOwn()
{
    QFETCH(QString, model);
    const QString command = "upgradeFirmware";
    QVERIFY(start());
    QVERIFY(plug(model));
    QVERIFY(tray().choose(Tray::UpgradeFirmware));
    const QStringList expected{"open", command, "close"};
    QVERIFY(waitUntil([&] { return sentBesides(command) == expected; }));
    QVERIFY(panel().isRunning());
}

void tst_Tray::upgradeFirmwareWithoutAnInterfaceSaysSoInTheLog()
{
    const QString message = "Failed to create device in rx1.";
    expectMessages({message});
    QVERIFY(start());
    QVERIFY(tray().choose(Tray::UpgradeFirmware));
    QVERIFY(log().waitFor(message));
    QVERIFY(!window());
    QVERIFY(panel().isRunning());
}

void tst_Tray::winSoundPannelOpensWindowsOwn()
{
    const QString message = "声音设置面板已打开。";
    expectMessages({message});
    QVERIFY(lane().provideWindowsPrograms());
    QVERIFY(start());
    QVERIFY(tray().choose(Tray::SoundPanel));
    QVERIFY(log().waitFor(message));
    QVERIFY(panel().isRunning());
}

void tst_Tray::refreshAudioDeviceStartsTheShellAnew()
{
    const QString message = "资源管理器已成功重启";
    expectMessages({message});
    QVERIFY(lane().provideWindowsPrograms());
    QVERIFY(start());
    QVERIFY(!lane().hasRestartedShell());
    QVERIFY(tray().choose(Tray::RefreshAudioDevice));
    QVERIFY(log().waitFor(message));
    QVERIFY(waitUntil([this] { return lane().hasRestartedShell(); }));
    QVERIFY(panel().isRunning());
}

QTEST_GUILESS_MAIN(tst_Tray)
#include "tst_tray.moc"
