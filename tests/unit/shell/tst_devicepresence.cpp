#include "mainwindow.h"
#include "shellfixture.h"
#include "windowview.h"

#include <QLabel>
#include <QPointer>
#include <QTest>
#include <QTimer>
#include <QTranslator>

namespace {

const QString notConnected = "声卡未连接！";
const QString rx1Title = "Vesmora RX1 - FW: 2025093001";

QString errorLog(int count)
{
    return QString("Error reading device PID from driver, error count: %1").arg(count);
}

const QStringList lossLog{"Meter driver handle deleted.", "Cleared all widgets from base layout."};

/// Speaks of the lost device in its own way, and only of that.
class LossTranslator : public QTranslator
{
public:
    QString translate(const char *context, const char *source, const char *, int) const override
    {
        const bool isLoss =
            qstrcmp(context, "MainWindow") == 0 && QString::fromUtf8(source) == "声卡未连接！";
        return isLoss ? "gone" : QString();
    }
    bool isEmpty() const override { return false; }
};

} // namespace

/// What each tick of the presence poll does while a device is shown.
class tst_DevicePresence : public ShellFixture
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void successfulPollsSayNothing();
    void aChangedIdentifierIsNotNoticed();
    void twoFailedPollsOnlyLog();
    void aSuccessfulPollForgetsTheFailures();
    void theThirdFailedPollTearsThePanelDown();
    void thePanelGoesOnceEventsRun();
    void theTitleOutlivesTheDevice();
    void theLabelOfALostDeviceIsTranslated();
    void aLossLeavesTheSettingsPending();
    void afterALossTheSearchFindsTheNextDevice();
    void afterALossOneFailedPollTearsDownAtOnce();
    void aSuccessfulPollAfterALossForgivesIt();
    void aPresenceConnectionThatDidNotOpenLosesTheDevice();
    void aLossWithoutASettingsLinkAlsoClearsUp();
    void aDeviceThatGoesBeforeItsFirmwareIsReadIsLostByThePolls();
    void theTimersNoticeTheLossAndTheReturn();

private:
    /// Lets the window find that model; connections are then 2 for the engine, 3 for the panel and
    /// 4 for the polls.
    void show(quint32 model);
    void loseDevice();
    void poll(int times);
    void forget();

    WindowView &view() { return *m_view; }

    std::unique_ptr<MainWindow> m_window;
    std::unique_ptr<WindowView> m_view;
};

void tst_DevicePresence::init()
{
    ShellFixture::init();
    if (QTest::currentTestFailed())
        return;
    m_window = std::make_unique<MainWindow>();
    m_window->settingsWindow = &settings();
    m_view = std::make_unique<WindowView>(*m_window);
}

void tst_DevicePresence::cleanup()
{
    m_view.reset();
    m_window.reset();
    ShellFixture::cleanup();
}

void tst_DevicePresence::show(quint32 model)
{
    plug(model);
    view().detect();
    QVERIFY(view().pollTimer()->isActive());
    deleteDeferred();
    forget();
}

void tst_DevicePresence::loseDevice()
{
    unplug();
    poll(3);
    QVERIFY(view().detectTimer()->isActive());
    deleteDeferred();
    forget();
}

void tst_DevicePresence::poll(int times)
{
    for (int i = 0; i < times; ++i)
        view().poll();
}

void tst_DevicePresence::forget()
{
    takeLog();
    takeTraffic();
}

void tst_DevicePresence::successfulPollsSayNothing()
{
    show(VESMORA_PID_RX1);
    poll(2);
    QCOMPARE(takeLog(), QStringList());
    QCOMPARE(takeTraffic(), on(4, {"getDevicePid", "getDevicePid"}));
    QCOMPARE(view().content(), QStringList{"rx1"});
}

void tst_DevicePresence::aChangedIdentifierIsNotNoticed()
{
    show(VESMORA_PID_RX1);
    for (const quint32 identifier : {VESMORA_PID_RM, 3u, 0u}) {
        QVERIFY(simulator().setIdentifier(identifier));
        poll(3);
        QCOMPARE(takeLog(), QStringList());
        QCOMPARE(view().content(), QStringList{"rx1"});
        QVERIFY(!view().detectTimer()->isActive());
    }
}

void tst_DevicePresence::twoFailedPollsOnlyLog()
{
    show(VESMORA_PID_RX1);
    unplug();
    settings().pendingInit = false;
    poll(2);
    QCOMPARE(takeLog(), (QStringList{errorLog(1), errorLog(2)}));
    QCOMPARE(takeTraffic(), on(4, {"getDevicePid !1167", "getDevicePid !1167"}));
    QCOMPARE(view().content(), QStringList{"rx1"});
    QVERIFY(view().pollTimer()->isActive());
    QVERIFY(!view().detectTimer()->isActive());
    QVERIFY(!settings().pendingInit);
}

void tst_DevicePresence::aSuccessfulPollForgetsTheFailures()
{
    show(VESMORA_PID_RX1);
    for (int round = 0; round < 2; ++round) {
        QVERIFY(simulator().fail("getDevicePid", 1, ERROR_GEN_FAILURE, 2));
        poll(3);
        QCOMPARE(takeLog(), (QStringList{errorLog(1), errorLog(2)}));
        QCOMPARE(takeTraffic(), on(4, {"getDevicePid !31", "getDevicePid !31", "getDevicePid"}));
    }
    QCOMPARE(view().content(), QStringList{"rx1"});
}

void tst_DevicePresence::theThirdFailedPollTearsThePanelDown()
{
    show(VESMORA_PID_RX1);
    unplug();
    poll(3);
    QCOMPARE(takeLog(), (QStringList{errorLog(1), errorLog(2), errorLog(3)} + lossLog));
    QCOMPARE(takeTraffic(),
             on(4, {"getDevicePid !1167", "getDevicePid !1167", "getDevicePid !1167", "close"}));
    QCOMPARE(view().content(), QStringList{notConnected});
    QCOMPARE(view().widgetAt(0)->styleSheet(), "font-size: 12px; color: white;");
    QVERIFY(!view().pollTimer()->isActive());
    QVERIFY(view().detectTimer()->isActive());
    QCOMPARE(view().detectTimer()->interval(), 1000);

    // The identifier is forgotten, too.
    view().detect();
    QCOMPARE(takeLog(), QStringList{"Device PID: 0"});
}

void tst_DevicePresence::thePanelGoesOnceEventsRun()
{
    show(VESMORA_PID_RX1);
    unplug();
    const QPointer<QWidget> panel = view().widgetAt(0);
    poll(3);
    QVERIFY(panel);
    takeTraffic();
    deleteDeferred();
    QVERIFY(!panel);
    // The engine's connection, 2, stays.
    QCOMPARE(takeTraffic(), on(3, {"close"}));
}

void tst_DevicePresence::theTitleOutlivesTheDevice()
{
    show(VESMORA_PID_RX1);
    QCOMPARE(m_window->windowTitle(), rx1Title);
    loseDevice();
    view().detect();
    QCOMPARE(m_window->windowTitle(), rx1Title);
}

void tst_DevicePresence::theLabelOfALostDeviceIsTranslated()
{
    LossTranslator translator;
    QVERIFY(QCoreApplication::installTranslator(&translator));
    show(VESMORA_PID_RX1);
    loseDevice();
    QCOMPARE(view().content(), QStringList{"gone"});
}

void tst_DevicePresence::aLossLeavesTheSettingsPending()
{
    show(VESMORA_PID_RX1);
    settings().pendingInit = false;
    loseDevice();
    QVERIFY(settings().pendingInit);
}

void tst_DevicePresence::afterALossTheSearchFindsTheNextDevice()
{
    show(VESMORA_PID_RX1);
    loseDevice();
    QVERIFY(simulator().setFirmware("ABCDEFGHIJ"));
    show(VESMORA_PID_RM);
    QCOMPARE(view().content(), QStringList{"rm"});
    QCOMPARE(m_window->windowTitle(), "Vesmora RM - FW: ABCDEFGHIJ");
    QVERIFY(!view().detectTimer()->isActive());
    QCOMPARE(m_window->findChildren<QLabel *>(QString(), Qt::FindDirectChildrenOnly).size(), 0);
}

void tst_DevicePresence::afterALossOneFailedPollTearsDownAtOnce()
{
    show(VESMORA_PID_RX1);
    loseDevice();
    for (int count = 4; count <= 5; ++count) {
        show(VESMORA_PID_RX1);
        unplug();
        poll(1);
        QCOMPARE(takeLog(), QStringList{errorLog(count)} + lossLog);
        QCOMPARE(view().content(), QStringList{notConnected});
        QVERIFY(view().detectTimer()->isActive());
        QVERIFY(!view().pollTimer()->isActive());
    }
}

void tst_DevicePresence::aSuccessfulPollAfterALossForgivesIt()
{
    show(VESMORA_PID_RX1);
    loseDevice();
    show(VESMORA_PID_RX1);
    poll(1);
    unplug();
    poll(2);
    QCOMPARE(takeLog(), (QStringList{errorLog(1), errorLog(2)}));
    QCOMPARE(view().content(), QStringList{"rx1"});
}

void tst_DevicePresence::aPresenceConnectionThatDidNotOpenLosesTheDevice()
{
    plug(VESMORA_PID_RX1);
    QVERIFY(simulator().fail("open", 4, ERROR_ACCESS_DENIED));
    view().detect();
    QCOMPARE(view().content(), QStringList{"rx1"});
    QCOMPARE(m_window->windowTitle(), rx1Title);
    forget();

    poll(3);
    QCOMPARE(takeLog(), (QStringList{errorLog(1), errorLog(2), errorLog(3)} + lossLog));
    QCOMPARE(takeTraffic(), QStringList());
    QVERIFY(view().detectTimer()->isActive());
}

void tst_DevicePresence::aLossWithoutASettingsLinkAlsoClearsUp()
{
    if (!simulator().canRefuseOpens())
        QSKIP("Opening a device cannot be refused here.");
    plug(VESMORA_PID_RX1);
    QVERIFY(simulator().fail("open", 2, ERROR_ACCESS_DENIED));
    view().detect();
    QVERIFY(view().detectTimer()->isActive());
    forget();
    unplug();
    poll(3);
    QCOMPARE(takeLog(), (QStringList{errorLog(1), errorLog(2), errorLog(3)} + lossLog));
    QCOMPARE(view().content(), QStringList{notConnected});
    QVERIFY(!view().pollTimer()->isActive());
    QVERIFY(view().detectTimer()->isActive());
}

void tst_DevicePresence::aDeviceThatGoesBeforeItsFirmwareIsReadIsLostByThePolls()
{
    plug(VESMORA_PID_RX1);
    QVERIFY(simulator().fail("getFirmwareVersion", 1, ERROR_GEN_FAILURE));
    view().detect();
    unplug();
    forget();

    // The failed read leaves the model's identifier, but nothing opens any more.
    view().detect();
    QCOMPARE(takeLog(),
             (QStringList{"Device PID: 1", "Failed to create device in rx1.",
                          "Failed to connect to driver in settings window."}));
    QCOMPARE(view().content(), QStringList());
    poll(3);
    QCOMPARE(takeLog(), (QStringList{errorLog(1), errorLog(2), errorLog(3)} + lossLog));
    view().detect();
    QCOMPARE(takeLog(), QStringList{"Device PID: 0"});
    QCOMPARE(view().content(), QStringList{notConnected});
}

void tst_DevicePresence::theTimersNoticeTheLossAndTheReturn()
{
    plug(VESMORA_PID_RM);
    QTRY_COMPARE_WITH_TIMEOUT(view().content(), QStringList{"rm"}, patience);
    // A poll that succeeds, so that the count begins at none.
    QTRY_VERIFY_WITH_TIMEOUT(simulator().requests().count("getDevicePid") >= 2, patience);
    QVERIFY(simulator().unplug());
    QTRY_COMPARE_WITH_TIMEOUT(view().content(), QStringList{notConnected}, patience);
    const QStringList lines = takeLog();
    for (const QString &line : QStringList{errorLog(1), errorLog(2), errorLog(3)} + lossLog)
        QCOMPARE(lines.count(line), 1);

    QVERIFY(simulator().plug(VESMORA_PID_RM));
    QTRY_COMPARE_WITH_TIMEOUT(view().content(), QStringList{"rm"}, patience);
}

QTEST_MAIN(tst_DevicePresence)
#include "tst_devicepresence.moc"
