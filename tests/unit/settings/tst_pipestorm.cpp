#include "listenerlog.h"
#include "pipeclient.h"
#include "pipeserver.h"
#include "processfigures.h"
#include "settingsfixture.h"

#include <QElapsedTimer>
#include <QHash>

#include <array>
#include <atomic>
#include <cstring>
#include <thread>
#include <vector>

/// Asked by the address sanitizer, where there is one: what it keeps back of freed memory would
/// look like growth.
extern "C" const char *__asan_default_options()
{
    return "quarantine_size_mb=4";
}

namespace {

using namespace listenerlog;

const QString stormPipe = R"(\\.\pipe\VesmoraPipeStorm)";
constexpr int stormMessages = 10000;
constexpr int warmUpMessages = 1000;
constexpr int stormClients = 4;
/// The listener pauses 100 ms after each message, so that these set how long the test takes.
constexpr int listenerMessages = 301;
constexpr int listenerClientCount = 2;
constexpr qint64 allowedGrowth = 32 * 1024 * 1024; // bytes
// What the system opens on its own account; a leak would show in every message.
constexpr int allowedHandles = 10;

/// Each kind of message in turn.
enum Kind { Request, NoRequest, FourBytes, Empty, Longest, TooLong, Drop, KindCount };

constexpr bool isReceived(int kind)
{
    return kind != TooLong && kind != Drop;
}

constexpr bool asksForTheWindow(int kind)
{
    return kind == Request || kind == Longest;
}

QByteArray messageOfKind(int kind, quint32 number)
{
    switch (kind) {
    case Request:
        return messageOf({number, 0, 0, 0, 1});
    case NoRequest:
        return messageOf({number, 0, 0, 0, 0});
    case FourBytes:
        return messageOf({number});
    case Longest:
        return messageOf({number, 0, 0, 0, 1}) + QByteArray(1004, '\xff');
    case TooLong:
        return messageOf({number, 0, 0, 0, 1}) + QByteArray(1005, '\xff');
    default:
        return {};
    }
}

/// How many messages of the kinds there are among the first @p count.
template <typename Selector> int countOf(int count, Selector selector)
{
    int sum = 0;
    for (int i = 0; i < count; ++i)
        sum += selector(i % KindCount) ? 1 : 0;
    return sum;
}

/// Several threads that share out a number of messages and send each on a connection of its own.
/// The first message is on its way when they begin, as a server can lose one that comes too early.
class Clients
{
public:
    Clients(const QString &pipe, int messages, int threads)
        : m_pipe(pipe)
        , m_messages(messages)
        , m_first(m_pipe)
    {
        const bool sent = m_first.connect() && m_first.write(messageOfKind(0, 0));
        m_failures += sent ? 0 : 1;
        for (int i = 0; i < threads; ++i)
            m_threads.emplace_back([this] { sendAll(); });
    }
    ~Clients() { join(); }

    void join()
    {
        for (std::thread &thread : m_threads)
            thread.join();
        m_threads.clear();
    }
    int failures() const { return m_failures; }

private:
    void sendAll()
    {
        for (int number = m_next++; number < m_messages; number = m_next++) {
            const int kind = number % KindCount;
            PipeClient client(m_pipe);
            const bool sent = client.connect()
                && (kind == Drop || client.write(messageOfKind(kind, quint32(number))));
            m_failures += sent ? 0 : 1;
        }
    }

    const QString m_pipe;
    const int m_messages;
    PipeClient m_first;
    std::atomic<int> m_next = 1;
    std::atomic<int> m_failures = 0;
    std::vector<std::thread> m_threads;
};

/// A pipe server that receives without a pause, on a thread of its own, a number of times.
class Receiver
{
public:
    Receiver(PipeServer &server, int count)
        : m_thread([this, &server, count] { receiveAll(server, count); })
    { }
    ~Receiver() { m_thread.join(); }

    bool isOver() const { return m_over; }
    int received() const { return m_received; }
    int failed() const { return m_failed; }
    /// The last words of all messages, added up.
    quint32 requests() const { return m_requests; }
    /// The first words of all messages, added up.
    quint64 numbers() const { return m_numbers; }

private:
    void receiveAll(PipeServer &server, int count)
    {
        for (int i = 0; i < count; ++i) {
            PipeServer::Message message{};
            if (!server.receive(message)) {
                ++m_failed;
                continue;
            }
            std::array<quint32, 5> words;
            std::memcpy(words.data(), message.data(), sizeof words);
            ++m_received;
            m_numbers += words[0];
            m_requests += words[4];
        }
        m_over = true;
    }

    std::atomic<bool> m_over = false;
    std::atomic<int> m_received = 0;
    std::atomic<int> m_failed = 0;
    std::atomic<quint32> m_requests = 0;
    std::atomic<quint64> m_numbers = 0;
    std::thread m_thread;
};

quint64 expectedNumbers(int count)
{
    quint64 sum = 0;
    for (int i = 0; i < count; ++i)
        sum += isReceived(i % KindCount) && i % KindCount != Empty ? quint64(i) : 0;
    return sum;
}

} // namespace

class tst_PipeStorm : public SettingsFixture
{
    Q_OBJECT

public:
    tst_PipeStorm()
        : SettingsFixture(Device::None)
    { }

private slots:
    void thousandsOfMessagesOfEveryKind();
    void cleanupTestCase();

private:
    /// Sends that many messages to a server without pauses and to the dialog's listener, at once.
    void storm(int count, int listenerCount);
    void live();
    void tallyLog();
    int tally(const QString &line) const { return m_tally.value(line); }
    void checkReceiver(const Receiver &receiver, int count);
    void checkTally(int count, int listenerCount);

    QHash<QString, int> m_tally; ///< how often a line was logged; those with words are one
    int m_hidings = 0;           ///< how often the dialog was put away
    QString m_report;
};

void tst_PipeStorm::tallyLog()
{
    const QStringList log = takeLog();
    for (const QString &line : log)
        ++m_tally[line.startsWith(receivedData) ? receivedData : line];
}

/// The event loop, with a user who puts the dialog away whenever it appears.
void tst_PipeStorm::live()
{
    QCoreApplication::processEvents(QEventLoop::AllEvents, 10);
    if (dialog().isVisible()) {
        dialog().hide();
        ++m_hidings;
    }
    tallyLog();
}

void tst_PipeStorm::storm(int count, int listenerCount)
{
    PipeServer server(stormPipe);
    QVERIFY(server.create());
    takeLog();
    m_tally.clear();
    const int windows = countOf(listenerCount, asksForTheWindow);
    {
        const Receiver receiver(server, count);
        Clients clients(stormPipe, count, stormClients);
        Clients listenerClients(listenerPipe, listenerCount, listenerClientCount);
        while (!receiver.isOver() || tally(waiting) < listenerCount || tally(windowShown) < windows)
            live();
        clients.join();
        listenerClients.join();
        tallyLog();
        QCOMPARE(clients.failures() + listenerClients.failures(), 0);
        checkReceiver(receiver, count);
    }
    checkTally(count, listenerCount);
    server.close();
}

void tst_PipeStorm::checkReceiver(const Receiver &receiver, int count)
{
    QCOMPARE(receiver.received(), countOf(count, isReceived));
    QCOMPARE(receiver.failed(), count - countOf(count, isReceived));
    QCOMPARE(receiver.requests(), quint32(countOf(count, asksForTheWindow)));
    QCOMPARE(receiver.numbers(), expectedNumbers(count));
}

void tst_PipeStorm::checkTally(int count, int listenerCount)
{
    const auto both = [=](Kind kind) {
        const auto isOfKind = [=](int other) { return other == kind; };
        return countOf(count, isOfKind) + countOf(listenerCount, isOfKind);
    };
    const int received = countOf(listenerCount, isReceived);
    const int windows = countOf(listenerCount, asksForTheWindow);
    const QHash<QString, int> expected{
        {tooLong, both(TooLong)}, {clientLeft, both(Drop)},
        {receivedData, received}, {nothingReceived, listenerCount - received},
        {opensWindow, windows},   {windowShown, windows},
        {waiting, listenerCount},
    };
    QCOMPARE(m_tally, expected);
}

void tst_PipeStorm::thousandsOfMessagesOfEveryKind()
{
    openDialog();
    storm(warmUpMessages, 2 * KindCount);
    const qint64 bytesBefore = residentBytes();
    const int handlesBefore = openHandleCount();
    QVERIFY(bytesBefore > 0);
    m_hidings = 0;

    QElapsedTimer timer;
    timer.start();
    storm(stormMessages, listenerMessages);
    if (QTest::currentTestFailed())
        return;

    const qint64 growth = residentBytes() - bytesBefore;
    m_report = QString("%1 messages without pauses and %2 through the listener in %3 s; the dialog "
                       "came %4 times; resident memory %5 KiB, grown by %6 KiB")
                   .arg(stormMessages)
                   .arg(listenerMessages)
                   .arg(timer.elapsed() / 1000)
                   .arg(m_hidings)
                   .arg(bytesBefore / 1024)
                   .arg(growth / 1024);
    QVERIFY(m_hidings > 0);
    const int handles = openHandleCount() - handlesBefore;
    QVERIFY2(handles < allowedHandles, qPrintable(QString::number(handles)));
    QVERIFY2(growth < allowedGrowth, qPrintable(m_report));
}

void tst_PipeStorm::cleanupTestCase()
{
    qInfo("%s", qPrintable(m_report));
}

QTEST_MAIN(tst_PipeStorm)
#include "tst_pipestorm.moc"
