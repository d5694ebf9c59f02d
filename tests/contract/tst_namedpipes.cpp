#include <windows.h>

#include <QCoreApplication>
#include <QTemporaryDir>
#include <QTest>

#include <array>
#include <chrono>
#include <future>
#include <memory>
#include <string>
#include <utility>
#include <vector>

using namespace std::chrono_literals;

namespace {

constexpr auto deadline = 20s;
/// Nothing succeeds or fails with this one.
constexpr DWORD untouched = 0x20000000;

/// What a call returned and, at once, the error it left.
struct Outcome {
    bool ok = false;
    DWORD error = 0;
    QByteArray bytes = {};

    bool failedWith(DWORD expected) const { return !ok && error == expected; }
};

template <typename Call> Outcome outcome(Call call)
{
    SetLastError(untouched);
    const bool ok = call() != FALSE;
    return {ok, GetLastError()};
}

class Handle
{
public:
    explicit Handle(HANDLE handle = INVALID_HANDLE_VALUE)
        : m_handle(handle)
        , m_error(GetLastError())
    { }
    Handle(Handle &&other) noexcept
        : m_handle(std::exchange(other.m_handle, INVALID_HANDLE_VALUE))
        , m_error(other.m_error)
    { }
    Handle &operator=(Handle &&other) noexcept
    {
        std::swap(m_handle, other.m_handle);
        std::swap(m_error, other.m_error);
        return *this;
    }
    ~Handle() { close(); }

    void close()
    {
        if (isOpen())
            CloseHandle(std::exchange(m_handle, INVALID_HANDLE_VALUE));
    }
    operator HANDLE() const { return m_handle; }
    bool isOpen() const { return m_handle != INVALID_HANDLE_VALUE; }
    bool failedWith(DWORD error) const { return !isOpen() && m_error == error; }

private:
    HANDLE m_handle;
    DWORD m_error;
};

Handle createPipe(const std::wstring &name, DWORD maximumInstances = PIPE_UNLIMITED_INSTANCES)
{
    return Handle(CreateNamedPipeW(name.c_str(), PIPE_ACCESS_DUPLEX,
                                   PIPE_TYPE_MESSAGE | PIPE_READMODE_MESSAGE | PIPE_WAIT,
                                   maximumInstances, 65536, 65536, 300, nullptr));
}

Handle openPipe(const std::wstring &name, DWORD access = GENERIC_READ | GENERIC_WRITE)
{
    return Handle(CreateFileW(name.c_str(), access, 0, nullptr, OPEN_EXISTING, 0, nullptr));
}

/// Opens the pipe as soon as an instance is free.
Handle openPipeWhenFree(const std::wstring &name)
{
    const auto end = std::chrono::steady_clock::now() + deadline;
    Handle client = openPipe(name);
    while (client.failedWith(ERROR_PIPE_BUSY) && std::chrono::steady_clock::now() < end) {
        Sleep(1);
        client = openPipe(name);
    }
    return client;
}

Outcome awaitClient(HANDLE pipe)
{
    return outcome([&] { return ConnectNamedPipe(pipe, nullptr); });
}

Outcome dropClient(HANDLE pipe)
{
    return outcome([&] { return DisconnectNamedPipe(pipe); });
}

Outcome receive(HANDLE pipe, DWORD length = 1024)
{
    QByteArray buffer(static_cast<qsizetype>(length), '\0');
    DWORD count = 0;
    Outcome result =
        outcome([&] { return ReadFile(pipe, buffer.data(), length, &count, nullptr); });
    result.bytes = buffer.left(static_cast<qsizetype>(count));
    return result;
}

Outcome transmit(HANDLE pipe, const QByteArray &message)
{
    const auto length = static_cast<DWORD>(message.size());
    DWORD count = 0;
    Outcome result =
        outcome([&] { return WriteFile(pipe, message.constData(), length, &count, nullptr); });
    result.ok = result.ok && count == length;
    return result;
}

/// Whether the next that @p to reads is @p message, sent by @p from.
bool passes(const QByteArray &message, HANDLE from, HANDLE to)
{
    return transmit(from, message).ok && receive(to).bytes == message;
}

/// Runs @p call on a thread of its own.
template <typename Call> std::future<Outcome> start(Call call)
{
    return std::async(std::launch::async, call);
}

/// A client for a server that has let go of the last one; not open when that failed.
Handle connectAgain(HANDLE server, const std::wstring &name)
{
    std::future<Outcome> connected = start([server] { return awaitClient(server); });
    Handle client = openPipeWhenFree(name);
    return connected.get().ok ? std::move(client) : Handle();
}

/// An instance of a pipe and the client that it has accepted.
struct Connection {
    explicit Connection(const std::wstring &name)
        : server(createPipe(name))
        , client(openPipe(name))
    {
        awaitClient(server);
    }

    Handle server;
    Handle client;
};

bool hasEnded(const std::future<Outcome> &call, std::chrono::milliseconds patience = deadline)
{
    return call.wait_for(patience) == std::future_status::ready;
}

/// Null where there is no such thread.
Handle openThread(DWORD id, DWORD access = THREAD_TERMINATE)
{
    const HANDLE thread = OpenThread(access, FALSE, id);
    return Handle(thread ? thread : INVALID_HANDLE_VALUE);
}

Outcome cancelThread(HANDLE thread)
{
    return outcome([&] { return CancelSynchronousIo(thread); });
}

/// A call on a thread of its own, which can be cancelled by thread.
class ThreadCall
{
public:
    template <typename Call> explicit ThreadCall(Call call)
    {
        // Shared: a thread may still be in set_value() when the other one has the value.
        const auto id = std::make_shared<std::promise<DWORD>>();
        const auto opened = std::make_shared<std::promise<void>>();
        m_result = start([id, opened, call] {
            id->set_value(GetCurrentThreadId());
            // A thread that has ended cannot be opened any more.
            opened->get_future().wait();
            return call();
        });
        m_thread = openThread(id->get_future().get());
        opened->set_value();
    }

    const Handle &thread() const { return m_thread; }
    bool cancelByThread() const
    {
        return repeatUntilEnded([this] { cancelThread(m_thread); });
    }
    bool cancelByHandle(HANDLE pipe) const
    {
        return repeatUntilEnded([&] { CancelIoEx(pipe, nullptr); });
    }
    Outcome result() { return m_result.get(); }

private:
    /// The call may not have begun to wait when the first cancellation comes.
    template <typename Cancel> bool repeatUntilEnded(const Cancel &cancel) const
    {
        const auto end = std::chrono::steady_clock::now() + deadline;
        while (!hasEnded(m_result, 1ms) && std::chrono::steady_clock::now() < end)
            cancel();
        return hasEnded(m_result, 0ms);
    }

    std::future<Outcome> m_result;
    Handle m_thread;
};

} // namespace

/// The behaviour of named pipes on which the panel and the tests rely, wherever they come from.
class tst_NamedPipes : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();

    void openingAPipeThatNobodyCreatedFindsNothing();
    void openingAPipeWhoseServerClosedItFindsNothing();
    void aPipeIsConnectableFromItsCreationOn();
    void aClientThatCameAndLeftBeforeConnectNamedPipeIsNoData();
    void connectNamedPipeWaitsForAClient();
    void aClientThatLeavesAtOnceEndsTheWaitWithSuccess();
    void connectNamedPipeWithAConnectedClientSaysSo();
    void aTakenInstanceIsBusy();
    void ofManyClientsAtOnceOneIsServed();
    void aSecondInstanceServesASecondClient();
    void moreInstancesThanAllowedAreBusy();
    void aDisconnectedInstanceIsBusyUntilItListensAgain();
    void clientsAreServedOneAfterAnother();

    void messagesKeepTheirBoundaries();
    void messagesWrittenBeforeConnectNamedPipeAreKept();
    void aMessageLongerThanTheBufferIsReadInParts();
    void anEmptyMessageIsAMessage();
    void aClientReadsBytesAcrossMessages();
    void readFileWaitsForAMessage();
    void aClientWithoutTheRightMayNotReadOrWrite();

    void whatAClientWroteBeforeItLeftIsReadFirst();
    void writingToAClientThatLeftFails();
    void readingAndWritingBeforeAnyClientFails();
    void readingAndWritingAfterDisconnectingFails();
    void disconnectingDiscardsWhatTheClientHasNotRead();
    void disconnectingWakesAReadingClient();
    void disconnectingTwiceFails();
    void aClientWhoseServerClosedReadsTheRestFirst();
    void closingTheServerWakesAReadingClient();

    void cancellingEndsConnectNamedPipe_data() { addWaysToCancel(); }
    void cancellingEndsConnectNamedPipe();
    void cancellingEndsReadFile_data() { addWaysToCancel(); }
    void cancellingEndsReadFile();
    void cancellingAThreadLeavesTheOthersAlone();
    void cancellingAThreadThatDoesNotWaitFindsNothing();
    void cancellingAThreadTakesTheRightTo();
    void callsOnAnUnknownHandleFail();

private:
    static void addWaysToCancel();

    QTemporaryDir m_folder;
    std::wstring m_name;
};

void tst_NamedPipes::initTestCase()
{
    QVERIFY(m_folder.isValid());
    // Keeps the pipes of parallel runs apart where they are files; Windows takes no notice.
    qputenv("VESMORA_HOST_DIR", m_folder.path().toLocal8Bit());
}

void tst_NamedPipes::init()
{
    m_name = QString(R"(\\.\pipe\VesmoraTest-%1-%2)")
                 .arg(QCoreApplication::applicationPid())
                 .arg(QTest::currentTestFunction())
                 .toStdWString();
}

void tst_NamedPipes::openingAPipeThatNobodyCreatedFindsNothing()
{
    QVERIFY(openPipe(m_name).failedWith(ERROR_FILE_NOT_FOUND));
}

void tst_NamedPipes::openingAPipeWhoseServerClosedItFindsNothing()
{
    Handle server = createPipe(m_name);
    const Handle client = openPipe(m_name);
    QVERIFY(client.isOpen());
    server.close();
    QVERIFY(openPipe(m_name).failedWith(ERROR_FILE_NOT_FOUND));
}

void tst_NamedPipes::aPipeIsConnectableFromItsCreationOn()
{
    const Handle server = createPipe(m_name);
    QVERIFY(server.isOpen());
    const Handle client = openPipe(m_name);
    QVERIFY(client.isOpen());
    QVERIFY(awaitClient(server).failedWith(ERROR_PIPE_CONNECTED));
}

void tst_NamedPipes::aClientThatCameAndLeftBeforeConnectNamedPipeIsNoData()
{
    const Handle server = createPipe(m_name);
    Handle client = openPipe(m_name);
    QVERIFY(transmit(client, "1").ok);
    client.close();
    QVERIFY(awaitClient(server).failedWith(ERROR_NO_DATA));
    QVERIFY(openPipe(m_name).failedWith(ERROR_PIPE_BUSY));
    QVERIFY(awaitClient(server).failedWith(ERROR_NO_DATA));

    QVERIFY(dropClient(server).ok);
    QVERIFY(connectAgain(server, m_name).isOpen());
}

void tst_NamedPipes::connectNamedPipeWaitsForAClient()
{
    const Handle server = createPipe(m_name);
    QVERIFY(openPipe(m_name).isOpen());
    awaitClient(server);
    QVERIFY(dropClient(server).ok);

    std::future<Outcome> connected = start([&] { return awaitClient(server); });
    const Handle client = openPipeWhenFree(m_name);
    QVERIFY(client.isOpen());
    QVERIFY(hasEnded(connected));
    QVERIFY(connected.get().ok);
    QVERIFY(passes("1", client, server));
}

void tst_NamedPipes::aClientThatLeavesAtOnceEndsTheWaitWithSuccess()
{
    const Connection pipe(m_name);
    for (int round = 0; round < 50; ++round) {
        QVERIFY(dropClient(pipe.server).ok);
        // Only now, after a disconnection, does an open prove that the server is waiting.
        std::future<Outcome> connected = start([&] { return awaitClient(pipe.server); });
        Handle client = openPipeWhenFree(m_name);
        QVERIFY(transmit(client, "1").ok);
        client.close();
        QVERIFY(connected.get().ok);
        QCOMPARE(receive(pipe.server).bytes, QByteArray("1"));
        QVERIFY(receive(pipe.server).failedWith(ERROR_BROKEN_PIPE));
    }
}

void tst_NamedPipes::connectNamedPipeWithAConnectedClientSaysSo()
{
    const Handle server = createPipe(m_name);
    const Handle client = openPipe(m_name);
    QVERIFY(awaitClient(server).failedWith(ERROR_PIPE_CONNECTED));
    QVERIFY(awaitClient(server).failedWith(ERROR_PIPE_CONNECTED));
}

void tst_NamedPipes::aTakenInstanceIsBusy()
{
    const Handle server = createPipe(m_name);
    const Handle first = openPipe(m_name);
    QVERIFY(first.isOpen());
    QVERIFY(openPipe(m_name).failedWith(ERROR_PIPE_BUSY));
    awaitClient(server);
    QVERIFY(openPipe(m_name).failedWith(ERROR_PIPE_BUSY));
}

void tst_NamedPipes::ofManyClientsAtOnceOneIsServed()
{
    const Handle server = createPipe(m_name);
    std::future<Outcome> connected = start([&] { return awaitClient(server); });
    int refused = 0;
    std::array<std::future<Handle>, 8> openings;
    for (std::future<Handle> &opening : openings)
        opening = std::async(std::launch::async, [&] { return openPipe(m_name); });
    std::vector<Handle> served;
    for (std::future<Handle> &opening : openings) {
        Handle client = opening.get();
        if (client.failedWith(ERROR_PIPE_BUSY))
            ++refused;
        else if (client.isOpen())
            served.push_back(std::move(client));
    }
    QCOMPARE(served.size(), 1u);
    QCOMPARE(refused, 7);
    QVERIFY(hasEnded(connected));
    QVERIFY(passes("served", served.front(), server));
}

void tst_NamedPipes::aSecondInstanceServesASecondClient()
{
    const Handle firstServer = createPipe(m_name);
    const Handle secondServer = createPipe(m_name);
    const Handle first = openPipe(m_name);
    const Handle second = openPipe(m_name);
    QVERIFY(first.isOpen());
    QVERIFY(second.isOpen());
    QVERIFY(openPipe(m_name).failedWith(ERROR_PIPE_BUSY));
    QVERIFY(awaitClient(firstServer).failedWith(ERROR_PIPE_CONNECTED));
    QVERIFY(awaitClient(secondServer).failedWith(ERROR_PIPE_CONNECTED));

    QVERIFY(transmit(first, "message").ok);
    QVERIFY(transmit(second, "message").ok);
    QCOMPARE(receive(firstServer).bytes, QByteArray("message"));
    QCOMPARE(receive(secondServer).bytes, QByteArray("message"));
}

void tst_NamedPipes::moreInstancesThanAllowedAreBusy()
{
    Handle server = createPipe(m_name, 1);
    QVERIFY(server.isOpen());
    QVERIFY(createPipe(m_name, 1).failedWith(ERROR_PIPE_BUSY));
    server.close();
    QVERIFY(createPipe(m_name, 1).isOpen());
}

void tst_NamedPipes::aDisconnectedInstanceIsBusyUntilItListensAgain()
{
    Connection pipe(m_name);
    pipe.client.close();
    QVERIFY(dropClient(pipe.server).ok);
    QVERIFY(openPipe(m_name).failedWith(ERROR_PIPE_BUSY));

    QVERIFY(connectAgain(pipe.server, m_name).isOpen());
}

void tst_NamedPipes::clientsAreServedOneAfterAnother()
{
    constexpr int clients = 4;
    constexpr int messages = 25;
    const Handle server = createPipe(m_name);
    std::vector<std::future<Outcome>> calls;
    for (char letter = 'a'; letter < 'a' + clients; ++letter) {
        calls.push_back(start([this, letter] {
            Outcome last{true};
            for (int message = 0; last.ok && message < messages; ++message) {
                const Handle client = openPipeWhenFree(m_name);
                last = transmit(client, QByteArray(1, letter));
                // Wait until the server has read it and lets go.
                receive(client);
            }
            return last;
        }));
    }
    QByteArray received;
    for (int message = 0; message < clients * messages; ++message) {
        const Outcome connected = awaitClient(server);
        QVERIFY(connected.ok || connected.error == ERROR_PIPE_CONNECTED);
        received += receive(server).bytes;
        QVERIFY(dropClient(server).ok);
    }
    for (std::future<Outcome> &call : calls)
        QVERIFY(call.get().ok);
    for (char letter = 'a'; letter < 'a' + clients; ++letter)
        QCOMPARE(received.count(letter), messages);
}

void tst_NamedPipes::messagesKeepTheirBoundaries()
{
    const Connection pipe(m_name);
    QVERIFY(transmit(pipe.client, "first").ok);
    QVERIFY(transmit(pipe.client, "second").ok);
    QVERIFY(transmit(pipe.client, QByteArray(50000, 'x')).ok);
    QCOMPARE(receive(pipe.server).bytes, QByteArray("first"));
    QCOMPARE(receive(pipe.server, 6).bytes, QByteArray("second"));
    const Outcome large = receive(pipe.server, 60000);
    QVERIFY(large.ok);
    QCOMPARE(large.bytes, QByteArray(50000, 'x'));
}

void tst_NamedPipes::messagesWrittenBeforeConnectNamedPipeAreKept()
{
    const Handle server = createPipe(m_name);
    const Handle client = openPipe(m_name);
    QVERIFY(transmit(client, "early").ok);
    QVERIFY(awaitClient(server).failedWith(ERROR_PIPE_CONNECTED));
    QCOMPARE(receive(server).bytes, QByteArray("early"));
}

void tst_NamedPipes::aMessageLongerThanTheBufferIsReadInParts()
{
    const Connection pipe(m_name);
    QVERIFY(transmit(pipe.client, "0123456789").ok);
    QVERIFY(transmit(pipe.client, "next").ok);
    for (const char *beginning : {"0123", "4567"}) {
        const Outcome part = receive(pipe.server, 4);
        QVERIFY(part.failedWith(ERROR_MORE_DATA));
        QCOMPARE(part.bytes, QByteArray(beginning));
    }
    const Outcome part = receive(pipe.server, 4);
    QVERIFY(part.ok);
    QCOMPARE(part.bytes, QByteArray("89"));
    QCOMPARE(receive(pipe.server).bytes, QByteArray("next"));
}

void tst_NamedPipes::anEmptyMessageIsAMessage()
{
    const Connection pipe(m_name);
    QVERIFY(transmit(pipe.client, QByteArray()).ok);
    QVERIFY(transmit(pipe.client, "full").ok);
    const Outcome empty = receive(pipe.server);
    QVERIFY(empty.ok);
    QVERIFY(empty.bytes.isEmpty());
    QCOMPARE(receive(pipe.server).bytes, QByteArray("full"));
}

void tst_NamedPipes::aClientReadsBytesAcrossMessages()
{
    const Connection pipe(m_name);
    QVERIFY(transmit(pipe.server, "abcdef").ok);
    QVERIFY(transmit(pipe.server, "ghi").ok);
    Outcome part = receive(pipe.client, 4);
    QVERIFY(part.ok);
    QCOMPARE(part.bytes, QByteArray("abcd"));
    part = receive(pipe.client);
    QVERIFY(part.ok);
    QCOMPARE(part.bytes, QByteArray("efghi"));
}

void tst_NamedPipes::readFileWaitsForAMessage()
{
    const Connection pipe(m_name);
    std::future<Outcome> received = start([&] { return receive(pipe.server); });
    QVERIFY(transmit(pipe.client, "late").ok);
    QVERIFY(hasEnded(received));
    QCOMPARE(received.get().bytes, QByteArray("late"));
}

void tst_NamedPipes::aClientWithoutTheRightMayNotReadOrWrite()
{
    const Handle server = createPipe(m_name);
    const Handle reader = openPipe(m_name, GENERIC_READ);
    QVERIFY(reader.isOpen());
    QVERIFY(transmit(reader, "1").failedWith(ERROR_ACCESS_DENIED));

    const Handle secondServer = createPipe(m_name);
    const Handle writer = openPipe(m_name, GENERIC_WRITE);
    QVERIFY(writer.isOpen());
    QVERIFY(receive(writer).failedWith(ERROR_ACCESS_DENIED));
}

void tst_NamedPipes::whatAClientWroteBeforeItLeftIsReadFirst()
{
    Connection pipe(m_name);
    QVERIFY(transmit(pipe.client, "last words").ok);
    pipe.client.close();
    QCOMPARE(receive(pipe.server).bytes, QByteArray("last words"));
    QVERIFY(receive(pipe.server).failedWith(ERROR_BROKEN_PIPE));
    QVERIFY(receive(pipe.server).failedWith(ERROR_BROKEN_PIPE));
}

void tst_NamedPipes::writingToAClientThatLeftFails()
{
    Connection pipe(m_name);
    QVERIFY(transmit(pipe.server, "unread").ok);
    pipe.client.close();
    QVERIFY(transmit(pipe.server, "1").failedWith(ERROR_NO_DATA));
    QVERIFY(receive(pipe.server).failedWith(ERROR_BROKEN_PIPE));
}

void tst_NamedPipes::readingAndWritingBeforeAnyClientFails()
{
    const Handle server = createPipe(m_name);
    QVERIFY(receive(server).failedWith(ERROR_PIPE_LISTENING));
    QVERIFY(transmit(server, "1").failedWith(ERROR_PIPE_LISTENING));
}

void tst_NamedPipes::readingAndWritingAfterDisconnectingFails()
{
    const Connection pipe(m_name);
    QVERIFY(dropClient(pipe.server).ok);
    QVERIFY(receive(pipe.server).failedWith(ERROR_PIPE_NOT_CONNECTED));
    QVERIFY(transmit(pipe.server, "1").failedWith(ERROR_PIPE_NOT_CONNECTED));
    QVERIFY(receive(pipe.client).failedWith(ERROR_PIPE_NOT_CONNECTED));
    QVERIFY(transmit(pipe.client, "1").failedWith(ERROR_PIPE_NOT_CONNECTED));
}

void tst_NamedPipes::disconnectingDiscardsWhatTheClientHasNotRead()
{
    const Connection pipe(m_name);
    QVERIFY(transmit(pipe.server, "lost").ok);
    QVERIFY(transmit(pipe.client, "lost as well").ok);
    QVERIFY(dropClient(pipe.server).ok);
    QVERIFY(receive(pipe.client).failedWith(ERROR_PIPE_NOT_CONNECTED));

    const Handle next = connectAgain(pipe.server, m_name);
    QVERIFY(passes("kept", next, pipe.server));
}

void tst_NamedPipes::disconnectingWakesAReadingClient()
{
    const Connection pipe(m_name);
    std::future<Outcome> received = start([&] { return receive(pipe.client); });
    QVERIFY(dropClient(pipe.server).ok);
    QVERIFY(hasEnded(received));
    QVERIFY(received.get().failedWith(ERROR_PIPE_NOT_CONNECTED));
}

void tst_NamedPipes::disconnectingTwiceFails()
{
    const Connection pipe(m_name);
    QVERIFY(dropClient(pipe.server).ok);
    QVERIFY(dropClient(pipe.server).failedWith(ERROR_PIPE_NOT_CONNECTED));
}

void tst_NamedPipes::aClientWhoseServerClosedReadsTheRestFirst()
{
    Connection pipe(m_name);
    QVERIFY(transmit(pipe.server, "rest").ok);
    pipe.server.close();
    QCOMPARE(receive(pipe.client).bytes, QByteArray("rest"));
    QVERIFY(receive(pipe.client).failedWith(ERROR_BROKEN_PIPE));
    QVERIFY(transmit(pipe.client, "1").failedWith(ERROR_NO_DATA));
}

void tst_NamedPipes::closingTheServerWakesAReadingClient()
{
    Connection pipe(m_name);
    std::future<Outcome> received = start([&] { return receive(pipe.client); });
    pipe.server.close();
    QVERIFY(hasEnded(received));
    QVERIFY(received.get().failedWith(ERROR_BROKEN_PIPE));
}

void tst_NamedPipes::addWaysToCancel()
{
    QTest::addColumn<bool>("byThread");
    QTest::newRow("by handle") << false;
    QTest::newRow("by thread") << true;
}

void tst_NamedPipes::cancellingEndsConnectNamedPipe()
{
    QFETCH(bool, byThread);
    const Handle server = createPipe(m_name);
    for (int round = 0; round < 20; ++round) {
        ThreadCall call([&] { return awaitClient(server); });
        QVERIFY(byThread ? call.cancelByThread() : call.cancelByHandle(server));
        QVERIFY(call.result().failedWith(ERROR_OPERATION_ABORTED));
    }
    // It still listens.
    const Handle client = openPipe(m_name);
    QVERIFY(client.isOpen());
    QVERIFY(awaitClient(server).failedWith(ERROR_PIPE_CONNECTED));
}

void tst_NamedPipes::cancellingEndsReadFile()
{
    QFETCH(bool, byThread);
    const Connection pipe(m_name);
    for (int round = 0; round < 20; ++round) {
        ThreadCall call([&] { return receive(pipe.server); });
        QVERIFY(byThread ? call.cancelByThread() : call.cancelByHandle(pipe.server));
        QVERIFY(call.result().failedWith(ERROR_OPERATION_ABORTED));
    }
    // The connection has not suffered.
    QVERIFY(passes("1", pipe.client, pipe.server));
}

void tst_NamedPipes::cancellingAThreadLeavesTheOthersAlone()
{
    const Connection pipe(m_name);
    const Connection otherPipe(m_name);
    ThreadCall cancelled([&] { return receive(pipe.server); });
    ThreadCall other([&] { return receive(otherPipe.server); });
    QVERIFY(cancelled.cancelByThread());
    QVERIFY(transmit(otherPipe.client, "1").ok);
    QCOMPARE(other.result().bytes, QByteArray("1"));
}

void tst_NamedPipes::cancellingAThreadThatDoesNotWaitFindsNothing()
{
    const Handle self = openThread(GetCurrentThreadId());
    QVERIFY(self.isOpen());
    QVERIFY(cancelThread(self).failedWith(ERROR_NOT_FOUND));

    const Handle server = createPipe(m_name);
    const Handle client = openPipe(m_name);
    QVERIFY(transmit(client, "1").ok);
    QVERIFY(receive(server).ok);
    QVERIFY(cancelThread(self).failedWith(ERROR_NOT_FOUND));

    ThreadCall over([&] { return transmit(client, "2"); });
    QVERIFY(over.result().ok);
    QVERIFY(cancelThread(over.thread()).failedWith(ERROR_NOT_FOUND));
    // What was asked in vain does not hit what comes later.
    QVERIFY(receive(server).ok);
}

void tst_NamedPipes::cancellingAThreadTakesTheRightTo()
{
    const Handle weak = openThread(GetCurrentThreadId(), SYNCHRONIZE);
    QVERIFY(weak.isOpen());
    QVERIFY(cancelThread(weak).failedWith(ERROR_ACCESS_DENIED));
    QVERIFY(openThread(0x7FFFFFF0).failedWith(ERROR_INVALID_PARAMETER));
    const Handle pipe = createPipe(m_name);
    QVERIFY(cancelThread(pipe).failedWith(ERROR_INVALID_HANDLE));
    QVERIFY(cancelThread(Handle()).failedWith(ERROR_INVALID_HANDLE));
}

void tst_NamedPipes::callsOnAnUnknownHandleFail()
{
    Handle server = createPipe(m_name);
    const HANDLE closed = server;
    server.close();
    for (const HANDLE handle : {closed, INVALID_HANDLE_VALUE}) {
        QVERIFY(awaitClient(handle).failedWith(ERROR_INVALID_HANDLE));
        QVERIFY(dropClient(handle).failedWith(ERROR_INVALID_HANDLE));
        QVERIFY(receive(handle).failedWith(ERROR_INVALID_HANDLE));
        QVERIFY(transmit(handle, "1").failedWith(ERROR_INVALID_HANDLE));
    }
    QVERIFY(outcome([&] { return CloseHandle(closed); }).failedWith(ERROR_INVALID_HANDLE));
    QVERIFY(outcome([&] { return CancelIoEx(closed, nullptr); }).failedWith(ERROR_INVALID_HANDLE));
}

QTEST_GUILESS_MAIN(tst_NamedPipes)
#include "tst_namedpipes.moc"
