#include "failure.h"

#include <QTemporaryDir>
#include <QTest>

#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <future>
#include <memory>
#include <string>

namespace {

constexpr LPCWSTR pipePath = LR"(\\.\pipe\Test)";

HANDLE createPipe(LPCWSTR path = pipePath, DWORD openMode = PIPE_ACCESS_DUPLEX,
                  DWORD pipeMode = PIPE_TYPE_MESSAGE | PIPE_READMODE_MESSAGE | PIPE_WAIT,
                  DWORD maximumInstances = PIPE_UNLIMITED_INSTANCES)
{
    return CreateNamedPipeW(path, openMode, pipeMode, maximumInstances, 65536, 65536, 300, nullptr);
}

HANDLE openPipe()
{
    return CreateFileW(pipePath, GENERIC_READ | GENERIC_WRITE, 0, nullptr, OPEN_EXISTING, 0,
                       nullptr);
}

HANDLE openPipeWhenFree()
{
    HANDLE client = openPipe();
    while (client == INVALID_HANDLE_VALUE && GetLastError() == ERROR_PIPE_BUSY) {
        Sleep(1);
        client = openPipe();
    }
    return client;
}

/// A pipe and a client of it.
class Connection
{
public:
    Connection() = default;
    ~Connection()
    {
        QVERIFY(CloseHandle(client));
        QVERIFY(CloseHandle(server));
    }
    Connection(const Connection &) = delete;
    Connection &operator=(const Connection &) = delete;

    const HANDLE server = createPipe();
    const HANDLE client = openPipe();
};

/// A process with a pipe of its own, which is killed without a chance to tidy up.
class ServerProcess
{
public:
    explicit ServerProcess(bool takeClient)
    {
        int ready[2] = {};
        if (pipe(ready) != 0)
            return;
        m_id = fork();
        if (m_id == 0) {
            const HANDLE server = createPipe();
            const HANDLE client = takeClient ? openPipe() : server;
            const bool good = server != INVALID_HANDLE_VALUE && client != INVALID_HANDLE_VALUE;
            const char answer = good ? '+' : '-';
            if (write(ready[1], &answer, 1) == 1)
                pause();
            _exit(1);
        }
        close(ready[1]);
        char answer = 0;
        m_ready = read(ready[0], &answer, 1) == 1 && answer == '+';
        close(ready[0]);
    }
    ~ServerProcess() { kill(); }
    ServerProcess(const ServerProcess &) = delete;
    ServerProcess &operator=(const ServerProcess &) = delete;

    bool isReady() const { return m_ready; }
    void kill()
    {
        if (m_id > 0) {
            ::kill(m_id, SIGKILL);
            waitpid(m_id, nullptr, 0);
        }
        m_id = -1;
    }

private:
    pid_t m_id = -1;
    bool m_ready = false;
};

} // namespace

/// What of the pipes is particular to this implementation, or stricter than elsewhere.
class tst_HostPipes : public QObject
{
    Q_OBJECT

private slots:
    void init();

    void aPipeEndsWithItsServersProcess();
    void aClientOfADeadServerReadsABrokenPipe();
    void aDeadServersNameCanBeUsedAgain();
    void aBusyPipeOfAnotherProcessIsBusyHere();
    void unsupportedModesAreRefused_data();
    void unsupportedModesAreRefused();
    void thereAreAtMost255Instances();
    void aFolderOpenToOthersIsDenied();
    void cancellingWithNothingPendingFindsNothing();
    void aTooLongMessageIsRefused();
    void aWriteWaitsForRoomAndCanBeCancelled();
    void aClientIsNoServer();
    void pipesAreNoDevices();
    void closingWhileAnotherThreadWaitsIsSafe();
    void manyThreadsMayUseOneHandle();

private:
    std::unique_ptr<QTemporaryDir> m_folder;
};

void tst_HostPipes::init()
{
    m_folder = std::make_unique<QTemporaryDir>();
    QVERIFY(m_folder->isValid());
    qputenv("VESMORA_HOST_DIR", m_folder->path().toLocal8Bit());
}

void tst_HostPipes::aPipeEndsWithItsServersProcess()
{
    ServerProcess server(false);
    QVERIFY(server.isReady());
    server.kill();
    QCOMPARE(failureOf(openPipe()), ERROR_FILE_NOT_FOUND);
}

void tst_HostPipes::aClientOfADeadServerReadsABrokenPipe()
{
    ServerProcess server(false);
    QVERIFY(server.isReady());
    const HANDLE client = openPipe();
    QVERIFY(client != INVALID_HANDLE_VALUE);
    server.kill();
    char byte = 0;
    DWORD count = 0;
    QCOMPARE(failureOf(ReadFile(client, &byte, 1, &count, nullptr)), ERROR_BROKEN_PIPE);
    QCOMPARE(failureOf(WriteFile(client, &byte, 1, &count, nullptr)), ERROR_NO_DATA);
    QVERIFY(CloseHandle(client));
}

void tst_HostPipes::aDeadServersNameCanBeUsedAgain()
{
    ServerProcess dead(false);
    QVERIFY(dead.isReady());
    dead.kill();
    const HANDLE server = createPipe();
    QVERIFY(server != INVALID_HANDLE_VALUE);
    const HANDLE client = openPipe();
    QVERIFY(client != INVALID_HANDLE_VALUE);
    QVERIFY(CloseHandle(client));
    QVERIFY(CloseHandle(server));
}

void tst_HostPipes::aBusyPipeOfAnotherProcessIsBusyHere()
{
    ServerProcess server(true);
    QVERIFY(server.isReady());
    QCOMPARE(failureOf(openPipe()), ERROR_PIPE_BUSY);
}

void tst_HostPipes::unsupportedModesAreRefused_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<DWORD>("openMode");
    QTest::addColumn<DWORD>("pipeMode");
    QTest::addColumn<DWORD>("instances");
    QTest::addColumn<DWORD>("error");
    const auto path = QString::fromWCharArray(pipePath);
    const DWORD message = PIPE_TYPE_MESSAGE | PIPE_READMODE_MESSAGE;
    const DWORD duplex = PIPE_ACCESS_DUPLEX;
    const DWORD refused = ERROR_INVALID_PARAMETER;
    QTest::newRow("a device") << R"(\\.\Test)" << duplex << message << DWORD{1}
                              << DWORD{ERROR_INVALID_NAME};
    QTest::newRow("one way") << path << DWORD{1} << message << DWORD{1} << refused;
    QTest::newRow("overlapped") << path << (duplex | FILE_FLAG_OVERLAPPED) << message << DWORD{1}
                                << refused;
    QTest::newRow("bytes") << path << duplex << DWORD{0} << DWORD{1} << refused;
    QTest::newRow("no instances") << path << duplex << message << DWORD{0} << refused;
    QTest::newRow("256 instances") << path << duplex << message << DWORD{256} << refused;
}

void tst_HostPipes::unsupportedModesAreRefused()
{
    QFETCH(QString, path);
    QFETCH(DWORD, openMode);
    QFETCH(DWORD, pipeMode);
    QFETCH(DWORD, instances);
    QFETCH(DWORD, error);
    QCOMPARE(failureOf(createPipe(path.toStdWString().c_str(), openMode, pipeMode, instances)),
             error);
}

void tst_HostPipes::thereAreAtMost255Instances()
{
    std::vector<HANDLE> instances;
    for (DWORD instance = 0; instance < PIPE_UNLIMITED_INSTANCES; ++instance) {
        instances.push_back(createPipe());
        QVERIFY(instances.back() != INVALID_HANDLE_VALUE);
    }
    QCOMPARE(failureOf(createPipe()), ERROR_PIPE_BUSY);
    for (const HANDLE instance : instances)
        QVERIFY(CloseHandle(instance));
}

void tst_HostPipes::aFolderOpenToOthersIsDenied()
{
    QVERIFY(QFile::setPermissions(m_folder->path(),
                                  QFile::permissions(m_folder->path()) | QFile::ReadOther));
    QCOMPARE(failureOf(createPipe()), ERROR_ACCESS_DENIED);
    QCOMPARE(failureOf(openPipe()), ERROR_ACCESS_DENIED);
}

void tst_HostPipes::cancellingWithNothingPendingFindsNothing()
{
    const HANDLE server = createPipe();
    QCOMPARE(failureOf(CancelIoEx(server, nullptr)), ERROR_NOT_FOUND);
    // Nor does it do anything to the call after it.
    const HANDLE client = openPipe();
    QCOMPARE(failureOf(ConnectNamedPipe(server, nullptr)), ERROR_PIPE_CONNECTED);
    QVERIFY(CloseHandle(client));
    QVERIFY(CloseHandle(server));
}

void tst_HostPipes::aTooLongMessageIsRefused()
{
    const Connection pipe;
    DWORD count = 0;
    const std::string longest(131072, 'x');
    QCOMPARE(failureOf(WriteFile(pipe.client, (longest + 'x').data(),
                                 static_cast<DWORD>(longest.size() + 1), &count, nullptr)),
             ERROR_NOT_ENOUGH_QUOTA);
    QVERIFY(WriteFile(pipe.client, longest.data(), static_cast<DWORD>(longest.size()), &count,
                      nullptr));
    QCOMPARE(count, static_cast<DWORD>(longest.size()));
    std::string received(longest.size(), '\0');
    QVERIFY(ReadFile(pipe.server, received.data(), static_cast<DWORD>(received.size()), &count,
                     nullptr));
    QVERIFY(received == longest);
}

void tst_HostPipes::aWriteWaitsForRoomAndCanBeCancelled()
{
    const Connection pipe;
    const std::string message(60000, 'x');
    std::future<DWORD> filled = std::async(std::launch::async, [&] {
        DWORD count = 0;
        while (WriteFile(pipe.client, message.data(), static_cast<DWORD>(message.size()), &count,
                         nullptr)) { }
        return GetLastError();
    });
    QVERIFY(QTest::qWaitFor([&] { return CancelIoEx(pipe.client, nullptr) != FALSE; }));
    QCOMPARE(filled.get(), ERROR_OPERATION_ABORTED);

    std::string received(message.size(), '\0');
    DWORD count = 0;
    QVERIFY(ReadFile(pipe.server, received.data(), static_cast<DWORD>(received.size()), &count,
                     nullptr));
    QVERIFY(received == message);
}

void tst_HostPipes::aClientIsNoServer()
{
    const Connection pipe;
    QCOMPARE(failureOf(ConnectNamedPipe(pipe.client, nullptr)), ERROR_INVALID_FUNCTION);
    QCOMPARE(failureOf(DisconnectNamedPipe(pipe.client)), ERROR_INVALID_FUNCTION);
}

void tst_HostPipes::pipesAreNoDevices()
{
    const HANDLE server = createPipe();
    DWORD returned = 0;
    QCOMPARE(failureOf(DeviceIoControl(server, 1, nullptr, 0, nullptr, 0, &returned, nullptr)),
             ERROR_INVALID_FUNCTION);
    QVERIFY(CloseHandle(server));
}

void tst_HostPipes::closingWhileAnotherThreadWaitsIsSafe()
{
    const HANDLE server = createPipe();
    HANDLE client = openPipe();
    QVERIFY(DisconnectNamedPipe(server));
    QVERIFY(CloseHandle(client));
    std::promise<DWORD> connected;
    std::promise<DWORD> read;
    std::thread user([&] {
        connected.set_value(ConnectNamedPipe(server, nullptr) ? 0 : GetLastError());
        char byte = 0;
        DWORD count = 0;
        read.set_value(ReadFile(server, &byte, 1, &count, nullptr) ? 0 : GetLastError());
    });
    // An open that succeeds proves that the thread has got as far as waiting.
    client = openPipeWhenFree();
    QCOMPARE(connected.get_future().get(), ERROR_SUCCESS);

    std::thread closer([&] { CloseHandle(server); });
    DWORD count = 0;
    // Whichever of the two came first: the reader is served, or was too late for its handle.
    WriteFile(client, "1", 1, &count, nullptr);
    const DWORD error = read.get_future().get();
    user.join();
    closer.join();
    QVERIFY(error == ERROR_SUCCESS || error == ERROR_INVALID_HANDLE);
    QCOMPARE(failureOf(ReadFile(client, &count, 1, &count, nullptr)), ERROR_BROKEN_PIPE);
    QVERIFY(CloseHandle(client));
}

void tst_HostPipes::manyThreadsMayUseOneHandle()
{
    constexpr DWORD messages = 300;
    const Connection pipe;
    const auto writeAll = [&] {
        DWORD count = 0;
        DWORD good = 0;
        for (DWORD message = 0; message < messages; ++message)
            good += WriteFile(pipe.client, "message", 7, &count, nullptr) ? 1u : 0u;
        return good;
    };
    const auto readAll = [&] {
        char buffer[16];
        DWORD count = 0;
        DWORD good = 0;
        for (DWORD message = 0; message < messages; ++message)
            good += ReadFile(pipe.server, buffer, sizeof buffer, &count, nullptr) && count == 7
                ? 1u
                : 0u;
        return good;
    };
    std::future<DWORD> writers[] = {std::async(std::launch::async, writeAll),
                                    std::async(std::launch::async, writeAll)};
    std::future<DWORD> readers[] = {std::async(std::launch::async, readAll),
                                    std::async(std::launch::async, readAll)};
    for (std::future<DWORD> &writer : writers)
        QCOMPARE(writer.get(), messages);
    for (std::future<DWORD> &reader : readers)
        QCOMPARE(reader.get(), messages);
}

QTEST_GUILESS_MAIN(tst_HostPipes)
#include "tst_hostpipes.moc"
