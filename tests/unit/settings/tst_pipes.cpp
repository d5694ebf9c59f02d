#include "createrefusal.h"
#include "listenerlog.h"
#include "loghook.h"
#include "pipeclient.h"
#include "processfigures.h"
#include "settingsfixture.h"
#include "threadsettingspip.h"
#include "watchdog.h"

#include <QThread>

#include <algorithm>
#include <atomic>
#include <thread>

namespace {

using namespace listenerlog;

const QString cancelledConnect = "Error connecting to pipe. Error code: 995";
const QString cancelledRead = "Error reading from pipe. Error code: 995";
const QString closed = "Pipe closed.";

constexpr char testPipe[] = R"(\\.\pipe\VesmoraPipeTest)";

} // namespace

class tst_Pipes : public SettingsFixture
{
    Q_OBJECT

public:
    tst_Pipes()
        : SettingsFixture(Device::None)
    { }

private slots:
    void cleanup();

    void theServerReceivesOneMessage();
    void theServerLeavesTheRestOfTheBufferAlone();
    void theServerServesAClientThatCameBeforeItListened();
    void aClientThatCameAndWentBeforeTheServerListenedIsNotInTheWay_data();
    void aClientThatCameAndWentBeforeTheServerListenedIsNotInTheWay();
    void theServerReportsAMessageThatIsTooLong();
    void theServerReportsAClientThatLeaves();
    void theServerCanBeCancelled();
    void cancellingNothingDoesNothing();
    void closingTwiceLogsOnce();
    void aClosedServerReceivesNothing();
    void aRefusedPipeIsReported();

    void constructionCreatesThePipe();
    void eachMessageIsLogged_data();
    void eachMessageIsLogged();
    void theSignalComesFromTheListeningThread();
    void aConnectedSlotRunsOnItsOwnThread();
    void aMessageThatIsTooLongIsAFailure();
    void aClientThatLeavesWithoutAMessageIsAFailure();
    void aSilentClientIsWaitedFor();
    void aClientFasterThanTheListenerIsServed();
    void aClientThatCameAndWentBeforeTheListenerIsNotInTheWay();
    void ofOneConnectionOneMessageIsRead();
    void aSecondClientIsServedAfterTheFirstAndThePause();
    void aRefusedPipeIsTriedAgainAndAgain();

    void stopsWhileWaitingForAClient();
    void stopsWhileAClientIsSilent();
    void stopsInThePause();
    void stopsRightAfterTheStart();
    void stopsWithoutAStart();
    void stopsWithARefusedPipe();
    void stopsWhileClientsKeepComing();
    void theDialogStopsItWhileAClientIsSilent();
    void nothingIsLeaked();

private:
    /// Constructs and starts a listener and forgets what it logs until it waits for a client.
    void startListener();
    void stopListener();
    /// Waits until the listener has logged @p lines and nothing else.
    void expectLog(const QStringList &lines);

    std::unique_ptr<ThreadSettingsPip> m_listener;
};

void tst_Pipes::cleanup()
{
    m_listener.reset();
    SettingsFixture::cleanup();
}

void tst_Pipes::startListener()
{
    m_listener = std::make_unique<ThreadSettingsPip>(nullptr);
    m_listener->start(QThread::InheritPriority);
    expectLog({"Pipe created successfully.", "ThreadSettingsPip initialized.", waiting});
}

void tst_Pipes::stopListener()
{
    const Watchdog watchdog("Stopping the listener");
    m_listener.reset();
}

void tst_Pipes::expectLog(const QStringList &lines)
{
    QStringList log;
    const auto isComplete = [&] {
        log += takeLog();
        return log.size() >= lines.size();
    };
    QTRY_VERIFY_WITH_TIMEOUT(isComplete(), patience);
    QCOMPARE(log, lines);
}

void tst_Pipes::theServerReceivesOneMessage()
{
    PipeServer server(testPipe);
    QVERIFY(server.create());
    QCOMPARE(takeLog(), QStringList{"Pipe created successfully."});
    for (const char first : {'a', 'b'}) {
        const QByteArray sent = QByteArray(1, first) + QByteArray(1023, 'x');
        std::thread client([&] {
            PipeClient pipe(testPipe);
            if (pipe.connect() && pipe.write(sent))
                pipe.awaitDisconnection();
        });
        PipeServer::Message message{};
        const bool received = server.receive(message);
        client.join();
        QVERIFY(received);
        QCOMPARE(QByteArray(message.data(), message.size()), sent);
    }
    QCOMPARE(takeLog(), QStringList());
    server.close();
    QCOMPARE(takeLog(), QStringList{closed});
}

void tst_Pipes::theServerLeavesTheRestOfTheBufferAlone()
{
    PipeServer server(testPipe);
    QVERIFY(server.create());
    PipeClient client(testPipe);
    QVERIFY(client.connect());
    QVERIFY(client.write("abc"));
    PipeServer::Message message;
    message.fill('-');
    QVERIFY(server.receive(message));
    QCOMPARE(QByteArray(message.data(), message.size()), "abc" + QByteArray(1021, '-'));
    server.close();
}

void tst_Pipes::theServerServesAClientThatCameBeforeItListened()
{
    PipeServer server(testPipe);
    QVERIFY(server.create());
    PipeClient client(testPipe);
    QCOMPARE(client.open(), DWORD(ERROR_SUCCESS));
    QVERIFY(client.write(messageOf({1, 2, 3, 4, 5})));
    takeLog();
    PipeServer::Message message{};
    QVERIFY(server.receive(message));
    QCOMPARE(QByteArray(message.data(), 20), messageOf({1, 2, 3, 4, 5}));
    QCOMPARE(takeLog(), QStringList());
    server.close();
}

void tst_Pipes::aClientThatCameAndWentBeforeTheServerListenedIsNotInTheWay_data()
{
    QTest::addColumn<bool>("wrote");
    QTest::newRow("without a message") << false;
    QTest::newRow("with a message, which is lost") << true;
}

void tst_Pipes::aClientThatCameAndWentBeforeTheServerListenedIsNotInTheWay()
{
    QFETCH(bool, wrote);
    PipeServer server(testPipe);
    QVERIFY(server.create());
    PipeClient client(testPipe);
    QCOMPARE(client.open(), DWORD(ERROR_SUCCESS));
    QVERIFY(!wrote || client.write("x"));
    client.close();
    takeLog();
    PipeServer::Message message{};
    // Until it is disconnected, which is the caller's business.
    for (int attempt = 0; attempt < 2; ++attempt) {
        QVERIFY(!server.wasAbandoned() || attempt > 0);
        QVERIFY(!server.receive(message));
        QCOMPARE(takeLog(), QStringList{clientLeftEarly});
        QVERIFY(server.wasAbandoned());
    }
    QCOMPARE(PipeClient(testPipe).open(), DWORD(ERROR_PIPE_BUSY));
    QCOMPARE(message, PipeServer::Message{});
    server.disconnect();

    std::thread next([] {
        PipeClient pipe(testPipe);
        pipe.connect() && pipe.write("abc");
    });
    const bool received = server.receive(message);
    next.join();
    QVERIFY(received);
    QVERIFY(!server.wasAbandoned());
    QCOMPARE(QByteArray(message.data()), QByteArray("abc"));
    QCOMPARE(takeLog(), QStringList());
    server.close();
}

void tst_Pipes::theServerReportsAMessageThatIsTooLong()
{
    PipeServer server(testPipe);
    QVERIFY(server.create());
    PipeClient client(testPipe);
    QVERIFY(client.connect());
    QVERIFY(client.write(QByteArray(1025, 'x')));
    takeLog();
    PipeServer::Message message{};
    QVERIFY(!server.receive(message));
    QCOMPARE(takeLog(), QStringList{tooLong});
    QCOMPARE(message, PipeServer::Message{});
    // That client was disconnected and the rest of its message with it.
    QVERIFY(!client.write("x"));
    server.close();
}

void tst_Pipes::theServerReportsAClientThatLeaves()
{
    PipeServer server(testPipe);
    QVERIFY(server.create());
    PipeClient first(testPipe);
    QVERIFY(first.connect());
    QVERIFY(first.write("x"));
    PipeServer::Message message{};
    QVERIFY(server.receive(message));
    takeLog();
    // From now on a client gets in only while the server waits for one.
    std::thread leaving([&] { PipeClient(testPipe).connect(); });
    const bool received = server.receive(message);
    leaving.join();
    QVERIFY(!received);
    QCOMPARE(takeLog(), QStringList{clientLeft});
    server.close();
}

void tst_Pipes::theServerCanBeCancelled()
{
    PipeServer server(testPipe);
    QVERIFY(server.create());
    takeLog();
    std::atomic<bool> isOver = false;
    const Watchdog watchdog("Cancelling");
    std::thread canceller([&] {
        while (!isOver) {
            server.cancel();
            std::this_thread::yield();
        }
    });
    PipeServer::Message message{};
    const bool received = server.receive(message);
    isOver = true;
    canceller.join();
    QVERIFY(!received);
    QCOMPARE(takeLog(), QStringList{cancelledConnect});
    server.close();
}

void tst_Pipes::cancellingNothingDoesNothing()
{
    PipeServer server(testPipe);
    server.cancel();
    QVERIFY(server.create());
    server.cancel();
    PipeClient client(testPipe);
    QVERIFY(client.connect());
    QVERIFY(client.write("x"));
    takeLog();
    PipeServer::Message message{};
    QVERIFY(server.receive(message));
    QCOMPARE(takeLog(), QStringList());
    server.close();
    server.cancel();
}

void tst_Pipes::closingTwiceLogsOnce()
{
    PipeServer server(testPipe);
    server.close();
    QCOMPARE(takeLog(), QStringList());
    QVERIFY(server.create());
    takeLog();
    server.close();
    server.close();
    QCOMPARE(takeLog(), QStringList{closed});
    QCOMPARE(PipeClient(testPipe).open(), DWORD(ERROR_FILE_NOT_FOUND));
}

void tst_Pipes::aClosedServerReceivesNothing()
{
    PipeServer server(testPipe);
    PipeServer::Message message{};
    QVERIFY(!server.receive(message));
    QCOMPARE(takeLog(), QStringList{"Error connecting to pipe. Error code: 6"});
}

void tst_Pipes::aRefusedPipeIsReported()
{
    const CreateRefusal refusal;
    PipeServer server(listenerPipe);
    QVERIFY(!server.create());
    QCOMPARE(
        takeLog(),
        QStringList{QString("Error: Could not create pipe. Error code: %1").arg(refusal.error())});
    server.close();
    QCOMPARE(takeLog(), QStringList());
}

void tst_Pipes::constructionCreatesThePipe()
{
    const ThreadSettingsPip listener(nullptr);
    QCOMPARE(takeLog(),
             (QStringList{"Pipe created successfully.", "ThreadSettingsPip initialized."}));
    QVERIFY(!listener.isRunning());
    PipeClient client;
    QCOMPARE(client.open(), DWORD(ERROR_SUCCESS));
}

void tst_Pipes::eachMessageIsLogged_data()
{
    QTest::addColumn<QByteArray>("message");
    QTest::addColumn<QString>("words");
    QTest::addColumn<bool>("isRequest");
    const QByteArray request = messageOf({10, 20, 30, 40, 1});
    QTest::newRow("20 bytes that ask for the window") << request << "10 20 30 40 1" << true;
    QTest::newRow("20 bytes that do not")
        << messageOf({10, 20, 30, 40, 0}) << "10 20 30 40 0" << false;
    QTest::newRow("any number but 0 asks")
        << messageOf({0, 0, 0, 0, 0x80000000}) << "0 0 0 0 2147483648" << true;
    QTest::newRow("largest numbers")
        << messageOf({0xFFFFFFFF, 0xFFFFFFFE, 0x80000000, 0x7FFFFFFF, 0xFFFFFFFF})
        << "4294967295 4294967294 2147483648 2147483647 4294967295" << true;
    QTest::newRow("little-endian")
        << QByteArray::fromHex("0102030400000000000000000000000000000001")
        << "67305985 0 0 0 16777216" << true;
    QTest::newRow("4 bytes") << messageOf({7}) << "7 0 0 0 0" << false;
    QTest::newRow("empty") << QByteArray() << "0 0 0 0 0" << false;
    QTest::newRow("1 byte") << QByteArray("\xff") << "255 0 0 0 0" << false;
    QTest::newRow("16 bytes") << request.first(16) << "10 20 30 40 0" << false;
    QTest::newRow("17 bytes") << request.first(17) << "10 20 30 40 1" << true;
    QTest::newRow("1024 bytes that ask")
        << request + QByteArray(1004, '\xff') << "10 20 30 40 1" << true;
    QTest::newRow("1024 bytes that do not")
        << messageOf({1, 2, 3, 4, 0}) + QByteArray(1004, '\xff') << "1 2 3 4 0" << false;
}

void tst_Pipes::eachMessageIsLogged()
{
    QFETCH(QByteArray, message);
    QFETCH(QString, words);
    QFETCH(bool, isRequest);
    startListener();
    std::atomic<int> signalCount = 0;
    connect(
        m_listener.get(), &ThreadSettingsPip::progressUpdated, m_listener.get(),
        [&](int value) { signalCount += value; }, Qt::DirectConnection);
    QVERIFY(sendToListener(message));
    QStringList log{"Received data from pipe: " + words};
    if (isRequest)
        log << opensWindow;
    expectLog(log << waiting);
    QCOMPARE(signalCount.load(), isRequest ? 1 : 0);
}

void tst_Pipes::theSignalComesFromTheListeningThread()
{
    startListener();
    std::atomic<QThread *> emitter = nullptr;
    bool wasLogged = false;
    connect(
        m_listener.get(), &ThreadSettingsPip::progressUpdated, m_listener.get(),
        [&] {
            wasLogged = hasLogged(opensWindow);
            emitter = QThread::currentThread();
        },
        Qt::DirectConnection);
    QVERIFY(sendToListener(messageOf({0, 0, 0, 0, 1})));
    QTRY_VERIFY_WITH_TIMEOUT(emitter.load() != nullptr, patience);
    QCOMPARE(emitter.load(), m_listener.get());
    QVERIFY(wasLogged);
}

void tst_Pipes::aConnectedSlotRunsOnItsOwnThread()
{
    startListener();
    QList<int> values;
    QThread *thread = nullptr;
    connect(m_listener.get(), &ThreadSettingsPip::progressUpdated, this, [&](int value) {
        values << value;
        thread = QThread::currentThread();
    });
    for (int i = 0; i < 3; ++i)
        QVERIFY(sendToListener(messageOf({0, 0, 0, 0, 5})));
    QTRY_COMPARE_WITH_TIMEOUT(values, (QList<int>{1, 1, 1}), patience);
    QCOMPARE(thread, QThread::currentThread());
}

void tst_Pipes::aMessageThatIsTooLongIsAFailure()
{
    startListener();
    std::atomic<int> signalCount = 0;
    connect(
        m_listener.get(), &ThreadSettingsPip::progressUpdated, m_listener.get(),
        [&] { ++signalCount; }, Qt::DirectConnection);
    for (const qsizetype length : {1025, 2048, 65536}) {
        QVERIFY(sendToListener(QByteArray(length, '\x01')));
        expectLog({tooLong, nothingReceived, waiting});
    }
    // Nothing of it is left for the next one.
    QVERIFY(sendToListener(messageOf({7})));
    expectLog({"Received data from pipe: 7 0 0 0 0", waiting});
    QCOMPARE(signalCount.load(), 0);
}

void tst_Pipes::aClientThatLeavesWithoutAMessageIsAFailure()
{
    startListener();
    // The first one may leave before the listener has come to wait for it.
    QVERIFY(sendToListener(messageOf({7})));
    expectLog({"Received data from pipe: 7 0 0 0 0", waiting});
    PipeClient client;
    QVERIFY(client.connect());
    client.close();
    expectLog({clientLeft, nothingReceived, waiting});
    QVERIFY(sendToListener(messageOf({8})));
    expectLog({"Received data from pipe: 8 0 0 0 0", waiting});
}

void tst_Pipes::aSilentClientIsWaitedFor()
{
    startListener();
    PipeClient client;
    QVERIFY(client.connect());
    passTime(300);
    QCOMPARE(takeLog(), QStringList());
    QCOMPARE(PipeClient().open(), DWORD(ERROR_PIPE_BUSY));
    QVERIFY(client.write(messageOf({1, 2, 3, 4, 5})));
    expectLog({"Received data from pipe: 1 2 3 4 5", opensWindow, waiting});
}

void tst_Pipes::aClientFasterThanTheListenerIsServed()
{
    m_listener = std::make_unique<ThreadSettingsPip>(nullptr);
    PipeClient client;
    QCOMPARE(client.open(), DWORD(ERROR_SUCCESS));
    QVERIFY(client.write(messageOf({1, 2, 3, 4, 5})));
    takeLog();
    m_listener->start(QThread::InheritPriority);
    expectLog({waiting, "Received data from pipe: 1 2 3 4 5", opensWindow, waiting});
}

void tst_Pipes::aClientThatCameAndWentBeforeTheListenerIsNotInTheWay()
{
    m_listener = std::make_unique<ThreadSettingsPip>(nullptr);
    PipeClient client;
    QCOMPARE(client.open(), DWORD(ERROR_SUCCESS));
    QVERIFY(client.write(messageOf({1})));
    client.close();
    takeLog();
    m_listener->start(QThread::InheritPriority);
    expectLog({waiting, clientLeftEarly, nothingReceived, waiting});
    QVERIFY(sendToListener(messageOf({7})));
    expectLog({"Received data from pipe: 7 0 0 0 0", waiting});
}

void tst_Pipes::ofOneConnectionOneMessageIsRead()
{
    // The client comes first, so that both messages are there when the listener reads.
    m_listener = std::make_unique<ThreadSettingsPip>(nullptr);
    PipeClient client;
    QCOMPARE(client.open(), DWORD(ERROR_SUCCESS));
    QVERIFY(client.write(messageOf({1})));
    QVERIFY(client.write(messageOf({2})));
    takeLog();
    m_listener->start(QThread::InheritPriority);
    expectLog({waiting, "Received data from pipe: 1 0 0 0 0", waiting});
    QVERIFY(!client.write(messageOf({3})));
    QVERIFY(sendToListener(messageOf({4})));
    expectLog({"Received data from pipe: 4 0 0 0 0", waiting});
}

void tst_Pipes::aSecondClientIsServedAfterTheFirstAndThePause()
{
    startListener();
    PipeClient first;
    QVERIFY(first.connect());
    PipeClient second;
    QCOMPARE(second.open(), DWORD(ERROR_PIPE_BUSY));
    DWORD errorInThePause = ERROR_SUCCESS;
    {
        // Logged after the disconnecting and before the pause.
        const LogHook received("Received data from pipe:",
                               [&] { errorInThePause = PipeClient().open(); });
        QVERIFY(first.write(messageOf({1})));
        expectLog({"Received data from pipe: 1 0 0 0 0", waiting});
        QVERIFY(received.wasReached());
    }
    QCOMPARE(errorInThePause, DWORD(ERROR_PIPE_BUSY));
    QVERIFY(second.connect());
    QVERIFY(second.write(messageOf({2})));
    expectLog({"Received data from pipe: 2 0 0 0 0", waiting});
}

void tst_Pipes::aRefusedPipeIsTriedAgainAndAgain()
{
    {
        const CreateRefusal refusal;
        m_listener = std::make_unique<ThreadSettingsPip>(nullptr);
        QCOMPARE(takeLog(),
                 (QStringList{
                     QString("Error: Could not create pipe. Error code: %1").arg(refusal.error()),
                     "Failed to create named pipe in ThreadSettingsPip.",
                     "ThreadSettingsPip initialized."}));
    }
    m_listener->start(QThread::InheritPriority);
    const QStringList pass{waiting, "Error connecting to pipe. Error code: 6", nothingReceived};
    QStringList log;
    const auto hasThreePasses = [&] {
        log += takeLog();
        return log.size() >= 9;
    };
    QTRY_VERIFY_WITH_TIMEOUT(hasThreePasses(), patience);
    stopListener();
    log += takeLog();
    QCOMPARE(log.size() % 3, 0);
    for (qsizetype i = 0; i < log.size(); i += 3)
        QCOMPARE(log.mid(i, 3), pass);
}

void tst_Pipes::stopsWhileWaitingForAClient()
{
    startListener();
    stopListener();
    QCOMPARE(takeLog(), (QStringList{cancelledConnect, nothingReceived, closed}));
    QCOMPARE(PipeClient().open(), DWORD(ERROR_FILE_NOT_FOUND));
}

void tst_Pipes::stopsWhileAClientIsSilent()
{
    startListener();
    PipeClient client;
    QVERIFY(client.connect());
    stopListener();
    const QStringList log = takeLog();
    // The listener may not yet have got from waiting for the client to waiting for its message.
    QVERIFY2(log == (QStringList{cancelledRead, nothingReceived, closed})
                 || log == (QStringList{cancelledConnect, nothingReceived, closed}),
             qPrintable(log.join(u'\n')));
    QVERIFY(!client.write("x"));
}

void tst_Pipes::stopsInThePause()
{
    startListener();
    QVERIFY(sendToListener(messageOf({1})));
    const QString received = "Received data from pipe: 1 0 0 0 0";
    QTRY_VERIFY_WITH_TIMEOUT(hasLogged(received), patience);
    stopListener();
    const QStringList log = takeLog();
    // Unless the pause was over already.
    QVERIFY2(log == (QStringList{received, closed})
                 || log
                     == (QStringList{received, waiting, cancelledConnect, nothingReceived, closed}),
             qPrintable(log.join(u'\n')));
}

void tst_Pipes::stopsRightAfterTheStart()
{
    for (int i = 0; i < 20; ++i) {
        m_listener = std::make_unique<ThreadSettingsPip>(nullptr);
        takeLog();
        m_listener->start(QThread::InheritPriority);
        stopListener();
        const QStringList log = takeLog();
        QVERIFY2(log == QStringList{closed}
                     || log == (QStringList{waiting, cancelledConnect, nothingReceived, closed}),
                 qPrintable(log.join(u'\n')));
    }
}

void tst_Pipes::stopsWithoutAStart()
{
    m_listener = std::make_unique<ThreadSettingsPip>(nullptr);
    takeLog();
    stopListener();
    QCOMPARE(takeLog(), QStringList{closed});
}

void tst_Pipes::stopsWithARefusedPipe()
{
    {
        const CreateRefusal refusal;
        m_listener = std::make_unique<ThreadSettingsPip>(nullptr);
    }
    m_listener->start(QThread::InheritPriority);
    QTRY_VERIFY_WITH_TIMEOUT(hasLogged(waiting), patience);
    stopListener();
    QVERIFY(!hasLogged(closed));
    QCOMPARE(takeLog().constLast(), nothingReceived);
}

void tst_Pipes::stopsWhileClientsKeepComing()
{
    startListener();
    std::atomic<bool> isOver = false;
    std::atomic<int> sent = 0;
    const auto sendAll = [&] {
        while (!isOver) {
            PipeClient client;
            if (client.open() == ERROR_SUCCESS && client.write(messageOf({1, 2, 3, 4, 0})))
                ++sent;
            std::this_thread::yield();
        }
    };
    std::thread clients[] = {std::thread(sendAll), std::thread(sendAll)};
    const bool wereServed = QTest::qWaitFor([&] { return sent >= 3; }, patience);
    stopListener();
    isOver = true;
    for (std::thread &client : clients)
        client.join();
    QVERIFY(wereServed);
    QCOMPARE(takeLog().constLast(), closed);
}

void tst_Pipes::theDialogStopsItWhileAClientIsSilent()
{
    openDialog();
    PipeClient client;
    QVERIFY(client.connect());
    takeLog();
    {
        const Watchdog watchdog("Deleting the dialog");
        closeDialog();
    }
    const QStringList log = takeLog();
    QCOMPARE(log.constFirst(), "Settings dialog closed and resources cleaned up.");
    QCOMPARE(log.constLast(), closed);
    QCOMPARE(log.size(), 4);
}

void tst_Pipes::nothingIsLeaked()
{
    const auto runOnce = [this] {
        startListener();
        QVERIFY(sendToListener(messageOf({1})));
        expectLog({"Received data from pipe: 1 0 0 0 0", waiting});
        PipeClient silent;
        QVERIFY(silent.connect());
        stopListener();
        takeLog();
    };
    // What is opened once and for all is opened now.
    runOnce();
    const int before = openHandleCount();
    {
        PipeServer server(testPipe);
        QVERIFY(server.create());
        QVERIFY(openHandleCount() > before);
        server.close();
        takeLog();
    }
    constexpr int runs = 20;
    for (int i = 0; i < runs; ++i)
        runOnce();
    // The system opens and closes a few on its own account; a leak would show in every run.
    const int grown = openHandleCount() - before;
    QVERIFY2(grown < runs / 2, qPrintable(QString::number(grown)));
}

QTEST_MAIN(tst_Pipes)
#include "tst_pipes.moc"
