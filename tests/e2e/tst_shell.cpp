#include "knownmessages.h"
#include "panelmodel.h"
#include "programfixture.h"
#include "waiting.h"

#include <QTest>

namespace {

const QString searching = "Device PID: 0";

QStringList linesContaining(const QStringList &lines, const QStringList &parts)
{
    QStringList found;
    for (const QString &line : lines) {
        for (const QString &part : parts) {
            if (line.contains(part))
                found << line;
        }
    }
    return found;
}

QString openLine(int bus, const QString &outcome)
{
    return QString("Open device \\\\.\\VesmoraAudioBus%1 %2").arg(bus).arg(outcome);
}

} // namespace

/// The program as a whole: its start and end, tray, window, and search for a device.
class tst_Shell : public ProgramFixture
{
    Q_OBJECT

private slots:
    void onlyTheTrayIconIsVisibleAtStart();
    void aSingleClickOpensTheMainWindow();
    void aDoubleClickOpensTheMainWindow();
    void aMiddleClickDoesNothing();
    void aRightClickOnlyOpensTheMenuWithTheGreyedVersionOnTop();
    void theVersionEntryDoesNothing();
    void theMenuOpensTheMainWindow();
    void theMenuOpensTheSettingsDialog();
    void aSecondCopyExitsAndLeavesTheFirstUndisturbed();
    void closingTheMainWindowHidesItAndTheProgramGoesOn();
    void closingTheSettingsDialogLeavesTheProgramRunning();
    void quitEndsTheProgram_data();
    void quitEndsTheProgram();

    void withoutADeviceTheSearchGoesOn();
    void aPluggedModelShowsItsPanelAndFirmware_data();
    void aPluggedModelShowsItsPanelAndFirmware();
    void anUnknownIdentifierShowsALabelAndKeepsProbing();
    void aFailedFirmwareReadIsRetried();
    void theThirdFailedPollTearsThePanelDown();
    void aSingleFailedPollIsForgotten();
    void aDevicePluggedInBeforeTheStartIsShown();
    void aDeviceOnTheFourthBusIsFoundAfterThreeFailedOpens();

    void theTranslationFollowsTheLocale_data();
    void theTranslationFollowsTheLocale();
    void withoutTranslationFilesTheProgramWarnsOnce();

private:
    bool searchGoesOn() { return log().waitFor(searching, log().count(searching) + 1); }
};

void tst_Shell::onlyTheTrayIconIsVisibleAtStart()
{
    QVERIFY(start());
    QVERIFY(log().waitFor(searching));
    QVERIFY(!window());
    QVERIFY(!settingsDialog());
}

void tst_Shell::aSingleClickOpensTheMainWindow()
{
    QVERIFY(start());
    QVERIFY(tray().click());
    QVERIFY(waitUntil([this] { return window().has_value(); }));
    QCOMPARE(window()->title, "Vesmora Driver");
}

void tst_Shell::aDoubleClickOpensTheMainWindow()
{
    QVERIFY(start());
    QVERIFY(tray().doubleClick());
    QVERIFY(waitUntil([this] { return window().has_value(); }));
    QCOMPARE(desktop().windows().visibleWindows("Vesmora ").size(), 1);
}

void tst_Shell::aMiddleClickDoesNothing()
{
    QVERIFY(start());
    QVERIFY(tray().click(Pointer::Middle));
    // The menu comes only after the program has seen the click before.
    QVERIFY(tray().openMenu());
    QVERIFY(!window());
}

void tst_Shell::aRightClickOnlyOpensTheMenuWithTheGreyedVersionOnTop()
{
    QVERIFY(start());
    QVERIFY(tray().openMenu());
    QVERIFY(!window());
    const QList<MenuPicture::Entry> entries = tray().menuPicture().entries();
    QCOMPARE(entries.size(), qsizetype(Tray::EntryCount));
    for (qsizetype i = 0; i < entries.size(); ++i)
        QCOMPARE(entries.at(i).greyed, i == Tray::Version);
}

void tst_Shell::theVersionEntryDoesNothing()
{
    QVERIFY(start());
    QVERIFY(tray().choose(Tray::Version));
    QVERIFY(searchGoesOn());
    QVERIFY(!window());
    QVERIFY(!settingsDialog());
    QVERIFY(panel().isRunning());
}

void tst_Shell::theMenuOpensTheMainWindow()
{
    QVERIFY(start());
    QVERIFY(tray().choose(Tray::MainWindow));
    QVERIFY(waitUntil([this] { return window().has_value(); }));
}

void tst_Shell::theMenuOpensTheSettingsDialog()
{
    QVERIFY(start());
    QVERIFY(tray().choose(Tray::Setup));
    QVERIFY(waitUntil([this] { return settingsDialog().has_value(); }));
}

void tst_Shell::aSecondCopyExitsAndLeavesTheFirstUndisturbed()
{
    QVERIFY(start());
    const std::unique_ptr<PanelProgram> second = lane().launch();
    QVERIFY(second);
    QVERIFY(second->waitForExit());
    QCOMPARE(second->exitCode(), 0);
    QCOMPARE(panelMessages(second->log().lines()), QStringList("Vesmora Mixer 已经在运行中。"));

    QVERIFY(searchGoesOn());
    QCOMPARE(tray().icons().size(), 1);
    QVERIFY(!window());
}

void tst_Shell::closingTheMainWindowHidesItAndTheProgramGoesOn()
{
    QVERIFY(start());
    QVERIFY(openWindow());
    desktop().windows().close(window()->id);
    QVERIFY(waitUntil([this] { return !window(); }));
    QVERIFY(searchGoesOn());
    QCOMPARE(tray().icons().size(), 1);
    QVERIFY(openWindow());
}

void tst_Shell::closingTheSettingsDialogLeavesTheProgramRunning()
{
    QVERIFY(start());
    QVERIFY(tray().choose(Tray::Setup));
    QVERIFY(waitUntil([this] { return settingsDialog().has_value(); }));
    desktop().windows().close(settingsDialog()->id);
    QVERIFY(waitUntil([this] { return !settingsDialog(); }));
    QVERIFY(searchGoesOn());
    QCOMPARE(tray().icons().size(), 1);
}

void tst_Shell::quitEndsTheProgram_data()
{
    QTest::addColumn<bool>("withDevice");
    QTest::addColumn<bool>("withWindow");
    QTest::newRow("in the tray") << false << false;
    QTest::newRow("with the window open") << false << true;
    QTest::newRow("with a device shown") << true << true;
}

void tst_Shell::quitEndsTheProgram()
{
    QFETCH(bool, withDevice);
    QFETCH(bool, withWindow);
    QVERIFY(start());
    QVERIFY(!withWindow || openWindow());
    QVERIFY(!withDevice || plug("rx1"));
    QVERIFY(quit());
    QCOMPARE(panel().exitCode(), 0);
    QVERIFY(log().waitFor("Settings dialog closed and resources cleaned up."));
}

void tst_Shell::withoutADeviceTheSearchGoesOn()
{
    QVERIFY(start());
    QVERIFY(openWindow());
    QVERIFY(log().waitFor(searching, 3));
    QCOMPARE(window()->title, "Vesmora Driver");
    QVERIFY(picture().knobs().isEmpty());
    // Every look tries all sixteen paths.
    const QStringList opens = log().outputLines();
    QVERIFY(opens.size() >= 3 * 16);
    for (qsizetype i = 0; i < opens.size(); ++i)
        QCOMPARE(opens.at(i), openLine(static_cast<int>(i % 16), "failed, error: 2"));
}

void tst_Shell::aPluggedModelShowsItsPanelAndFirmware_data()
{
    QTest::addColumn<PanelModel>("model");
    for (const PanelModel &model : allPanelModels())
        QTest::newRow(qPrintable(model.name)) << model;
}

void tst_Shell::aPluggedModelShowsItsPanelAndFirmware()
{
    QFETCH(PanelModel, model);
    const QString version = "2025112233";
    QVERIFY(simulator().setFirmware(version));
    QVERIFY(start());
    QVERIFY(openWindow());
    QVERIFY(plug(model.name));
    const qsizetype knobs = model.knobs().size();
    QCOMPARE(pictureWith(int(knobs), int(model.buttons().size())).knobs().size(), knobs);
    QCOMPARE(window()->title, model.title() + version);
    QCOMPARE(log().count(model.layoutLog()), 1);

    QVERIFY(unplug());
    QCOMPARE(window()->title, model.title() + version);
    QVERIFY(waitUntil([this] { return picture().knobs().isEmpty(); }));
}

void tst_Shell::anUnknownIdentifierShowsALabelAndKeepsProbing()
{
    QVERIFY(start());
    QVERIFY(openWindow());
    QVERIFY(log().waitFor(searching));
    const QImage before = desktop().windows().picture(window()->area);
    QVERIFY(simulator().plug("3"));
    QVERIFY(log().waitFor("Unknown device PID: 3", 3));
    QVERIFY(desktop().windows().picture(window()->area) != before);
    QVERIFY(picture().knobs().isEmpty());
    QCOMPARE(log().count("Device found with PID:"), 0);
}

void tst_Shell::aFailedFirmwareReadIsRetried()
{
    QVERIFY(start());
    QVERIFY(openWindow());
    QVERIFY(simulator().fail("getFirmwareVersion", 2));
    QVERIFY(plug("rx1"));
    QCOMPARE(log().count("Failed to get firmware version."), 2);
    QCOMPARE(log().count("Adding rx1 widget to layout."), 3);
    QCOMPARE(pictureWith(3, 6).buttons().size(), 6);
    QVERIFY(window()->title.startsWith("Vesmora RX1 - FW: "));
}

void tst_Shell::theThirdFailedPollTearsThePanelDown()
{
    QVERIFY(start());
    QVERIFY(openWindow());
    const PanelModel &model = allPanelModels().last();
    QVERIFY(plug(model.name));
    QVERIFY(unplug());
    QVERIFY(searchGoesOn());
    const QString failedPoll = "Error reading device PID from driver, error count: ";
    const QString deleted = "Meter driver handle deleted.";
    const QString cleared = "Cleared all widgets from base layout.";
    QCOMPARE(
        linesContaining(log().lines(), {failedPoll, deleted, cleared}),
        QStringList({failedPoll + u'1', failedPoll + u'2', failedPoll + u'3', deleted, cleared}));
    QVERIFY(waitUntil([this] { return picture().knobs().isEmpty(); }));
    QVERIFY(window()->title.startsWith(model.title()));
}

void tst_Shell::aSingleFailedPollIsForgotten()
{
    QVERIFY(start());
    QVERIFY(plug("rm"));
    const QString failedPoll = "Error reading device PID from driver, error count: ";
    for (int i = 1; i <= 3; ++i) {
        QVERIFY(simulator().fail("getDevicePid", 1));
        QVERIFY(log().waitFor(failedPoll, i));
        // A successful poll in between starts the count anew.
        QVERIFY(simulator().clearRecord());
        QVERIFY(waitUntil([this] { return sentBesides("getDevicePid").size() >= 1; }));
    }
    QCOMPARE(log().count(failedPoll + u'1'), 3);
    QCOMPARE(log().count("Meter driver handle deleted."), 0);
}

void tst_Shell::aDevicePluggedInBeforeTheStartIsShown()
{
    QVERIFY(simulator().plug("rm"));
    QVERIFY(start());
    QVERIFY(log().waitFor("Adding rm widget to layout."));
    QVERIFY(openWindow());
    QCOMPARE(pictureWith(2, 3).knobs().size(), 2);
    QVERIFY(window()->title.startsWith("Vesmora RM - FW: "));
}

void tst_Shell::aDeviceOnTheFourthBusIsFoundAfterThreeFailedOpens()
{
    QVERIFY(simulator().plug("rx1", 3));
    QVERIFY(start());
    QVERIFY(log().waitFor("Device found with PID: 1"));
    const QString failed = "failed, error: 2";
    const QStringList oneOpen{openLine(0, failed), openLine(1, failed), openLine(2, failed),
                              openLine(3, "success!")};
    // The probe, the settings dialog, the panel and the poll each open the device.
    QVERIFY(waitUntil([this] { return log().outputLines().size() >= 16; }));
    QCOMPARE(log().outputLines(), oneOpen + oneOpen + oneOpen + oneOpen);
}

void tst_Shell::theTranslationFollowsTheLocale_data()
{
    QTest::addColumn<QString>("file");
    QTest::newRow("en_US") << "VesmoraDriver_en_US.qm";
    QTest::newRow("en_GB") << "VesmoraDriver_en_US.qm";
    QTest::newRow("zh_CN") << "VesmoraDriver_zh_CN.qm";
    QTest::newRow("zh_TW") << "VesmoraDriver_zh_CN.qm";
    QTest::newRow("fr_FR") << "VesmoraDriver_en_US.qm";
}

void tst_Shell::theTranslationFollowsTheLocale()
{
    QFETCH(QString, file);
    const QString locale = QString::fromLatin1(QTest::currentDataTag());
    QVERIFY(start(locale));
    QVERIFY(log().waitFor(searching));
    const QStringList codes = log().linesWith("系统返回的语言代码：");
    QCOMPARE(codes.size(), 1);
    QVERIFY2(codes.first().contains(locale), qPrintable(codes.first()));
    const QStringList loaded = log().linesWith("成功加载翻译文件：");
    QCOMPARE(loaded.size(), 1);
    QVERIFY2(loaded.first().contains(file), qPrintable(loaded.first()));
    QCOMPARE(log().count("加载默认翻译文件："), 0);
    QCOMPARE(log().count("未找到任何翻译文件，使用原始文本"), 0);
}

void tst_Shell::withoutTranslationFilesTheProgramWarnsOnce()
{
    QVERIFY(follow(lane().launchWithoutTranslations("zh_CN")));
    QVERIFY(log().waitFor(searching));
    QCOMPARE(log().count("未找到任何翻译文件，使用原始文本"), 1);
    QCOMPARE(log().count("成功加载翻译文件："), 0);
    QVERIFY(openWindow());
    QVERIFY(log().waitFor(searching));
}

QTEST_GUILESS_MAIN(tst_Shell)
#include "tst_shell.moc"
