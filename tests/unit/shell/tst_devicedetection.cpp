#include "mainwindow.h"
#include "panelmodel.h"
#include "shellfixture.h"
#include "windowview.h"

#include <QLabel>
#include <QPointer>
#include <QTest>
#include <QTimer>
#include <QTranslator>

namespace {

const QString notConnected = "声卡未连接！";
const QString unknownDevice = "未知设备，请检查连接！";
const QString noFirmware = "获取固件版本失败，请检查连接！";
const QString labelStyle = "font-size: 12px; color: white;";

void addModels()
{
    QTest::addColumn<quint32>("model");
    QTest::addColumn<QString>("panel");
    QTest::addColumn<QString>("title");
    for (const PanelModel &model : allPanelModels())
        QTest::newRow(qPrintable(model.name))
            << model.identifier() << model.name << model.title() + "2025093001";
}

QString pidLog(quint32 pid)
{
    return QString("Device PID: %1").arg(pid);
}

} // namespace

/// What each tick of the search does.
class tst_DeviceDetection : public ShellFixture
{
    Q_OBJECT

private slots:
    void withoutADeviceTheLabelStaysAndEachTickLogsZero();
    void identifierZeroCountsAsNoDevice();
    void aModelShowsItsPanelAndFirmware_data() { addModels(); }
    void aModelShowsItsPanelAndFirmware();
    void theTitleTakesEachByteAsOneCharacter_data();
    void theTitleTakesEachByteAsOneCharacter();
    void detectionReplacesTheLabelOnceEventsRun();

    void anUnknownIdentifierShowsALabelAndKeepsProbing_data();
    void anUnknownIdentifierShowsALabelAndKeepsProbing();
    void eachProbeOfAnUnknownDeviceReplacesTheLabel();
    void aFailedReadKeepsThePreviousIdentifier();
    void anUnknownDeviceMayBecomeAKnownOne();

    void withoutASettingsLinkTheWindowIsEmptyAndBothTimersRun();
    void theNextTickMakesUpForAMissingSettingsLink();
    void aFailedFirmwareReadIsToldBelowThePanel_data() { addModels(); }
    void aFailedFirmwareReadIsToldBelowThePanel();
    void afterAFailedFirmwareReadTheNextTickStartsOver_data() { addModels(); }
    void afterAFailedFirmwareReadTheNextTickStartsOver();
    void theMessagesAreNotTranslated();

    void theTimersOfAHiddenWindowFindADevice();

private:
    /// A window that knows the settings dialog, and what it shows.
    struct Searching {
        explicit Searching(Settings &settings)
            : view(window)
        {
            window.settingsWindow = &settings;
        }

        MainWindow window;
        WindowView view;
    };
};

void tst_DeviceDetection::withoutADeviceTheLabelStaysAndEachTickLogsZero()
{
    Searching searching(settings());
    const QPointer<QWidget> label = searching.view.widgetAt(0);
    for (int tick = 0; tick < 3; ++tick) {
        searching.view.detect();
        QCOMPARE(takeLog(), QStringList{pidLog(0)});
    }
    deleteDeferred();
    QVERIFY(label);
    QCOMPARE(searching.view.content(), QStringList{notConnected});
    QCOMPARE(takeTraffic(), QStringList());
    QCOMPARE(searching.window.windowTitle(), "Vesmora Driver");
    QVERIFY(searching.view.detectTimer()->isActive());
    QVERIFY(!searching.view.pollTimer()->isActive());
}

void tst_DeviceDetection::identifierZeroCountsAsNoDevice()
{
    plug(VESMORA_PID_RX1);
    QVERIFY(simulator().setIdentifier(0));
    Searching searching(settings());
    searching.view.detect();
    QCOMPARE(takeLog(), QStringList{pidLog(0)});
    // The probe is released again.
    QCOMPARE(takeTraffic(), on(1, {"open", "getDevicePid", "close"}));
    QCOMPARE(searching.view.content(), QStringList{notConnected});
    QVERIFY(searching.view.detectTimer()->isActive());
    QVERIFY(!searching.view.pollTimer()->isActive());
}

void tst_DeviceDetection::aModelShowsItsPanelAndFirmware()
{
    QFETCH(quint32, model);
    QFETCH(QString, panel);
    QFETCH(QString, title);
    const PanelStart start = panelStarts(model).constFirst();
    plug(model);
    Searching searching(settings());
    searching.view.detect();

    const QStringList log = QStringList{pidLog(model)} + firstEngineLog() + start.log
        + QStringList{QString("Adding %1 widget to layout.").arg(panel),
                      QString("Device found with PID: %1").arg(model)};
    QCOMPARE(takeLog(), log);
    const QStringList traffic = on(1, {"open", "getDevicePid"}) + on(2, {"open"})
        + on(2, firstEngineRequests()) + on(3, {"open"}) + on(3, start.requests)
        + on(1, {"getFirmwareVersion"}) + on(4, {"open"}) + on(1, {"close"});
    QCOMPARE(takeTraffic(), traffic);

    QCOMPARE(searching.view.content(), QStringList{panel});
    QVERIFY(searching.window.isAncestorOf(searching.view.widgetAt(0)));
    QCOMPARE(searching.window.windowTitle(), title);
    QVERIFY(!searching.view.detectTimer()->isActive());
    QVERIFY(searching.view.pollTimer()->isActive());
}

void tst_DeviceDetection::theTitleTakesEachByteAsOneCharacter_data()
{
    QTest::addColumn<QByteArray>("firmware");
    QTest::addColumn<QString>("version");
    QTest::newRow("ten characters") << QByteArray("A1.20-b345") << "A1.20-b345";
    QTest::newRow("zero bytes stay")
        << QByteArray("1.2\0\0\0\0\0\0\0", 10) << QString::fromLatin1("1.2\0\0\0\0\0\0\0", 10);
    QTest::newRow("nothing but zero bytes") << QByteArray(10, '\0') << QString(10, QChar(0));
    QTest::newRow("Latin-1") << QByteArray("\x7F\x80\x9F\xA0\xB5\xC4\xDF\xE9\xF7\xFF")
                             << "\u007F\u0080\u009F\u00A0\u00B5"
                                "\u00C4\u00DF\u00E9\u00F7\u00FF";
    // Filled in one after the other, an earlier byte can make a new place, "%9", for a later one.
    QTest::newRow("a place marker") << QByteArray("%9cdefghij") << "icdefghij";
}

void tst_DeviceDetection::theTitleTakesEachByteAsOneCharacter()
{
    QFETCH(QByteArray, firmware);
    QFETCH(QString, version);
    plug(VESMORA_PID_RM);
    QVERIFY(simulator().setFirmware(firmware));
    Searching searching(settings());
    searching.view.detect();
    QCOMPARE(searching.window.windowTitle(), QString("Vesmora RM - FW: ") + version);
}

void tst_DeviceDetection::detectionReplacesTheLabelOnceEventsRun()
{
    plug(VESMORA_PID_RX1);
    Searching searching(settings());
    const QPointer<QWidget> label = searching.view.widgetAt(0);
    searching.view.detect();
    QVERIFY(label);
    deleteDeferred();
    QVERIFY(!label);
    QCOMPARE(searching.view.content(), QStringList{"rx1"});
}

void tst_DeviceDetection::anUnknownIdentifierShowsALabelAndKeepsProbing_data()
{
    QTest::addColumn<quint32>("identifier");
    for (const quint32 identifier : {3u, 14u, 16u, 0x0Fu << 4, 0x10001u, 0xFFFFFFFFu})
        QTest::addRow("%u", identifier) << identifier;
}

void tst_DeviceDetection::anUnknownIdentifierShowsALabelAndKeepsProbing()
{
    QFETCH(quint32, identifier);
    plug(identifier);
    Searching searching(settings());
    searching.view.detect();
    QCOMPARE(takeLog(),
             (QStringList{pidLog(identifier), QString("Unknown device PID: %1").arg(identifier)}));
    // The probe is deliberately left open.
    QCOMPARE(takeTraffic(), on(1, {"open", "getDevicePid"}));
    QCOMPARE(searching.view.content(), QStringList{unknownDevice});
    QCOMPARE(searching.view.widgetAt(0)->styleSheet(), labelStyle);
    QCOMPARE(searching.window.windowTitle(), "Vesmora Driver");
    QVERIFY(searching.view.detectTimer()->isActive());
    QVERIFY(!searching.view.pollTimer()->isActive());

    searching.view.detect();
    QCOMPARE(takeTraffic(), on(2, {"open", "getDevicePid"}));
}

void tst_DeviceDetection::eachProbeOfAnUnknownDeviceReplacesTheLabel()
{
    plug(3);
    Searching searching(settings());
    searching.view.detect();
    const QPointer<QWidget> first = searching.view.widgetAt(0);
    searching.view.detect();
    QVERIFY(searching.view.widgetAt(0) != first);
    QCOMPARE(searching.view.content(), QStringList{unknownDevice});
    deleteDeferred();
    QVERIFY(!first);
    QCOMPARE(searching.window.findChildren<QLabel *>().size(), 1);
}

void tst_DeviceDetection::aFailedReadKeepsThePreviousIdentifier()
{
    plug(3);
    Searching searching(settings());
    searching.view.detect();
    takeLog();
    takeTraffic();
    const QStringList again{pidLog(3), "Unknown device PID: 3"};

    QVERIFY(simulator().fail("getDevicePid", 1, ERROR_GEN_FAILURE));
    searching.view.detect();
    QCOMPARE(takeLog(), again);
    QCOMPARE(takeTraffic(), on(2, {"open", "getDevicePid !31"}));

    unplug();
    searching.view.detect();
    QCOMPARE(takeLog(), again);
    QCOMPARE(takeTraffic(), QStringList());
    QCOMPARE(searching.view.content(), QStringList{unknownDevice});
}

void tst_DeviceDetection::anUnknownDeviceMayBecomeAKnownOne()
{
    plug(3);
    Searching searching(settings());
    searching.view.detect();
    QVERIFY(simulator().setIdentifier(VESMORA_PID_RM));
    searching.view.detect();
    QCOMPARE(searching.view.content(), QStringList{"rm"});
    QVERIFY(!searching.view.detectTimer()->isActive());
}

void tst_DeviceDetection::withoutASettingsLinkTheWindowIsEmptyAndBothTimersRun()
{
    if (!simulator().canRefuseOpens())
        QSKIP("Opening a device cannot be refused here.");
    plug(VESMORA_PID_RX1);
    QVERIFY(simulator().fail("open", 2, ERROR_ACCESS_DENIED));
    Searching searching(settings());
    searching.view.detect();
    QCOMPARE(takeLog(),
             (QStringList{pidLog(1), "Failed to create device in rx1.",
                          "Failed to connect to driver in settings window."}));
    // The probe, 1, is deliberately left open beside the presence connection, 2.
    QCOMPARE(takeTraffic(),
             on(1, {"open", "getDevicePid"}) + QStringList{"open !5"} + on(2, {"open"}));
    QCOMPARE(searching.view.content(), QStringList());
    QCOMPARE(searching.window.windowTitle(), "Vesmora Driver");
    QVERIFY(searching.view.detectTimer()->isActive());
    QVERIFY(searching.view.pollTimer()->isActive());

    searching.view.poll();
    QCOMPARE(takeTraffic(), on(2, {"getDevicePid"}));
}

void tst_DeviceDetection::theNextTickMakesUpForAMissingSettingsLink()
{
    if (!simulator().canRefuseOpens())
        QSKIP("Opening a device cannot be refused here.");
    const PanelStart start = panelStarts(VESMORA_PID_RX1).constFirst();
    plug(VESMORA_PID_RX1);
    QVERIFY(simulator().fail("open", 2, ERROR_ACCESS_DENIED));
    Searching searching(settings());
    searching.view.detect();
    takeLog();
    takeTraffic();

    searching.view.detect();
    // The first presence connection, 2, is replaced without being closed.
    QCOMPARE(takeTraffic(),
             on(3, {"open", "getDevicePid"}) + on(4, {"open"}) + on(4, firstEngineRequests())
                 + on(5, {"open"}) + on(5, start.requests) + on(3, {"getFirmwareVersion"})
                 + on(6, {"open"}) + on(3, {"close"}));
    QCOMPARE(searching.view.content(), QStringList{"rx1"});
    QVERIFY(!searching.view.detectTimer()->isActive());
    searching.view.poll();
    QCOMPARE(takeTraffic(), on(6, {"getDevicePid"}));
}

void tst_DeviceDetection::aFailedFirmwareReadIsToldBelowThePanel()
{
    QFETCH(quint32, model);
    QFETCH(QString, panel);
    const PanelStart start = panelStarts(model).constFirst();
    plug(model);
    QVERIFY(simulator().fail("getFirmwareVersion", 1, ERROR_GEN_FAILURE));
    Searching searching(settings());
    searching.view.detect();

    const QStringList log = QStringList{pidLog(model)} + firstEngineLog() + start.log
        + QStringList{QString("Adding %1 widget to layout.").arg(panel),
                      "Failed to get firmware version."};
    QCOMPARE(takeLog(), log);
    // The probe is deliberately left open.
    QCOMPARE(takeTraffic(),
             on(1, {"open", "getDevicePid"}) + on(2, {"open"}) + on(2, firstEngineRequests())
                 + on(3, {"open"}) + on(3, start.requests) + on(1, {"getFirmwareVersion !31"}));
    QCOMPARE(searching.view.content(), (QStringList{panel, noFirmware}));
    QCOMPARE(searching.view.widgetAt(1)->styleSheet(), labelStyle);
    QCOMPARE(searching.window.windowTitle(), "Vesmora Driver");
    QVERIFY(searching.view.detectTimer()->isActive());
    QVERIFY(!searching.view.pollTimer()->isActive());
}

void tst_DeviceDetection::afterAFailedFirmwareReadTheNextTickStartsOver()
{
    QFETCH(quint32, model);
    QFETCH(QString, panel);
    QFETCH(QString, title);
    const QList<PanelStart> starts = panelStarts(model, 2);
    plug(model);
    QVERIFY(simulator().fail("getFirmwareVersion", 1, ERROR_GEN_FAILURE));
    Searching searching(settings());
    searching.view.detect();
    const QPointer<QWidget> firstPanel = searching.view.widgetAt(0);
    const QPointer<QWidget> firstLabel = searching.view.widgetAt(1);
    takeLog();
    takeTraffic();

    searching.view.detect();
    const QStringList log = QStringList{pidLog(model)} + laterEngineLog() + starts.at(1).log
        + QStringList{QString("Adding %1 widget to layout.").arg(panel),
                      QString("Device found with PID: %1").arg(model)};
    QCOMPARE(takeLog(), log);
    QCOMPARE(takeTraffic(),
             on(4, {"open", "getDevicePid"}) + on(2, {"close"}) + on(5, {"open"})
                 + on(5, laterEngineRequests()) + on(6, {"open"}) + on(6, starts.at(1).requests)
                 + on(4, {"getFirmwareVersion"}) + on(7, {"open"}) + on(4, {"close"}));
    QCOMPARE(searching.view.content(), QStringList{panel});
    QCOMPARE(searching.window.windowTitle(), title);
    QVERIFY(!searching.view.detectTimer()->isActive());

    QVERIFY(firstPanel && firstLabel);
    deleteDeferred();
    QVERIFY(!firstPanel && !firstLabel);
    QCOMPARE(takeTraffic(), on(3, {"close"}));
}

void tst_DeviceDetection::theMessagesAreNotTranslated()
{
    class AnyTranslator : public QTranslator
    {
    public:
        QString translate(const char *context, const char *, const char *, int) const override
        {
            // Panels and dialog may say what they like.
            return qstrcmp(context, "MainWindow") == 0 ? "translated" : QString();
        }
        bool isEmpty() const override { return false; }
    } translator;
    QVERIFY(QCoreApplication::installTranslator(&translator));

    plug(3);
    Searching searching(settings());
    searching.view.detect();
    QCOMPARE(searching.view.content(), QStringList{unknownDevice});

    QVERIFY(simulator().setIdentifier(VESMORA_PID_RX1));
    QVERIFY(simulator().fail("getFirmwareVersion", 1, ERROR_GEN_FAILURE));
    searching.view.detect();
    QCOMPARE(searching.view.content(), (QStringList{"rx1", noFirmware}));
}

void tst_DeviceDetection::theTimersOfAHiddenWindowFindADevice()
{
    Searching searching(settings());
    QTRY_VERIFY_WITH_TIMEOUT(log().count(pidLog(0)) >= 2, patience);
    plug(VESMORA_PID_RM);
    QTRY_COMPARE_WITH_TIMEOUT(searching.view.content(), QStringList{"rm"}, patience);
    QCOMPARE(searching.window.windowTitle(), "Vesmora RM - FW: 2025093001");
    QVERIFY(!searching.window.isVisible());
    // The engine's start goes on by itself meanwhile, and so do the polls.
    QTRY_VERIFY_WITH_TIMEOUT(log().contains("设置初始化完成"), patience);
    QTRY_VERIFY_WITH_TIMEOUT(simulator().requests().count("getDevicePid") > 3, patience);
    QCOMPARE(searching.view.content(), QStringList{"rm"});
}

QTEST_MAIN(tst_DeviceDetection)
#include "tst_devicedetection.moc"
