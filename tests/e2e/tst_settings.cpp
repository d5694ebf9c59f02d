#include "knownmessages.h"
#include "listenerlog.h"
#include "logtext.h"
#include "programfixture.h"
#include "settingspicture.h"
#include "waiting.h"

#include <QElapsedTimer>
#include <QTest>

#include <algorithm>

namespace {

using namespace listenerlog;

enum Choice { BufferSize, UsbLatency, SampleRate, SafeMode };
constexpr int rowCounts[] = {8, 4, 2, 2};

const QString file = "setting.ini";
const QString bufferOf192 = "Audio/BufferSize=192";
// A client that goes is noticed while it is awaited or while it is read from.
const QStringList droppedTexts{clientLeftEarly, clientLeft};

const QString searching = "Device PID: 0";
const QStringList hanging{"send", "--connect-and-hang"};
const QStringList resetSent{"Pipe opened successfully.", "ASIO reset signal sent successfully.",
                            "设置通知ASIO逻辑"};

/// The arguments that send @p words, the last of which asks for the window unless it is 0.
QStringList sending(const QString &words)
{
    return QStringList("send") + words.split(u' ');
}

QString received(const QString &words)
{
    return receivedData + ' ' + words;
}

QStringList changeToRate(int rate)
{
    return {"stopAudio",
            QString("setSampleRate %1").arg(rate),
            "setWdmChannelCount 4",
            "initAudio",
            "setOtgOff",
            "setOtgOn"};
}

QStringList changeToRateLog(int rate)
{
    return {QString("设置音频采样率为： %1 Hz").arg(rate),
            QString("音频采样率设置已保存： \"%1\"").arg(rate), "设置采样频率完成"};
}

/// One line names an address of the running program.
const QString somewhere = "Buffer size: (address)";

/// What the listener says, without what the rest of the program says between.
QStringList ofListener(const QStringList &lines)
{
    QStringList found;
    for (const QString &line : lines) {
        const bool isOurs = line == waiting || line == nothingReceived || line == opensWindow
            || line.startsWith(receivedData) || line.startsWith("Error ");
        if (isOurs)
            found << line;
    }
    return found;
}

} // namespace

/// The settings dialog in the running program, and both links with the ASIO driver.
class tst_Settings : public ProgramFixture
{
    Q_OBJECT

private slots:
    void choicesMadeWithTheMouseReachTheEngineAndTheFile();
    void choicesMadeWithTheKeyboardReachTheEngineAndTheFile();
    void aChoiceThatTheEngineHasAlreadySendsNothingFurther();
    void aRefusedChoiceIsLoggedAndNotSaved();
    void storedChoicesAreBroughtToThePluggedInterface();
    void aChoiceWithoutAnInterfaceDoesNotHideTheStoredOne();

    void okHidesTheDialogAndResetsTheAsioDriver();
    void okWithoutAnAsioDriverHidesTheDialogAndLogsTheError();
    void aRequestShowsTheHiddenDialog();
    void aRequestBringsAMinimisedDialogBackOnTop();
    void junkOnThePipeIsLoggedAndTheNextRequestAnswered();
    void clientsThatComeAndGoAreLoggedAndTheNextRequestAnswered();
    void aSilentClientKeepsNobodyFromUsingTheProgram();
    void quitEndsTheProgramAtOnceWhateverTheListenerDoes_data();
    void quitEndsTheProgramAtOnceWhateverTheListenerDoes();

private:
    bool openDialog();
    /// Opens the dialog with a plugged interface; nothing is expected yet.
    bool showDialog();
    void expectFrom(int handle);
    SettingsPicture dialogPicture() const;
    bool chooseWithMouse(Choice which, int row);
    bool pressKeys(const QStringList &keys);
    QList<WindowId> popups() const;
    /// Compares everything that the dialog has sent and the program logged since it was shown, of
    /// which these are the newest parts, and the whole file.
    void compareChange(const QStringList &sent, const QStringList &logged,
                       const QStringList &entries);
    /// Compares everything that the listener has logged, of which @p expected is the newest part.
    void compareListener(const QStringList &expected);
    bool isAnswered(const QString &words = "0 0 0 0 1");
    std::unique_ptr<ChildProcess> startClient(const QStringList &arguments,
                                              const QByteArray &ready);

    int m_handle = 0;
    qsizetype m_logStart = 0;
    QStringList m_sent;
    QStringList m_logged;
};

bool tst_Settings::openDialog()
{
    return tray().choose(Tray::Setup)
        && waitUntil([this] { return dialogPicture().choices().size() == std::ssize(rowCounts); });
}

bool tst_Settings::showDialog()
{
    if (!start() || !plug("rx1") || !openDialog())
        return false;
    const QList<RecordEntry> entries = entriesBesides("setWdmChannelCount");
    if (entries.isEmpty() || !simulator().clearRecord())
        return false;
    expectFrom(entries.first().handle());
    return true;
}

/// Forgets what was sent and logged so far.
void tst_Settings::expectFrom(int handle)
{
    m_handle = handle;
    m_logStart = log().lines().size();
    m_sent.clear();
    m_logged.clear();
}

SettingsPicture tst_Settings::dialogPicture() const
{
    const std::optional<WindowInfo> shown = settingsDialog();
    return shown ? SettingsPicture(desktop().windows().picture(shown->area), shown->area.topLeft())
                 : SettingsPicture();
}

QList<WindowId> tst_Settings::popups() const
{
    QList<WindowId> found;
    const QList<WindowInfo> all = desktop().windows().windows();
    for (const WindowInfo &window : all) {
        if (window.visible && window.popup)
            found << window.id;
    }
    return found;
}

bool tst_Settings::chooseWithMouse(Choice which, int row)
{
    const QList<WindowId> others = popups();
    std::optional<WindowInfo> list;
    const auto isOpen = [&] {
        list.reset();
        const QList<WindowInfo> all = desktop().windows().windows();
        for (const WindowInfo &window : all) {
            const bool isNew = window.visible && window.popup && !others.contains(window.id);
            if (isNew && window.area.height() > 10 * rowCounts[which])
                list = window;
        }
        return list.has_value();
    };
    if (!pointer().click(dialogPicture().choices().at(which)) || !waitUntil(isOpen))
        return false;
    const QPoint item(list->area.center().x(),
                      list->area.top()
                          + list->area.height() * (2 * row + 1) / (2 * rowCounts[which]));
    return pointer().click(item) && waitUntil([&] { return !popups().contains(list->id); });
}

bool tst_Settings::pressKeys(const QStringList &keys)
{
    return std::all_of(keys.cbegin(), keys.cend(),
                       [this](const QString &key) { return pointer().key(key); });
}

void tst_Settings::compareChange(const QStringList &sent, const QStringList &logged,
                                 const QStringList &entries)
{
    m_sent << sent;
    m_logged << logged;
    expectMessages(logged);
    const auto lines = [this] {
        return withoutAddresses(panelMessages(log().lines().mid(m_logStart)));
    };
    waitUntil([&] { return sentThrough(m_handle).size() >= m_sent.size(); });
    waitUntil([&] { return lines().size() >= m_logged.size(); });
    QCOMPARE(sentThrough(m_handle), m_sent);
    QCOMPARE(lines(), m_logged);
    QCOMPARE(iniFile(file).text(), iniText(entries, iniLayout()));
}

void tst_Settings::compareListener(const QStringList &expected)
{
    m_logged << expected;
    const auto lines = [this] { return ofListener(log().lines().mid(m_logStart)); };
    waitUntil([&] { return lines().size() >= m_logged.size(); });
    QCOMPARE(lines(), m_logged);
}

/// Whether a request brings the dialog to the screen.
bool tst_Settings::isAnswered(const QString &words)
{
    const qsizetype before = log().count(windowShown);
    return lane().asio(sending(words)).succeeded() && log().waitFor(windowShown, before + 1)
        && waitUntil([this] { return settingsDialog().has_value(); });
}

std::unique_ptr<ChildProcess> tst_Settings::startClient(const QStringList &arguments,
                                                        const QByteArray &ready)
{
    std::unique_ptr<ChildProcess> client = lane().startAsio(arguments);
    if (client && waitUntil([&] { return client->canReadLine(); })
        && client->readLine().trimmed() == ready)
        return client;
    return nullptr;
}

void tst_Settings::choicesMadeWithTheMouseReachTheEngineAndTheFile()
{
    QStringList entries{bufferOf192};
    QVERIFY(showDialog());
    QVERIFY(chooseWithMouse(BufferSize, 6));
    entries = QStringList{"Audio/BufferSize=512"};
    compareChange(
        {"getBufferSize", "getUsbLatency", "stopAudio", "setBufferSize 512", "restartAudio"},
        {"设置音频缓冲区大小为： 512 samples", somewhere, "当前音频缓冲区大小： 192",
         "设置USB延迟大小为： 32 Frame", "当前USB延迟大小： 8",
         "音频缓冲区大小设置成功： 512 samples", "音频缓冲区大小设置已保存： \"512\""},
        entries);
    QVERIFY(chooseWithMouse(SafeMode, 1));
    entries << "USB/SlowMode=Enabled";
    compareChange({"stopAudio", "enableUsbSlowMode", "restartAudio"},
                  {"USB慢速模式设置已保存： \"Enabled\""}, entries);
    QVERIFY(chooseWithMouse(UsbLatency, 2));
    entries << "USB/LatencySize=24";
    compareChange(
        {"getUsbLatency", "stopAudio", "setUsbLatency 24", "restartAudio"},
        {"设置USB延迟大小为： 24 Frame", "当前USB延迟大小： 8", "USB延迟大小设置已保存： \"24\""},
        entries);
    QVERIFY(chooseWithMouse(SampleRate, 1));
    entries << "Audio/SampleRate=48000";
    compareChange(changeToRate(48000), changeToRateLog(48000), entries);
}

void tst_Settings::choicesMadeWithTheKeyboardReachTheEngineAndTheFile()
{
    const QString buffer = "Audio/BufferSize=%1";
    const QString others[] = {"USB/LatencySize=%1", "Audio/SampleRate=48000", "USB/SlowMode=%1"};
    QVERIFY(showDialog());
    // The dialog opens with the keyboard in its first choice.
    QVERIFY(pressKeys({"Tab", "Down"}));
    QStringList entries{buffer.arg(192), others[0].arg(16)};
    compareChange(
        {"getUsbLatency", "stopAudio", "setUsbLatency 16", "restartAudio"},
        {"设置USB延迟大小为： 16 Frame", "当前USB延迟大小： 8", "USB延迟大小设置已保存： \"16\""},
        entries);
    QVERIFY(pressKeys({"Tab", "Down"}));
    entries << others[1];
    compareChange(changeToRate(48000), changeToRateLog(48000), entries);
    QVERIFY(pressKeys({"Tab", "Down"}));
    compareChange({"stopAudio", "enableUsbSlowMode", "restartAudio"},
                  {"USB慢速模式设置已保存： \"Enabled\""},
                  entries + QStringList(others[2].arg("Enabled")));
    QVERIFY(pressKeys({"Up"}));
    entries << others[2].arg("Disabled");
    compareChange({"stopAudio", "disableUsbSlowMode", "restartAudio"},
                  {"USB慢速模式设置已保存： \"Disabled\""}, entries);
    const QString back = "shift+Tab";
    QVERIFY(pressKeys({back, back, back, "Home"}));
    // So few samples do not go with that latency, which is changed first.
    entries[0] = buffer.arg(48);
    entries[1] = others[0].arg(8);
    compareChange(
        {"getBufferSize", "getUsbLatency", "getUsbLatency", "stopAudio", "setUsbLatency 8",
         "restartAudio", "stopAudio", "setBufferSize 48", "restartAudio"},
        {"设置音频缓冲区大小为： 48 samples", somewhere, "当前音频缓冲区大小： 192",
         "设置USB延迟大小为： 8 Frame", "当前USB延迟大小： 16", "设置USB延迟大小为： 8 Frame",
         "当前USB延迟大小： 16", "USB延迟大小设置已保存： \"8\"",
         "音频缓冲区大小设置成功： 48 samples", "音频缓冲区大小设置已保存： \"48\""},
        entries);
}

void tst_Settings::aChoiceThatTheEngineHasAlreadySendsNothingFurther()
{
    QVERIFY(showDialog());
    QVERIFY(simulator().setValue("latency", 24));
    QVERIFY(simulator().setValue("buffer", 512));
    QVERIFY(simulator().clearRecord());
    QVERIFY(chooseWithMouse(UsbLatency, 2));
    compareChange({"getUsbLatency"}, {"设置USB延迟大小为： 24 Frame", "当前USB延迟大小： 24"},
                  {bufferOf192});
    QVERIFY(chooseWithMouse(BufferSize, 6));
    compareChange({"getBufferSize"},
                  {"设置音频缓冲区大小为： 512 samples", somewhere, "当前音频缓冲区大小： 512"},
                  {bufferOf192});
}

void tst_Settings::aRefusedChoiceIsLoggedAndNotSaved()
{
    const QString refused = "设置USB慢速模式失败，可能是驱动未正确加载或设备未连接。";
    expectMessages({refused});
    QVERIFY(showDialog());
    QVERIFY(simulator().fail("enableUsbSlowMode", 1));
    QVERIFY(chooseWithMouse(SafeMode, 1));
    compareChange({"stopAudio", "enableUsbSlowMode !31"}, {refused}, {bufferOf192});
}

void tst_Settings::storedChoicesAreBroughtToThePluggedInterface()
{
    const QStringList entries{"USB/SlowMode=Enabled", "Audio/SampleRate=48000",
                              "USB/LatencySize=16", "Audio/BufferSize=512"};
    QVERIFY(iniFile(file).write(entries));
    QVERIFY(start());
    QVERIFY(simulator().plug("rx1"));
    QVERIFY(log().waitFor("设置采样频率完成"));
    QCOMPARE(sentBesides("setWdmChannelCount"),
             QStringList({"open",
                          "getUsbLatency",
                          "stopAudio",
                          "setUsbLatency 16",
                          "restartAudio",
                          "getBufferSize",
                          "getUsbLatency",
                          "stopAudio",
                          "setBufferSize 512",
                          "restartAudio",
                          "stopAudio",
                          "enableUsbSlowMode",
                          "restartAudio",
                          "stopAudio",
                          "setSampleRate 48000",
                          "setWdmChannelCount 4",
                          "initAudio",
                          "getSampleRate",
                          "setOtgOff",
                          "setOtgOn"}));
    QCOMPARE(iniFile(file).text(), iniText(entries, iniLayout()));
}

void tst_Settings::aChoiceWithoutAnInterfaceDoesNotHideTheStoredOne()
{
    const QStringList entries{"Audio/SampleRate=48000", "Audio/BufferSize=48"};
    QVERIFY(iniFile(file).write(entries));
    QVERIFY(start());
    QVERIFY(openDialog());
    QVERIFY(chooseWithMouse(SampleRate, 1));
    QVERIFY(simulator().plug("rx1"));
    QVERIFY(log().waitFor("设置采样频率完成"));
    QCOMPARE(sentBesides("setWdmChannelCount"),
             QStringList({"open", "stopAudio", "setSampleRate 48000", "setWdmChannelCount 4",
                          "initAudio", "getSampleRate", "setOtgOff", "setOtgOn"}));
    QCOMPARE(iniFile(file).text(), iniText(entries, iniLayout()));
}

void tst_Settings::okHidesTheDialogAndResetsTheAsioDriver()
{
    const std::unique_ptr<ChildProcess> asio = startClient({"serve", "--count", "1"}, "ready");
    expectMessages(resetSent);
    QVERIFY(asio);
    QVERIFY(showDialog());
    QVERIFY(pointer().click(dialogPicture().ok()));
    QVERIFY(waitUntil([this] { return !settingsDialog(); }));
    QVERIFY(waitUntil([&] { return asio->state() == QProcess::NotRunning; }));
    QCOMPARE(asio->exitCode(), 0);
    QCOMPARE(asio->readAllStandardOutput(), QByteArray("{\"bytes\":\"31\"}\n"));
    compareChange({}, resetSent, {bufferOf192});
}

void tst_Settings::okWithoutAnAsioDriverHidesTheDialogAndLogsTheError()
{
    const QStringList refused{"Error: Could not open pipe. Error code: 2"};
    expectMessages(refused);
    QVERIFY(showDialog());
    QVERIFY(pointer().click(dialogPicture().ok()));
    QVERIFY(waitUntil([this] { return !settingsDialog(); }));
    compareChange({}, refused, {bufferOf192});
    QVERIFY(openDialog());
}

void tst_Settings::aRequestShowsTheHiddenDialog()
{
    QVERIFY(start());
    QVERIFY(log().waitFor(waiting));
    expectFrom(0);
    QVERIFY(isAnswered("1 2 3 4294967295 7"));
    compareListener({received("1 2 3 4294967295 7"), opensWindow, waiting});
    QCOMPARE(log().count(windowShown), 1);
}

void tst_Settings::aRequestBringsAMinimisedDialogBackOnTop()
{
    const auto isOnTop = [this] {
        return settingsDialog() && window()
            && desktop().windows().isAbove(settingsDialog()->id, window()->id);
    };
    QVERIFY(start());
    QVERIFY(openDialog());
    const QRect area = settingsDialog()->area;
    desktop().windows().minimise(settingsDialog()->id);
    QVERIFY(waitUntil([this] { return !settingsDialog(); }));
    QVERIFY(openWindow());

    QVERIFY(isAnswered());
    QVERIFY(waitUntil(isOnTop));
    QCOMPARE(settingsDialog()->area.size(), area.size());
    // It stays there even when the main window is called to the front.
    QVERIFY(tray().click());
    QVERIFY(log().waitFor(searching, log().count(searching) + 2));
    QVERIFY(isOnTop());
}

void tst_Settings::junkOnThePipeIsLoggedAndTheNextRequestAnswered()
{
    struct Junk {
        QStringList arguments;
        QStringList logged;
    };
    const QStringList refused{tooLong, nothingReceived, waiting};
    const auto understood = [](const char *words) { return QStringList{received(words), waiting}; };
    const QString bytes = "--bytes";
    const QString length = "--length";
    const QList<Junk> all{{{length, "0"}, understood("0 0 0 0 0")},
                          {{bytes, "ff"}, understood("255 0 0 0 0")},
                          {{bytes, "78563412"}, understood("305419896 0 0 0 0")},
                          {{bytes, QByteArray(16, '\xff').toHex()},
                           understood("4294967295 4294967295 4294967295 4294967295 0")},
                          {{length, "1025"}, refused},
                          {{length, "65536"}, refused}};
    expectMessages({tooLong});
    QVERIFY(start());
    QVERIFY(log().waitFor(waiting));
    expectFrom(0);
    for (const Junk &junk : all) {
        QVERIFY(lane().asio(QStringList("send") + junk.arguments).succeeded());
        compareListener(junk.logged);
        if (QTest::currentTestFailed())
            return;
    }
    QVERIFY(!settingsDialog());
    // The largest message that is read asks for the window.
    QVERIFY(lane().asio({"send", length, "1024"}).succeeded());
    compareListener(
        {received("50462976 117835012 185207048 252579084 319951120"), opensWindow, waiting});
    QVERIFY(waitUntil([this] { return settingsDialog().has_value(); }));
}

void tst_Settings::clientsThatComeAndGoAreLoggedAndTheNextRequestAnswered()
{
    constexpr int clients = 5;
    expectMessages(droppedTexts);
    QVERIFY(start());
    QVERIFY(log().waitFor(waiting));
    QVERIFY(lane()
                .asio({"send", "--connect-and-drop", "--count", QString::number(clients)})
                .succeeded());
    QVERIFY(log().waitFor(nothingReceived, clients));
    QVERIFY(isAnswered());
    QCOMPARE(log().count(nothingReceived), clients);
    QCOMPARE(log().count(droppedTexts.first()) + log().count(droppedTexts.last()), clients);
}

void tst_Settings::aSilentClientKeepsNobodyFromUsingTheProgram()
{
    expectMessages(droppedTexts);
    QVERIFY(start());
    const std::unique_ptr<ChildProcess> client = startClient(hanging, "connected");
    QVERIFY(client);
    QVERIFY(log().waitFor(searching, log().count(searching) + 1));
    QVERIFY(openWindow());
    QVERIFY(openDialog());
    desktop().windows().close(settingsDialog()->id);
    QVERIFY(waitUntil([this] { return !settingsDialog(); }));
    client->stop();
    QVERIFY(isAnswered());
}

void tst_Settings::quitEndsTheProgramAtOnceWhateverTheListenerDoes_data()
{
    QTest::addColumn<QStringList>("client");
    QTest::addColumn<QString>("ready");
    QTest::addColumn<QString>("logged");
    QTest::newRow("waiting") << QStringList() << QString() << waiting;
    QTest::newRow("a silent client") << hanging << "connected" << waiting;
    QTest::newRow("between messages") << (sending("0 0 0 0 0") << "--count"
                                                               << "100000")
                                      << QString() << received("0 0 0 0 0");
    QTest::newRow("after a dropped client")
        << QStringList{"send", "--connect-and-drop"} << QString() << nothingReceived;
}

void tst_Settings::quitEndsTheProgramAtOnceWhateverTheListenerDoes()
{
    QFETCH(QStringList, client);
    QFETCH(QString, ready);
    QFETCH(QString, logged);
    expectMessages(droppedTexts);
    expectMessages({"Error reading from pipe. Error code: 995"});
    QVERIFY(start());
    QVERIFY(log().waitFor(waiting));
    std::unique_ptr<ChildProcess> process;
    if (!ready.isEmpty())
        process = startClient(client, ready.toLatin1());
    else if (!client.isEmpty())
        process = lane().startAsio(client);
    QVERIFY(process || client.isEmpty());
    QVERIFY(log().waitFor(logged));

    QVERIFY(tray().choose(Tray::Quit));
    QElapsedTimer sinceClick;
    sinceClick.start();
    QVERIFY(panel().waitForExit());
    qInfo("Quit took %lld ms", sinceClick.elapsed());
    QCOMPARE(panel().exitCode(), 0);
    QCOMPARE(log().count("Pipe closed."), 1);
    QVERIFY(!process || waitUntil([&] { return process->state() == QProcess::NotRunning; }));
}

QTEST_GUILESS_MAIN(tst_Settings)
#include "tst_settings.moc"
