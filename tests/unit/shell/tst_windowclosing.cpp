#include "faketray.h"
#include "mainwindow.h"
#include "shellfixture.h"
#include "trayicon.h"
#include "windowview.h"

#include <QCloseEvent>
#include <QMenu>
#include <QSignalSpy>
#include <QTest>
#include <QTimer>

/// What becomes of the windows when they are closed, and of the program when they are open.
class tst_WindowClosing : public ShellFixture
{
    Q_OBJECT

private slots:
    void withASystemTrayClosingOnlyHidesTheWindow();
    void withoutASystemTrayTheWindowSurvivesBeingClosed();
    void aClosedWindowGoesOnSearching_data();
    void aClosedWindowGoesOnSearching();
    void closedWindowsLeaveTheProgramRunning_data();
    void closedWindowsLeaveTheProgramRunning();
    void quitEndsTheProgramWhicheverWindowsAreOpen_data();
    void quitEndsTheProgramWhicheverWindowsAreOpen();

private:
    /// Runs everything that waits to be run, deletions too.
    static void settle();
    static void addTrays();
};

void tst_WindowClosing::settle()
{
    QEventLoop loop;
    QTimer::singleShot(0, &loop, &QEventLoop::quit);
    loop.exec();
    deleteDeferred();
}

void tst_WindowClosing::addTrays()
{
    QTest::addColumn<bool>("hasTray");
    QTest::newRow("with a system tray") << true;
    QTest::newRow("without a system tray") << false;
}

void tst_WindowClosing::withASystemTrayClosingOnlyHidesTheWindow()
{
    setSystemTrayAvailable(true);
    MainWindow window;
    QSignalSpy destroyed(&window, &QObject::destroyed);
    window.show();
    QCloseEvent event;
    QCoreApplication::sendEvent(&window, &event);
    QVERIFY(!event.isAccepted());
    QVERIFY(!window.isVisible());

    window.show();
    QVERIFY(!window.close());
    QVERIFY(!window.isVisible());
    settle();
    QCOMPARE(destroyed.count(), 0);
    QVERIFY(window.testAttribute(Qt::WA_DeleteOnClose));
}

void tst_WindowClosing::withoutASystemTrayTheWindowSurvivesBeingClosed()
{
    setSystemTrayAvailable(false);
    int destroyed = 0;
    {
        MainWindow window;
        connect(&window, &QObject::destroyed, this, [&destroyed] { ++destroyed; });
        for (int round = 0; round < 2; ++round) {
            window.show();
            QVERIFY(window.isVisible());
            QVERIFY(window.close());
            settle();
            QVERIFY(!window.isVisible());
            QCOMPARE(destroyed, 0);
        }
        window.show();
        QVERIFY(window.isVisible());
        QCOMPARE(WindowView(window).content(), QStringList{"声卡未连接！"});
    }
    settle();
    QCOMPARE(destroyed, 1);
}

void tst_WindowClosing::aClosedWindowGoesOnSearching_data()
{
    addTrays();
}

void tst_WindowClosing::aClosedWindowGoesOnSearching()
{
    QFETCH(bool, hasTray);
    setSystemTrayAvailable(hasTray);
    plug(VESMORA_PID_RM);
    MainWindow window;
    window.settingsWindow = &settings();
    const WindowView view(window);
    window.show();
    window.close();
    QVERIFY(view.detectTimer()->isActive());
    QTRY_COMPARE_WITH_TIMEOUT(view.content(), QStringList{"rm"}, patience);
    window.show();
    window.close();
    QVERIFY(view.pollTimer()->isActive());
    QCOMPARE(view.content(), QStringList{"rm"});
}

void tst_WindowClosing::closedWindowsLeaveTheProgramRunning_data()
{
    addTrays();
}

void tst_WindowClosing::closedWindowsLeaveTheProgramRunning()
{
    QFETCH(bool, hasTray);
    setSystemTrayAvailable(hasTray);
    QGuiApplication::setQuitOnLastWindowClosed(true);
    MainWindow window;
    window.settingsWindow = &settings();
    TrayIcon tray;
    tray.setMainWindow(&window);
    tray.settingsWindow = &settings();

    QTimer steps;
    int step = 0;
    // A program about to end would do so in the many steps that follow the closing.
    steps.callOnTimeout(&window, [&] {
        if (++step == 1) {
            window.show();
            settings().show();
        } else if (step == 2) {
            settings().close();
            window.close();
        } else if (step == 10) {
            QCoreApplication::exit(42);
        }
    });
    steps.start(0);
    QCOMPARE(QCoreApplication::exec(), 42);
    QCOMPARE(step, 10);
}

void tst_WindowClosing::quitEndsTheProgramWhicheverWindowsAreOpen_data()
{
    QTest::addColumn<bool>("hasTray");
    QTest::addColumn<bool>("showsWindow");
    QTest::addColumn<bool>("showsSettings");
    for (const bool hasTray : {true, false}) {
        for (const bool showsWindow : {false, true}) {
            for (const bool showsSettings : {false, true}) {
                QTest::addRow("%s, %s, %s", hasTray ? "tray" : "no tray",
                              showsWindow ? "window" : "no window",
                              showsSettings ? "settings" : "no settings")
                    << hasTray << showsWindow << showsSettings;
            }
        }
    }
}

void tst_WindowClosing::quitEndsTheProgramWhicheverWindowsAreOpen()
{
    QFETCH(bool, hasTray);
    QFETCH(bool, showsWindow);
    QFETCH(bool, showsSettings);
    setSystemTrayAvailable(hasTray);
    MainWindow window;
    window.settingsWindow = &settings();
    TrayIcon tray;
    tray.setMainWindow(&window);
    tray.settingsWindow = &settings();
    window.setVisible(showsWindow);
    settings().setVisible(showsSettings);

    QAction *quit = tray.contextMenu()->actions().at(1);
    QTimer::singleShot(0, quit, &QAction::trigger);
    QTimer deadline;
    deadline.callOnTimeout(quit, [] { QCoreApplication::exit(42); });
    deadline.start(patience);
    QCOMPARE(QCoreApplication::exec(), 0);
    QVERIFY(deadline.isActive());
}

QTEST_MAIN(tst_WindowClosing)
#include "tst_windowclosing.moc"
