#include "asiopipe.h"
#include "listenerlog.h"
#include "loghook.h"
#include "otgtimers.h"
#include "pipeclient.h"
#include "settingsfixture.h"
#include "vesmoraiocontrol.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QLabel>
#include <QPixmapCache>
#include <QPushButton>
#include <QScopeGuard>
#include <QSignalSpy>
#include <QTimer>
#include <QTranslator>
#include <QVBoxLayout>

#include <new>

namespace {

bool refuseConnections = false;

} // namespace

// The only allocation of the program that is allowed to fail, made to fail.
void *operator new(std::size_t size, const std::nothrow_t &) noexcept
{
    if (refuseConnections && size == sizeof(VesmoraIoControl))
        return nullptr;
    try {
        return ::operator new(size);
    } catch (const std::bad_alloc &) {
        return nullptr;
    }
}

namespace {

/// Translates every text of the dialog, and no other, into itself between brackets.
class BracketTranslator : public QTranslator
{
public:
    BracketTranslator() { QCoreApplication::installTranslator(this); }
    ~BracketTranslator() override { QCoreApplication::removeTranslator(this); }

    bool isEmpty() const override { return false; }
    QString translate(const char *context, const char *text, const char *, int) const override
    {
        return qstrcmp(context, "Settings") == 0 ? QString("[%1]").arg(QString::fromUtf8(text))
                                                 : QString();
    }
};

QString describeWidget(QWidget *widget)
{
    if (const auto *label = qobject_cast<QLabel *>(widget)) {
        const bool centred = label->alignment() == Qt::AlignCenter;
        return QString("label %1|%2|%3")
            .arg(label->text(), centred ? "centre" : "elsewhere", label->styleSheet());
    }
    if (const auto *box = qobject_cast<QComboBox *>(widget)) {
        QStringList items;
        for (int i = 0; i < box->count(); ++i) {
            items << box->itemText(i);
            if (!box->itemIcon(i).isNull() || box->itemData(i).isValid())
                items << "(with an icon or data)";
        }
        return QString("box %1|%2|%3").arg(box->objectName(), box->currentText(), items.join(u' '));
    }
    if (const auto *button = qobject_cast<QPushButton *>(widget))
        return QString("button %1|%2|%3")
            .arg(button->objectName(), button->text(), button->styleSheet());
    return "something else";
}

/// The layout's items, one a line.
QStringList describeLayout(const QVBoxLayout &layout)
{
    QStringList lines;
    for (int i = 0; i < layout.count(); ++i) {
        QLayoutItem *item = layout.itemAt(i);
        QString line;
        if (item->widget())
            line = describeWidget(item->widget());
        else if (item->spacerItem() && item->expandingDirections() & Qt::Vertical)
            line = QString("stretch %1").arg(layout.stretch(i));
        else if (item->spacerItem())
            line = QString("space %1").arg(item->sizeHint().height());
        if (item->alignment() == Qt::AlignCenter)
            line += "|centred";
        lines << line;
    }
    return lines;
}

} // namespace

class tst_Settings : public SettingsFixture
{
    Q_OBJECT

private slots:
    void aNewDialogIsAHiddenTopLevelWindow();
    void theTitleIsNotTranslated();
    void theLayoutHoldsHeadingChoicesAndButtonInOrder();
    void labelsAndHeadingAreTranslatedAndOkIsNot();
    void theWindowIconIsThePicture();
    void withoutThePictureThereIsNoIcon();
    void noBoxBuildsItsListBeforeItOpens();
    void constructionLogsAndSendsNothing();
    void constructionMakesTheFolderAndNoFile();

    void withoutAFileTheFirstInitAppliesTheDefaults();
    void theOtgCycleOfTheStartRunsThroughTimers();
    void laterInitsWithUnchangedValuesRunTheStartSequenceAlone();
    void savedValuesAreAppliedInTheFilesOrderOfLoading();
    void savedFirstItemsRunNoSequence();
    void savedRateOf48000LeavesNothingToInitButTheReadOfTheRate();
    void aSavedValueThatIsNoItemLeavesTheFirstItem_data();
    void aSavedValueThatIsNoItemLeavesTheFirstItem();
    void anUnreadableFileMeansTheDefaults_data();
    void anUnreadableFileMeansTheDefaults();
    void anUnknownSampleRateTextIsLoggedAndNothingMore();
    void aFailingReadOfTheRateIsLoggedAsZero();
    void loadSettingsAloneStartsNoEngine();

    void createDeviceWithoutADriverFails();
    void createDeviceAgainReplacesTheConnection();
    void createDeviceAfterAFailureSucceeds();
    void createDeviceFailingAfterASuccessLeavesNoConnection();
    void createDeviceWithoutMemoryFails();
    void aConnectionThatGoesAwayEndsAPendingOtgCycle();
    void withoutAConnectionChoicesDoNothing();
    void choicesBeforeTheFirstConnectionAreForgotten_data();
    void choicesBeforeTheFirstConnectionAreForgotten();
    void aLaterConnectionLeavesTheBoxesAlone();

    void aRequestThroughThePipeShowsTheDialogOnTop();
    void aRequestRestoresAMinimizedDialog();
    void theDialogStaysOnTopForEver();

    void okWithoutAnAsioDriverHidesAndLogsTheError();
    void okSendsOneByteToTheAsioDriver();
    void okWhileTheAsioDriverIsBusyIsNotRetried();
    void okWhoseSignalDoesNotGoThroughLogsThat();
    void okHidesTheDialogBeforeItLooksForTheAsioDriver();

    void destructionClosesTheDeviceThenLogsThenStopsListening();
    void destructionEndsAPendingOtgCycle();
    void destructionWithoutADeviceIsClean();

private:
    QVBoxLayout &layout() { return *qobject_cast<QVBoxLayout *>(dialog().layout()); }
    void clickOk();
    static QStringList startEngineLog();
};

void tst_Settings::clickOk()
{
    auto *ok = dialog().findChild<QPushButton *>("Ok");
    QVERIFY(ok);
    QTest::mouseClick(ok, Qt::LeftButton);
}

/// What initSettings() logs after the choices, at 44100 Hz.
QStringList tst_Settings::startEngineLog()
{
    return {"已从配置文件加载控件状态", "加载控件状态完成", "当前音频采样率为： 44100",
            "停止音频成功，开始加载控件状态"};
}

void tst_Settings::aNewDialogIsAHiddenTopLevelWindow()
{
    openDialog();
    QVERIFY(dialog().isHidden());
    QVERIFY(!dialog().parent());
    QCOMPARE(dialog().windowFlags(), QDialog().windowFlags());
    QVERIFY(!dialog().isModal());
    QVERIFY(dialog().pendingInit);
    QCOMPARE(dialog().minimumSize(), QSize(0, 0));
    QCOMPARE(dialog().maximumSize(), QSize(QWIDGETSIZE_MAX, QWIDGETSIZE_MAX));
}

void tst_Settings::theTitleIsNotTranslated()
{
    const BracketTranslator translator;
    openDialog();
    QCOMPARE(dialog().windowTitle(), "Settings");
}

void tst_Settings::theLayoutHoldsHeadingChoicesAndButtonInOrder()
{
    openDialog();
    QCOMPARE(dialog().styleSheet(), "QDialog { background-color: #2c313c; color: white; }");
    QCOMPARE(layout().contentsMargins(), QMargins(40, 10, 40, 40));
    QCOMPARE(layout().alignment(), Qt::AlignCenter);
    const QString label = "label %1|centre|font-size: 14px; color: #008888;";
    QCOMPARE(describeLayout(layout()),
             (QStringList{
                 "label Settings|centre|font-size: 18px; font-weight: bold; color: #00FFFF;",
                 label.arg("Buffer Size"), "box BufferSize|48|48 64 96 128 192 256 512 1024",
                 label.arg("USB Latency Size"), "box UsbLatency|8|8 16 24 32",
                 label.arg("Samplerate"), "box SampleRate|44100|44100 48000",
                 label.arg("Safe Mode"), "box SafeMode|Disabled|Disabled Enabled", "space 20",
                 "button Ok|OK|background-color: #008888; color: white; font-size: 14px;|centred",
                 "stretch 0"}));
}

void tst_Settings::labelsAndHeadingAreTranslatedAndOkIsNot()
{
    const BracketTranslator translator;
    openDialog();
    QStringList labels;
    const auto all = dialog().findChildren<QLabel *>(QString(), Qt::FindDirectChildrenOnly);
    for (const QLabel *label : all)
        labels << label->text();
    QCOMPARE(labels,
             (QStringList{"[Settings]", "[Buffer Size]", "[USB Latency Size]", "[Samplerate]",
                          "[Safe Mode]"}));
    QCOMPARE(dialog().findChild<QPushButton *>()->text(), "OK");
}

void tst_Settings::theWindowIconIsThePicture()
{
    openDialog();
    const QPixmap picture(":/icon/icon.png");
    QVERIFY(!picture.isNull());
    QCOMPARE(dialog().windowIcon().pixmap(picture.size()).toImage(), picture.toImage());
}

void tst_Settings::withoutThePictureThereIsNoIcon()
{
    Q_CLEANUP_RESOURCE(icons);
    const auto restore = qScopeGuard([] { Q_INIT_RESOURCE(icons); });
    QPixmapCache::clear();
    openDialog();
    QVERIFY(dialog().windowIcon().isNull());
}

void tst_Settings::noBoxBuildsItsListBeforeItOpens()
{
    openDialog();
    const auto boxes = dialog().findChildren<QComboBox *>();
    QCOMPARE(boxes.size(), 4);
    for (const QComboBox *box : boxes)
        QCOMPARE(box->findChildren<QWidget *>(), QList<QWidget *>());
}

void tst_Settings::constructionLogsAndSendsNothing()
{
    plug();
    openDialog();
    QCOMPARE(takeLog(), startLog());
    QCOMPARE(takeEvents(), QStringList());
}

void tst_Settings::constructionMakesTheFolderAndNoFile()
{
    const QDir folder = QFileInfo(settingsFile()).dir();
    QVERIFY(QDir().rmdir(folder.path()));
    openDialog();
    QVERIFY(folder.exists());
    closeDialog();
    QVERIFY(folder.isEmpty());
}

void tst_Settings::withoutAFileTheFirstInitAppliesTheDefaults()
{
    openConnectedDialog();
    dialog().initSettings();
    QCOMPARE(texts(), (QStringList{"192", "8", "44100", "Disabled"}));
    QCOMPARE(takeSent(),
             (QStringList{"getBufferSize", "getUsbLatency", "stopAudio", "setBufferSize 192",
                          "restartAudio", "getSampleRate", "stopAudio", "setSampleRate 44100",
                          "setWdmChannelCount 4"}));
    QCOMPARE(takeLog(),
             (QStringList{"设置音频缓冲区大小为： 192 samples", "Buffer size: (address)",
                          "当前音频缓冲区大小： 256", "设置USB延迟大小为： 24 Frame",
                          "当前USB延迟大小： 8", "音频缓冲区大小设置成功： 192 samples",
                          "音频缓冲区大小设置已保存： \"192\""}
              + startEngineLog()));

    QTRY_VERIFY_WITH_TIMEOUT(hasLogged("设置初始化完成"), patience);
    QCOMPARE(takeSent(), (QStringList{"setOtgOff", "setOtgOn", "initAudio"}));
    QCOMPARE(takeLog(), QStringList{"设置初始化完成"});
    // Nothing is saved but the one choice that was a change.
    QCOMPARE(saved(), QStringList{"Audio/BufferSize=192"});
    QVERIFY(simulator().state().engineRunning);
    QVERIFY(dialog().isHidden());
}

void tst_Settings::theOtgCycleOfTheStartRunsThroughTimers()
{
    openConnectedDialog();
    const auto timers = [this] { return otgTimers(dialog()); };
    QCOMPARE(timers().size(), 0);
    dialog().initSettings();
    takeSent();
    QCOMPARE(timers().size(), 1);
    const QTimer &first = *timers().constFirst();
    QVERIFY(first.isActive() && first.isSingleShot());
    QCOMPARE(first.interval(), 200);
    QStringList atFirst;
    connect(&first, &QTimer::timeout, this, [&] { atFirst = takeSent(); });

    QTRY_COMPARE_WITH_TIMEOUT(timers().size(), 2, patience);
    QCOMPARE(atFirst, QStringList{"setOtgOff"});
    const QTimer &second = *timers().constLast();
    QCOMPARE(second.interval(), 200);
    QVERIFY(second.isSingleShot());
    QVERIFY(!first.isActive());
    QTRY_VERIFY_WITH_TIMEOUT(hasLogged("设置初始化完成"), patience);
    QCOMPARE(takeSent(), (QStringList{"setOtgOn", "initAudio"}));
    // Stopped, and kept until the dialog goes.
    QVERIFY(!second.isActive());
    QCOMPARE(timers().size(), 2);
}

void tst_Settings::laterInitsWithUnchangedValuesRunTheStartSequenceAlone()
{
    openConnectedDialog();
    dialog().initSettings();
    QTRY_VERIFY_WITH_TIMEOUT(hasLogged("设置初始化完成"), patience);
    takeSent();
    takeLog();
    dialog().initSettings();
    QTRY_VERIFY_WITH_TIMEOUT(hasLogged("设置初始化完成"), patience);
    QCOMPARE(takeSent(),
             (QStringList{"getSampleRate", "stopAudio", "setSampleRate 44100",
                          "setWdmChannelCount 4", "setOtgOff", "setOtgOn", "initAudio"}));
    QCOMPARE(takeLog(), startEngineLog() + QStringList{"设置初始化完成"});
}

void tst_Settings::savedValuesAreAppliedInTheFilesOrderOfLoading()
{
    const QStringList entries{"Audio/BufferSize=512", "Audio/SampleRate=48000",
                              "USB/LatencySize=16", "USB/SlowMode=Enabled"};
    writeSettings(entries);
    openConnectedDialog();
    dialog().loadSettings();
    QCOMPARE(texts(), (QStringList{"512", "16", "48000", "Enabled"}));
    QCOMPARE(
        takeSent(),
        (QStringList{"getUsbLatency", "stopAudio", "setUsbLatency 16", "restartAudio",
                     "getBufferSize", "getUsbLatency", "stopAudio", "setBufferSize 512",
                     "restartAudio", "stopAudio", "enableUsbSlowMode", "restartAudio", "stopAudio",
                     "setSampleRate 48000", "setWdmChannelCount 4", "initAudio"}));
    QCOMPARE(
        takeLog(),
        (QStringList{"设置USB延迟大小为： 16 Frame", "当前USB延迟大小： 8",
                     "USB延迟大小设置已保存： \"16\"", "设置音频缓冲区大小为： 512 samples",
                     "Buffer size: (address)", "当前音频缓冲区大小： 256",
                     "设置USB延迟大小为： 32 Frame", "当前USB延迟大小： 16",
                     "音频缓冲区大小设置成功： 512 samples", "音频缓冲区大小设置已保存： \"512\"",
                     "USB慢速模式设置已保存： \"Enabled\"", "设置音频采样率为： 48000 Hz",
                     "音频采样率设置已保存： \"48000\"", "已从配置文件加载控件状态"}));
    QCOMPARE(saved(), entries);
}

void tst_Settings::savedFirstItemsRunNoSequence()
{
    writeSettings({"Audio/BufferSize=48", "Audio/SampleRate=44100", "USB/LatencySize=8",
                   "USB/SlowMode=Disabled"});
    openConnectedDialog();
    dialog().loadSettings();
    QCOMPARE(takeSent(), QStringList());
    QCOMPARE(takeLog(), QStringList{"已从配置文件加载控件状态"});
}

void tst_Settings::savedRateOf48000LeavesNothingToInitButTheReadOfTheRate()
{
    writeSettings({"Audio/BufferSize=48", "Audio/SampleRate=48000"});
    openConnectedDialog();
    dialog().initSettings();
    QCOMPARE(takeSent(),
             (QStringList{"stopAudio", "setSampleRate 48000", "setWdmChannelCount 4", "initAudio",
                          "getSampleRate"}));
    QTRY_VERIFY_WITH_TIMEOUT(hasLogged("设置采样频率完成"), patience);
    QCOMPARE(takeSent(), (QStringList{"setOtgOff", "setOtgOn"}));
    QCOMPARE(takeLog(),
             (QStringList{"设置音频采样率为： 48000 Hz", "音频采样率设置已保存： \"48000\"",
                          "已从配置文件加载控件状态", "加载控件状态完成",
                          "当前音频采样率为： 48000", "设置采样频率完成"}));

    // The box shows it already, so that a second time really only reads.
    dialog().initSettings();
    finishOtgCycles();
    QCOMPARE(takeSent(), QStringList{"getSampleRate"});
    QCOMPARE(
        takeLog(),
        (QStringList{"已从配置文件加载控件状态", "加载控件状态完成", "当前音频采样率为： 48000"}));
}

void tst_Settings::aSavedValueThatIsNoItemLeavesTheFirstItem_data()
{
    QTest::addColumn<QString>("entry");
    QTest::newRow("buffer size") << "Audio/BufferSize=100";
    QTest::newRow("empty buffer size") << "Audio/BufferSize=";
    QTest::newRow("latency") << "USB/LatencySize=100";
    QTest::newRow("sample rate") << "Audio/SampleRate=100";
    QTest::newRow("safe mode") << "USB/SlowMode=100";
}

void tst_Settings::aSavedValueThatIsNoItemLeavesTheFirstItem()
{
    QFETCH(QString, entry);
    const QString key = entry.section(u'=', 0, 0);
    QStringList entries{"Audio/BufferSize=48"};
    if (entry.startsWith(entries.constFirst().section(u'=', 0, 0)))
        entries.clear();
    writeSettings(entries << entry);
    openConnectedDialog();
    dialog().loadSettings();
    QCOMPARE(texts(), (QStringList{"48", "8", "44100", "Disabled"}));
    QCOMPARE(takeSent(), QStringList());
    QCOMPARE(takeLog(), QStringList{"已从配置文件加载控件状态"});
    closeDialog();
    QVERIFY(saved().contains(entry));
}

void tst_Settings::anUnreadableFileMeansTheDefaults_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::newRow("empty") << QByteArray();
    QTest::newRow("no INI file") << QByteArray("\x89PNG\r\n\x1a\n]]][[[=\n\xff\xfe");
    QTest::newRow("other sections") << QByteArray("[Other]\nBufferSize=64\n");
    QTest::newRow("a folder") << QByteArray("folder");
}

void tst_Settings::anUnreadableFileMeansTheDefaults()
{
    QFETCH(QByteArray, content);
    if (content == "folder") {
        QVERIFY(QDir().mkdir(settingsFile()));
    } else {
        QFile file(settingsFile());
        QVERIFY(file.open(QIODevice::WriteOnly) && file.write(content) == content.size());
    }
    openConnectedDialog();
    simulator().setBufferSize(192);
    dialog().loadSettings();
    QCOMPARE(texts(), (QStringList{"192", "8", "44100", "Disabled"}));
    QCOMPARE(takeSent(), QStringList{"getBufferSize"});
}

void tst_Settings::anUnknownSampleRateTextIsLoggedAndNothingMore()
{
    writeSettings({"Audio/BufferSize=48", "Audio/SampleRate=96000"});
    openConnectedDialog();
    box("SampleRate").addItem("96000");
    dialog().initSettings();
    finishOtgCycles();
    QCOMPARE(takeSent(), (QStringList{"stopAudio", "getSampleRate"}));
    QCOMPARE(takeLog(),
             (QStringList{"未知的音频采样率选项： \"96000\"", "已从配置文件加载控件状态",
                          "加载控件状态完成", "当前音频采样率为： 44100",
                          "未知的音频采样率选项： \"96000\""}));
}

void tst_Settings::aFailingReadOfTheRateIsLoggedAsZero()
{
    writeSettings({"Audio/BufferSize=48"});
    openConnectedDialog();
    simulator().fail("getSampleRate", 1, ERROR_GEN_FAILURE);
    dialog().initSettings();
    QCOMPARE(takeSent(),
             (QStringList{"getSampleRate !31", "stopAudio", "setSampleRate 44100",
                          "setWdmChannelCount 4"}));
    QCOMPARE(takeLog(),
             (QStringList{"已从配置文件加载控件状态", "加载控件状态完成", "当前音频采样率为： 0",
                          "停止音频成功，开始加载控件状态"}));
}

void tst_Settings::loadSettingsAloneStartsNoEngine()
{
    openConnectedDialog();
    simulator().setBufferSize(192);
    dialog().loadSettings();
    finishOtgCycles();
    QCOMPARE(takeSent(), QStringList{"getBufferSize"});
    QCOMPARE(takeLog(),
             (QStringList{"设置音频缓冲区大小为： 192 samples", "Buffer size: (address)",
                          "当前音频缓冲区大小： 192", "已从配置文件加载控件状态"}));
}

void tst_Settings::createDeviceWithoutADriverFails()
{
    openDialog();
    takeLog();
    QVERIFY(!dialog().createDevice());
    QCOMPARE(takeLog(), QStringList{"Failed to create device in rx1."});
    QVERIFY(!dialog().createDevice());
    QCOMPARE(takeLog(), QStringList{"Failed to create device in rx1."});
    QCOMPARE(takeEvents(), QStringList());
}

void tst_Settings::createDeviceAgainReplacesTheConnection()
{
    plug();
    openDialog();
    takeLog();
    QVERIFY(dialog().createDevice());
    QCOMPARE(simulator().state().openHandles, 1u);
    QVERIFY(dialog().createDevice());
    QTRY_COMPARE_WITH_TIMEOUT(simulator().state().openHandles, 1u, patience);
    QStringList events = takeEvents();
    events.sort(); // natively the end of the old connection may be noticed late
    QCOMPARE(events, (QStringList{"close", "open", "open"}));
    QCOMPARE(takeLog(), QStringList());
    choose("SafeMode", "Enabled");
    QCOMPARE(takeSent(), (QStringList{"stopAudio", "enableUsbSlowMode", "restartAudio"}));
}

void tst_Settings::createDeviceAfterAFailureSucceeds()
{
    openDialog();
    QVERIFY(!dialog().createDevice());
    takeLog();
    plug();
    QVERIFY(dialog().createDevice());
    QCOMPARE(takeLog(), QStringList());
    QCOMPARE(takeEvents(), QStringList{"open"});
    QCOMPARE(simulator().state().openHandles, 1u);
}

void tst_Settings::createDeviceFailingAfterASuccessLeavesNoConnection()
{
    openConnectedDialog();
    QVERIFY(simulator().unplug());
    QVERIFY(!dialog().createDevice());
    QCOMPARE(takeLog(), QStringList{"Failed to create device in rx1."});
    QTRY_COMPARE_WITH_TIMEOUT(simulator().state().openHandles, 0u, patience);
    takeEvents();
    choose("SafeMode", "Enabled");
    QCOMPARE(takeLog(), QStringList{"停止音频失败，可能是驱动未正确加载或设备未连接。"});
    QCOMPARE(takeEvents(), QStringList());
}

void tst_Settings::createDeviceWithoutMemoryFails()
{
    plug();
    openDialog();
    takeLog();
    refuseConnections = true;
    const bool created = dialog().createDevice();
    refuseConnections = false;
    QVERIFY(!created);
    QCOMPARE(takeLog(), QStringList{"Failed to create VesmoraIoControl instance."});
    QCOMPARE(takeEvents(), QStringList());
    QVERIFY(dialog().createDevice());
}

void tst_Settings::aConnectionThatGoesAwayEndsAPendingOtgCycle()
{
    openConnectedDialog();
    dialog().initSettings();
    refuseConnections = true;
    const bool created = dialog().createDevice();
    refuseConnections = false;
    QVERIFY(!created);
    QTRY_COMPARE_WITH_TIMEOUT(simulator().state().openHandles, 0u, patience);
    takeEvents();
    takeLog();
    passTime(600);
    QCOMPARE(takeEvents(), QStringList());
    QCOMPARE(takeLog(), QStringList());
}

void tst_Settings::withoutAConnectionChoicesDoNothing()
{
    plug();
    openDialog();
    takeLog();
    choose("BufferSize", "96");
    choose("UsbLatency", "32");
    choose("SampleRate", "48000");
    choose("SafeMode", "Enabled");
    QCOMPARE(takeEvents(), QStringList());
    QCOMPARE(takeLog(), QStringList());
    QCOMPARE(saved(), QStringList());
}

void tst_Settings::choicesBeforeTheFirstConnectionAreForgotten_data()
{
    QTest::addColumn<bool>("wasSearched");
    QTest::newRow("made before any search") << false;
    QTest::newRow("made after a search in vain") << true;
}

/// Otherwise the boxes would show what the engine was never told.
void tst_Settings::choicesBeforeTheFirstConnectionAreForgotten()
{
    QFETCH(bool, wasSearched);
    const QStringList entries{"Audio/BufferSize=96", "Audio/SampleRate=48000", "USB/LatencySize=8",
                              "USB/SlowMode=Disabled"};
    writeSettings(entries);
    openDialog();
    QCOMPARE(wasSearched && dialog().createDevice(), false);
    choose("BufferSize", "96");
    choose("UsbLatency", "32");
    choose("SampleRate", "48000");
    choose("SafeMode", "Enabled");
    QCOMPARE(texts(), (QStringList{"96", "32", "48000", "Enabled"}));
    plug();
    takeLog();
    QVERIFY(dialog().createDevice());
    QCOMPARE(texts(), (QStringList{"48", "8", "44100", "Disabled"}));
    QCOMPARE(takeEvents(), QStringList{"open"});
    QCOMPARE(takeLog(), QStringList());

    dialog().initSettings();
    QCOMPARE(takeSent(),
             (QStringList{"getBufferSize", "getUsbLatency", "stopAudio", "setBufferSize 96",
                          "restartAudio", "stopAudio", "setSampleRate 48000",
                          "setWdmChannelCount 4", "initAudio", "getSampleRate"}));
    QCOMPARE(texts(), (QStringList{"96", "8", "48000", "Disabled"}));
    QCOMPARE(saved(), entries);
}

void tst_Settings::aLaterConnectionLeavesTheBoxesAlone()
{
    openConnectedDialog();
    unplug();
    QVERIFY(!dialog().createDevice());
    choose("BufferSize", "96");
    choose("SampleRate", "48000");
    plug();
    takeLog();
    QVERIFY(dialog().createDevice());
    QCOMPARE(texts(), (QStringList{"96", "8", "48000", "Disabled"}));
    QCOMPARE(takeLog(), QStringList());
}

void tst_Settings::aRequestThroughThePipeShowsTheDialogOnTop()
{
    openDialog();
    takeLog();
    QVERIFY(!dialog().windowFlags().testFlag(Qt::WindowStaysOnTopHint));
    QVERIFY(sendToListener(messageOf({1, 2, 3, 4, 1})));
    QTRY_VERIFY_WITH_TIMEOUT(hasLogged(listenerlog::windowShown), patience);
    QVERIFY(dialog().isVisible());
    QVERIFY(!dialog().isMinimized());
    QVERIFY(dialog().windowFlags().testFlag(Qt::WindowStaysOnTopHint));
    QTRY_VERIFY_WITH_TIMEOUT(hasLogged(startLog().constLast()), patience);
    QStringList log = takeLog();
    // The two threads log independently.
    QCOMPARE(log.removeAll(listenerlog::windowShown), 1);
    QCOMPARE(log,
             (QStringList{"Received data from pipe: 1 2 3 4 1", listenerlog::opensWindow,
                          startLog().constLast()}));
}

void tst_Settings::aRequestRestoresAMinimizedDialog()
{
    openDialog();
    dialog().showMinimized();
    QVERIFY(dialog().isMinimized());
    takeLog();
    dialog().showFromPipe();
    QVERIFY(dialog().isVisible());
    QVERIFY(!dialog().isMinimized());
    QCOMPARE(dialog().windowState() & (Qt::WindowMinimized | Qt::WindowMaximized),
             Qt::WindowStates());
    QVERIFY(dialog().windowFlags().testFlag(Qt::WindowStaysOnTopHint));
    QCOMPARE(takeLog(), QStringList{listenerlog::windowShown});
}

void tst_Settings::theDialogStaysOnTopForEver()
{
    openDialog();
    dialog().showFromPipe();
    clickOk();
    QVERIFY(dialog().isHidden());
    QVERIFY(dialog().windowFlags().testFlag(Qt::WindowStaysOnTopHint));
    dialog().show();
    QVERIFY(dialog().windowFlags().testFlag(Qt::WindowStaysOnTopHint));
    takeLog();
    dialog().showFromPipe();
    QVERIFY(dialog().isVisible());
    QCOMPARE(takeLog(), QStringList{listenerlog::windowShown});
}

void tst_Settings::okWithoutAnAsioDriverHidesAndLogsTheError()
{
    openDialog();
    dialog().show();
    takeLog();
    QSignalSpy finished(&dialog(), &QDialog::finished);
    clickOk();
    QVERIFY(dialog().isHidden());
    QCOMPARE(takeLog(), QStringList{"Error: Could not open pipe. Error code: 2"});
    QCOMPARE(finished.count(), 0);
}

void tst_Settings::okSendsOneByteToTheAsioDriver()
{
    openDialog();
    dialog().show();
    takeLog();
    AsioPipe asio;
    QSignalSpy finished(&dialog(), &QDialog::finished);
    clickOk();
    QVERIFY(dialog().isHidden());
    QCOMPARE(takeLog(),
             (QStringList{"Pipe opened successfully.", "ASIO reset signal sent successfully.",
                          "设置通知ASIO逻辑"}));
    QCOMPARE(asio.takeMessages(), QByteArrayList{"1"});
    QCOMPARE(finished.count(), 0);
}

void tst_Settings::okWhileTheAsioDriverIsBusyIsNotRetried()
{
    openDialog();
    dialog().show();
    takeLog();
    AsioPipe asio;
    PipeClient other(QString::fromWCharArray(VESMORA_RESET_PIPE));
    QCOMPARE(other.open(), DWORD(ERROR_SUCCESS));
    clickOk();
    QVERIFY(dialog().isHidden());
    QCOMPARE(takeLog(), QStringList{"Error: Could not open pipe. Error code: 231"});
    other.close();
    QCOMPARE(asio.takeMessages(), QByteArrayList());
}

void tst_Settings::okWhoseSignalDoesNotGoThroughLogsThat()
{
    openDialog();
    dialog().show();
    takeLog();
    AsioPipe asio;
    const LogHook opened("Pipe opened successfully.", [&] { asio.disconnect(); });
    clickOk();
    QVERIFY(opened.wasReached());
    QCOMPARE(takeLog(),
             (QStringList{"Pipe opened successfully.",
                          "Error: Failed to send ASIO reset signal. Error code: 233",
                          "设置通知ASIO逻辑"}));
}

void tst_Settings::okHidesTheDialogBeforeItLooksForTheAsioDriver()
{
    openDialog();
    dialog().show();
    bool wasVisible = true;
    const LogHook failed("Error: Could not open pipe.", [&] { wasVisible = dialog().isVisible(); });
    clickOk();
    QVERIFY(failed.wasReached());
    QVERIFY(!wasVisible);
}

void tst_Settings::destructionClosesTheDeviceThenLogsThenStopsListening()
{
    openConnectedDialog();
    quint32 openHandles = 1;
    const LogHook closed("Settings dialog closed", [&] {
        simulator().state();
        openHandles = simulator().state().openHandles;
    });
    closeDialog();
    QVERIFY(closed.wasReached());
    QCOMPARE(openHandles, 0u);
    QCOMPARE(takeLog(),
             (QStringList{"Settings dialog closed and resources cleaned up.",
                          "Error connecting to pipe. Error code: 995", listenerlog::nothingReceived,
                          "Pipe closed."}));
    QCOMPARE(takeEvents(), QStringList{"close"});
}

void tst_Settings::destructionEndsAPendingOtgCycle()
{
    openConnectedDialog();
    dialog().initSettings();
    takeEvents();
    closeDialog();
    takeLog();
    passTime(600);
    QCOMPARE(takeEvents(), QStringList{"close"});
    QCOMPARE(takeLog(), QStringList());
}

void tst_Settings::destructionWithoutADeviceIsClean()
{
    plug();
    openDialog();
    takeLog();
    closeDialog();
    QCOMPARE(takeLog().constFirst(), "Settings dialog closed and resources cleaned up.");
    QCOMPARE(takeEvents(), QStringList());
}

QTEST_MAIN(tst_Settings)
#include "tst_settings.moc"
