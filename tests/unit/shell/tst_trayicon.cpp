#include "boxwatcher.h"
#include "mainwindow.h"
#include "shellfixture.h"
#include "trayicon.h"

#include <QAction>
#include <QApplication>
#include <QMenu>
#include <QMetaMethod>
#include <QPointer>
#include <QTest>
#include <QTranslator>

namespace {

/// The places of the entries in the menu.
enum Entry { Version, Quit, Setup = 3, MainWindowEntry, Upgrade, Refresh, SoundPannel };

constexpr char separator[] = "---";

QStringList texts(const QMenu &menu)
{
    QStringList texts;
    const QList<QAction *> actions = menu.actions();
    for (const QAction *action : actions)
        texts << (action->isSeparator() ? QString::fromLatin1(separator) : action->text());
    return texts;
}

/// Puts a text's context and the text itself in its place.
class TellingTranslator : public QTranslator
{
public:
    QString translate(const char *context, const char *source, const char *, int) const override
    {
        return QString("%1|%2").arg(QString::fromUtf8(context), QString::fromUtf8(source));
    }
    bool isEmpty() const override { return false; }
};

} // namespace

/// The icon in the notification area, its menu, and what they lead to.
class tst_TrayIcon : public ShellFixture
{
    Q_OBJECT

private slots:
    void theMenuHasItsEntriesInOrder();
    void onlyTheVersionIsGreyedOut();
    void theEntriesBelongToTheIconAndAreMadeInOrder();
    void theMenuHasNoParentAndGoesWithTheIcon();
    void allEntriesButTheVersionAreTranslated();
    void declaresItsSlotsInOrder();
    void showsTheProgramsIconAndIsNotVisibleByItself();
    void keepsTheProgramRunningWithoutWindows();

    void theVersionEntryDoesNothing();
    void quitEndsTheEventLoop();
    void setupShowsTheSettingsDialog();
    void theMainWindowEntryShowsTheMainWindow();
    void onlyTriggerAndDoubleClickShowTheMainWindow_data();
    void onlyTriggerAndDoubleClickShowTheMainWindow();
    void aNullMainWindowIsIgnored();
    void withoutAMainWindowAWarningIsShown_data();
    void withoutAMainWindowAWarningIsShown();
    void otherClicksWithoutAMainWindowDoNothing_data();
    void otherClicksWithoutAMainWindowDoNothing();
    void withoutASettingsDialogAWarningIsShown();

    void upgradeSendsOnePacketAndClosesTheDevice();
    void upgradeSaysNothingWhenTheDeviceRefuses();
    void upgradeWithoutADeviceOnlyLogs();
    void upgradeOpensAConnectionEachTime();

private:
    static void trigger(const TrayIcon &tray, Entry entry)
    {
        tray.contextMenu()->actions().at(entry)->trigger();
    }
};

void tst_TrayIcon::theMenuHasItsEntriesInOrder()
{
    const TrayIcon tray;
    QCOMPARE(
        texts(*tray.contextMenu()),
        (QStringList{"V20250930", "Quit", separator, "Setup", "Main Window", "Upgrade Firmware",
                     "Refresh Audio Device", "Win Sound Pannel", separator, separator}));
}

void tst_TrayIcon::onlyTheVersionIsGreyedOut()
{
    const TrayIcon tray;
    const QList<QAction *> actions = tray.contextMenu()->actions();
    for (qsizetype place = 0; place < actions.size(); ++place) {
        QCOMPARE(actions.at(place)->isEnabled(), place != Version);
        QVERIFY(actions.at(place)->isVisible());
        QVERIFY(!actions.at(place)->isCheckable());
    }
}

void tst_TrayIcon::theEntriesBelongToTheIconAndAreMadeInOrder()
{
    const TrayIcon tray;
    QStringList made;
    const auto actions = tray.findChildren<QAction *>(QString(), Qt::FindDirectChildrenOnly);
    for (const QAction *action : actions)
        made << action->text();
    QCOMPARE(made,
             (QStringList{"Main Window", "Setup", "Quit", "Upgrade Firmware", "Win Sound Pannel",
                          "Refresh Audio Device", "V20250930"}));
}

void tst_TrayIcon::theMenuHasNoParentAndGoesWithTheIcon()
{
    QPointer<QMenu> menu;
    {
        const TrayIcon tray;
        menu = tray.contextMenu();
        QVERIFY(menu);
        QVERIFY(!menu->parent());
    }
    QVERIFY(!menu);
}

void tst_TrayIcon::allEntriesButTheVersionAreTranslated()
{
    const QStringList untranslated = texts(*TrayIcon().contextMenu());
    TellingTranslator translator;
    QVERIFY(QCoreApplication::installTranslator(&translator));
    const TrayIcon tray;
    const QStringList translated = texts(*tray.contextMenu());
    QCOMPARE(translated.size(), untranslated.size());
    for (qsizetype place = 0; place < translated.size(); ++place) {
        const QString &text = untranslated.at(place);
        const bool isTranslated = place != Version && text != separator;
        QCOMPARE(translated.at(place), isTranslated ? "TrayIcon|" + text : text);
    }
}

void tst_TrayIcon::declaresItsSlotsInOrder()
{
    const QMetaObject &meta = TrayIcon::staticMetaObject;
    QByteArrayList slotNames;
    for (int i = meta.methodOffset(); i < meta.methodCount(); ++i) {
        QCOMPARE(meta.method(i).methodType(), QMetaMethod::Slot);
        slotNames << meta.method(i).methodSignature();
    }
    QCOMPARE(slotNames,
             (QByteArrayList{"showSettings()", "clickCallback(QSystemTrayIcon::ActivationReason)",
                             "openSoundPannel()", "refreshDeviceList()"}));
}

void tst_TrayIcon::showsTheProgramsIconAndIsNotVisibleByItself()
{
    const TrayIcon tray;
    const QPixmap icon(":/icon/icon.png");
    QVERIFY(!icon.isNull());
    // The very same, so that it is decoded once for the windows and the tray.
    QCOMPARE(tray.icon().pixmap(icon.size()).cacheKey(), icon.cacheKey());
    QCOMPARE(tray.icon().pixmap(icon.size()).toImage(), icon.toImage());
    QVERIFY(!tray.isVisible());
    QVERIFY(!tray.settingsWindow);
}

void tst_TrayIcon::keepsTheProgramRunningWithoutWindows()
{
    QGuiApplication::setQuitOnLastWindowClosed(true);
    const TrayIcon tray;
    QVERIFY(!QGuiApplication::quitOnLastWindowClosed());
}

void tst_TrayIcon::theVersionEntryDoesNothing()
{
    plug(VESMORA_PID_RX1);
    MainWindow window;
    TrayIcon tray;
    tray.setMainWindow(&window);
    tray.settingsWindow = &settings();
    trigger(tray, Version);
    QVERIFY(!window.isVisible());
    QVERIFY(!settings().isVisible());
    QCOMPARE(takeTraffic(), QStringList());
    QCOMPARE(takeLog(), QStringList());
}

void tst_TrayIcon::quitEndsTheEventLoop()
{
    const TrayIcon tray;
    QTimer::singleShot(0, &tray, [&tray] { trigger(tray, Quit); });
    QTimer::singleShot(patience, &tray, [] { QCoreApplication::exit(42); });
    QCOMPARE(QCoreApplication::exec(), 0);
}

void tst_TrayIcon::setupShowsTheSettingsDialog()
{
    MainWindow window;
    TrayIcon tray;
    tray.setMainWindow(&window);
    tray.settingsWindow = &settings();
    trigger(tray, Setup);
    QVERIFY(settings().isVisible());
    QVERIFY(!window.isVisible());
    QVERIFY(QTest::qWaitForWindowActive(&settings()));
    QCOMPARE(takeLog(), QStringList());
}

void tst_TrayIcon::theMainWindowEntryShowsTheMainWindow()
{
    MainWindow window;
    window.settingsWindow = &settings();
    TrayIcon tray;
    tray.setMainWindow(&window);
    tray.settingsWindow = &settings();
    trigger(tray, MainWindowEntry);
    QVERIFY(window.isVisible());
    QVERIFY(!settings().isVisible());
    QVERIFY(QTest::qWaitForWindowActive(&window));
}

void tst_TrayIcon::onlyTriggerAndDoubleClickShowTheMainWindow_data()
{
    QTest::addColumn<QSystemTrayIcon::ActivationReason>("reason");
    QTest::addColumn<bool>("shown");
    QTest::newRow("unknown") << QSystemTrayIcon::Unknown << false;
    QTest::newRow("right click") << QSystemTrayIcon::Context << false;
    QTest::newRow("double click") << QSystemTrayIcon::DoubleClick << true;
    QTest::newRow("single click") << QSystemTrayIcon::Trigger << true;
    QTest::newRow("middle click") << QSystemTrayIcon::MiddleClick << false;
}

void tst_TrayIcon::onlyTriggerAndDoubleClickShowTheMainWindow()
{
    QFETCH(QSystemTrayIcon::ActivationReason, reason);
    QFETCH(bool, shown);
    MainWindow window;
    TrayIcon tray;
    tray.setMainWindow(&window);
    tray.settingsWindow = &settings();
    emit tray.activated(reason);
    QCOMPARE(window.isVisible(), shown);
    QVERIFY(!settings().isVisible());
    QCOMPARE(takeLog(), QStringList());
}

void tst_TrayIcon::aNullMainWindowIsIgnored()
{
    MainWindow window;
    TrayIcon tray;
    tray.setMainWindow(&window);
    tray.setMainWindow(nullptr);
    emit tray.activated(QSystemTrayIcon::Trigger);
    QVERIFY(window.isVisible());
}

void tst_TrayIcon::withoutAMainWindowAWarningIsShown_data()
{
    QTest::addColumn<QSystemTrayIcon::ActivationReason>("reason");
    QTest::newRow("from the menu") << QSystemTrayIcon::Unknown;
    QTest::newRow("by a click") << QSystemTrayIcon::Trigger;
    QTest::newRow("by a double click") << QSystemTrayIcon::DoubleClick;
}

void tst_TrayIcon::withoutAMainWindowAWarningIsShown()
{
    QFETCH(QSystemTrayIcon::ActivationReason, reason);
    TrayIcon tray;
    tray.settingsWindow = &settings();
    const BoxWatcher watcher;
    if (reason == QSystemTrayIcon::Unknown)
        trigger(tray, MainWindowEntry);
    else
        emit tray.activated(reason);
    verifyOneWarning(watcher, "警告", "主窗口未设置，请先设置主窗口。");
}

void tst_TrayIcon::otherClicksWithoutAMainWindowDoNothing_data()
{
    QTest::addColumn<QSystemTrayIcon::ActivationReason>("reason");
    QTest::newRow("unknown") << QSystemTrayIcon::Unknown;
    QTest::newRow("right click") << QSystemTrayIcon::Context;
    QTest::newRow("middle click") << QSystemTrayIcon::MiddleClick;
}

void tst_TrayIcon::otherClicksWithoutAMainWindowDoNothing()
{
    QFETCH(QSystemTrayIcon::ActivationReason, reason);
    TrayIcon tray;
    const BoxWatcher watcher;
    emit tray.activated(reason);
    QVERIFY(watcher.boxes().isEmpty());
}

void tst_TrayIcon::withoutASettingsDialogAWarningIsShown()
{
    MainWindow window;
    TrayIcon tray;
    tray.setMainWindow(&window);
    const BoxWatcher watcher;
    trigger(tray, Setup);
    verifyOneWarning(watcher, "警告", "设置窗口未设置，请先设置设置窗口。");
    QVERIFY(!window.isVisible());
}

void tst_TrayIcon::upgradeSendsOnePacketAndClosesTheDevice()
{
    plug(VESMORA_PID_RM);
    const TrayIcon tray;
    const BoxWatcher watcher;
    trigger(tray, Upgrade);
    const QList<Record> record = simulator().record();
    QCOMPARE(takeTraffic(), on(1, {"open", "upgradeFirmware", "close"}));
    QCOMPARE(takeLog(), QStringList());
    QVERIFY(watcher.boxes().isEmpty());

    QVERIFY(record.size() >= 2);
    QCOMPARE(record.at(1).bytes, QByteArray("\x01\x60") + QByteArray(35, '\0'));
}

void tst_TrayIcon::upgradeSaysNothingWhenTheDeviceRefuses()
{
    plug(VESMORA_PID_RX1);
    QVERIFY(simulator().fail("upgradeFirmware", 1, ERROR_GEN_FAILURE));
    const TrayIcon tray;
    const BoxWatcher watcher;
    trigger(tray, Upgrade);
    QCOMPARE(takeTraffic(), on(1, {"open", "upgradeFirmware !31", "close"}));
    QCOMPARE(takeLog(), QStringList());
    QVERIFY(watcher.boxes().isEmpty());
}

void tst_TrayIcon::upgradeWithoutADeviceOnlyLogs()
{
    const TrayIcon tray;
    const BoxWatcher watcher;
    trigger(tray, Upgrade);
    QCOMPARE(takeTraffic(), QStringList());
    QCOMPARE(takeLog(), QStringList{"Failed to create device in rx1."});
    QVERIFY(watcher.boxes().isEmpty());
}

void tst_TrayIcon::upgradeOpensAConnectionEachTime()
{
    plug(VESMORA_PID_RM);
    const TrayIcon tray;
    trigger(tray, Upgrade);
    trigger(tray, Upgrade);
    QCOMPARE(takeTraffic(),
             on(1, {"open", "upgradeFirmware", "close"})
                 + on(2, {"open", "upgradeFirmware", "close"}));
}

QTEST_MAIN(tst_TrayIcon)
#include "tst_trayicon.moc"
