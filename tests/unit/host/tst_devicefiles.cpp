#include "failure.h"
#include "fakedevice.h"

#include <QDir>
#include <QTemporaryDir>
#include <QTest>

#include <sys/stat.h>

#include <atomic>
#include <cerrno>
#include <future>
#include <memory>
#include <mutex>
#include <thread>
#include <utility>

namespace {

constexpr DWORD untouched = 0x20000000;

struct Outcome {
    bool ok = false;
    DWORD error = 0;
    DWORD returned = 0;

    bool failedWith(DWORD expected) const { return !ok && error == expected; }
};

/// DeviceIoControl and what it left.
Outcome request(HANDLE device, DWORD code, QByteArray input, QByteArray *output = nullptr)
{
    Outcome result;
    result.returned = untouched;
    SetLastError(untouched);
    result.ok =
        DeviceIoControl(device, code, input.isEmpty() ? nullptr : input.data(),
                        static_cast<DWORD>(input.size()), output ? output->data() : nullptr,
                        output ? static_cast<DWORD>(output->size()) : 0, &result.returned, nullptr)
        != FALSE;
    result.error = GetLastError();
    return result;
}

HANDLE open(LPCWSTR path, DWORD disposition = OPEN_EXISTING, DWORD flags = 0)
{
    SetLastError(untouched);
    return CreateFileW(path, GENERIC_READ | GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_WRITE,
                       nullptr, disposition, flags, nullptr);
}

constexpr LPCWSTR devicePath = LR"(\\.\Device)";

} // namespace

class tst_DeviceFiles : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void aMissingDeviceIsNotFound();
    void aSocketThatNobodyServesIsNotFound();
    void aFolderOpenToOthersIsDenied();
    void aPathThatIsNoDeviceIsRefused_data();
    void aPathThatIsNoDeviceIsRefused();
    void onlyAPlainOpenIsSupported();
    void aDeepFolderIsReached();
    void theOpenRequestCarriesTheArguments();
    void aRefusedOpenGivesTheDevicesError();
    void aDeviceThatLeavesDuringTheOpenIsNotConnected();
    void openHandlesAreIndependent();

    void aRequestReachesTheDevice();
    void aRequestMayCarryNothing();
    void theReplyIsCopied();
    void aShortReplyLeavesTheRestAlone();
    void aReplyInSmallPiecesIsWaitedFor();
    void aLargeRequestAndReplyPass();
    void anErrorLeavesTheOutputAlone();
    void aReplyLongerThanAskedForIsAProtocolError();
    void aDeviceThatLeavesIsNotConnected();
    void aDeviceThatLeavesWithinItsReplyIsNotConnected();
    void missingBuffersAreRefused();
    void aDeviceKnowsNoOtherOperations();

    void successLeavesTheLastErrorAlone();
    void theLastErrorBelongsToTheThread();
    void callsLeaveErrnoAlone();
    void aClosedHandleIsUnknown();
    void handleValuesAreNotUsedAgain();
    void requestsOfTwoThreadsTakeTurns();
    void closingWaitsForTheRequestUnderWay();

private:
    void serve(FakeDevice::Script script);
    /// Opens a device that plays @p script after the greeting.
    void openServed(FakeDevice::Script script);
    BOOL closeDevice() { return CloseHandle(std::exchange(m_handle, INVALID_HANDLE_VALUE)); }

    std::unique_ptr<QTemporaryDir> m_folder;
    std::unique_ptr<FakeDevice> m_device;
    HANDLE m_handle = INVALID_HANDLE_VALUE;
};

void tst_DeviceFiles::init()
{
    m_folder = std::make_unique<QTemporaryDir>();
    QVERIFY(m_folder->isValid());
    qputenv("VESMORA_HOST_DIR", m_folder->path().toLocal8Bit());
}

void tst_DeviceFiles::cleanup()
{
    if (m_handle != INVALID_HANDLE_VALUE)
        closeDevice();
    m_device.reset();
    m_folder.reset();
}

void tst_DeviceFiles::serve(FakeDevice::Script script)
{
    m_device = std::make_unique<FakeDevice>(m_folder->filePath("Device"), std::move(script));
}

void tst_DeviceFiles::openServed(FakeDevice::Script script)
{
    serve([script = std::move(script)](FakeConnection &connection) {
        connection.greet();
        script(connection);
    });
    m_handle = open(devicePath);
    QVERIFY(m_handle != INVALID_HANDLE_VALUE);
}

void tst_DeviceFiles::aMissingDeviceIsNotFound()
{
    QCOMPARE(failureOf(open(devicePath)), ERROR_FILE_NOT_FOUND);
}

void tst_DeviceFiles::aSocketThatNobodyServesIsNotFound()
{
    serve([](FakeConnection &) {});
    m_device.reset();
    QVERIFY(QFileInfo::exists(m_folder->filePath("Device")));
    QCOMPARE(failureOf(open(devicePath)), ERROR_FILE_NOT_FOUND);
}

void tst_DeviceFiles::aFolderOpenToOthersIsDenied()
{
    serve([](FakeConnection &connection) { connection.greet(); });
    QCOMPARE(chmod(m_folder->path().toLocal8Bit().constData(), 0755), 0);
    QCOMPARE(failureOf(open(devicePath)), ERROR_ACCESS_DENIED);
}

void tst_DeviceFiles::aPathThatIsNoDeviceIsRefused_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<DWORD>("error");
    QTest::newRow("nothing") << QString() << DWORD{ERROR_PATH_NOT_FOUND};
    QTest::newRow("no name") << R"(\\.\)" << DWORD{ERROR_INVALID_NAME};
    QTest::newRow("folder itself") << R"(\\.\.)" << DWORD{ERROR_INVALID_NAME};
    QTest::newRow("folder above") << R"(\\.\..)" << DWORD{ERROR_INVALID_NAME};
    QTest::newRow("slash") << R"(\\.\../Device)" << DWORD{ERROR_PATH_NOT_FOUND};
    QTest::newRow("backslash") << R"(\\.\Device\File)" << DWORD{ERROR_PATH_NOT_FOUND};
    QTest::newRow("pipe above") << R"(\\.\pipe\..)" << DWORD{ERROR_INVALID_NAME};
    QTest::newRow("pipe with slash") << R"(\\.\pipe\../Device)" << DWORD{ERROR_INVALID_NAME};
    QTest::newRow("pipe without name") << R"(\\.\pipe\)" << DWORD{ERROR_INVALID_NAME};
    QTest::newRow("ordinary file") << R"(C:\file)" << DWORD{ERROR_NOT_SUPPORTED};
    QTest::newRow("too long") << R"(\\.\)" + QString(200, u'x')
                              << DWORD{ERROR_FILENAME_EXCED_RANGE};
}

void tst_DeviceFiles::aPathThatIsNoDeviceIsRefused()
{
    QFETCH(QString, path);
    QFETCH(DWORD, error);
    QCOMPARE(failureOf(open(path.toStdWString().c_str())), error);
}

void tst_DeviceFiles::onlyAPlainOpenIsSupported()
{
    constexpr DWORD createAlways = 2;
    serve([](FakeConnection &connection) { connection.greet(); });
    QCOMPARE(failureOf(open(devicePath, OPEN_EXISTING, FILE_FLAG_OVERLAPPED)),
             ERROR_INVALID_PARAMETER);
    QCOMPARE(failureOf(open(devicePath, createAlways)), ERROR_INVALID_PARAMETER);
    m_handle = open(devicePath, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL);
    QVERIFY(m_handle != INVALID_HANDLE_VALUE);
}

void tst_DeviceFiles::aDeepFolderIsReached()
{
    serve([](FakeConnection &connection) { connection.greet(); });
    // Deeper than a socket's address can say.
    const QString folder = m_folder->filePath(QString(100, u'x'));
    QVERIFY(QDir().mkdir(folder));
    QCOMPARE(chmod(folder.toLocal8Bit().constData(), 0700), 0);
    QVERIFY(QFile::link(m_folder->filePath("Device"), folder + "/Device"));
    qputenv("VESMORA_HOST_DIR", folder.toLocal8Bit());
    m_handle = open(devicePath);
    QVERIFY(m_handle != INVALID_HANDLE_VALUE);
}

void tst_DeviceFiles::theOpenRequestCarriesTheArguments()
{
    std::promise<deviceprotocol::OpenRequest> seen;
    serve([&](FakeConnection &connection) { seen.set_value(connection.greet()); });
    m_handle = open(devicePath);
    const deviceprotocol::OpenRequest arguments = seen.get_future().get();
    QCOMPARE(arguments.desiredAccess, GENERIC_READ | GENERIC_WRITE);
    QCOMPARE(arguments.shareMode, FILE_SHARE_READ | FILE_SHARE_WRITE);
    QCOMPARE(arguments.creationDisposition, OPEN_EXISTING);
    QCOMPARE(arguments.flagsAndAttributes, 0u);
}

void tst_DeviceFiles::aRefusedOpenGivesTheDevicesError()
{
    serve([](FakeConnection &connection) { connection.greet(ERROR_ACCESS_DENIED); });
    QCOMPARE(failureOf(open(devicePath)), ERROR_ACCESS_DENIED);
}

void tst_DeviceFiles::aDeviceThatLeavesDuringTheOpenIsNotConnected()
{
    serve([](FakeConnection &) {});
    QCOMPARE(failureOf(open(devicePath)), ERROR_DEVICE_NOT_CONNECTED);
}

void tst_DeviceFiles::openHandlesAreIndependent()
{
    const auto answerOnce = [](FakeConnection &connection) {
        connection.greet();
        connection.answer();
    };
    serve(answerOnce);
    m_handle = open(devicePath);
    const HANDLE second = open(devicePath);
    QVERIFY(m_handle != INVALID_HANDLE_VALUE);
    QVERIFY(second != INVALID_HANDLE_VALUE);
    QVERIFY(m_handle != second);
    QVERIFY(request(m_handle, 1, {}).ok);
    QVERIFY(closeDevice());
    QVERIFY(request(second, 1, {}).ok);
    QVERIFY(CloseHandle(second));
}

void tst_DeviceFiles::aRequestReachesTheDevice()
{
    deviceprotocol::IoRequest seen = {};
    QByteArray input;
    openServed([&](FakeConnection &connection) {
        seen = connection.receiveRecord<deviceprotocol::IoRequest>();
        input = connection.receive(seen.inputLength);
        connection.sendReply(0);
    });
    QByteArray output(32, '\0');
    const Outcome result = request(m_handle, 0xFFDC20A0, QByteArray("input\0bytes", 11), &output);
    QVERIFY(result.ok);
    QCOMPARE(result.returned, 0u);
    QCOMPARE(seen.code, 0xFFDC20A0u);
    QCOMPARE(seen.outputLength, 32u);
    QCOMPARE(input, QByteArray("input\0bytes", 11));
}

void tst_DeviceFiles::aRequestMayCarryNothing()
{
    deviceprotocol::IoRequest seen = {1, 1, 1};
    openServed([&](FakeConnection &connection) {
        seen = connection.receiveRecord<deviceprotocol::IoRequest>();
        connection.sendReply(0);
    });
    QVERIFY(request(m_handle, 7, {}).ok);
    QCOMPARE(seen.code, 7u);
    QCOMPARE(seen.inputLength, 0u);
    QCOMPARE(seen.outputLength, 0u);
}

void tst_DeviceFiles::theReplyIsCopied()
{
    openServed([](FakeConnection &connection) { connection.answer(0, "1234"); });
    QByteArray output(4, '\0');
    const Outcome result = request(m_handle, 1, {}, &output);
    QVERIFY(result.ok);
    QCOMPARE(result.returned, 4u);
    QCOMPARE(output, QByteArray("1234"));
}

void tst_DeviceFiles::aShortReplyLeavesTheRestAlone()
{
    openServed([](FakeConnection &connection) { connection.answer(0, "12"); });
    QByteArray output(4, '-');
    QCOMPARE(request(m_handle, 1, {}, &output).returned, 2u);
    QCOMPARE(output, QByteArray("12--"));
}

void tst_DeviceFiles::aReplyInSmallPiecesIsWaitedFor()
{
    openServed([](FakeConnection &connection) {
        connection.receiveRecord<deviceprotocol::IoRequest>();
        const deviceprotocol::Reply reply{0, 4};
        const QByteArray bytes(reinterpret_cast<const char *>(&reply), sizeof reply);
        for (const char byte : bytes + "abcd") {
            connection.send(QByteArray(1, byte));
            std::this_thread::yield();
        }
    });
    QByteArray output(4, '\0');
    QVERIFY(request(m_handle, 1, {}, &output).ok);
    QCOMPARE(output, QByteArray("abcd"));
}

void tst_DeviceFiles::aLargeRequestAndReplyPass()
{
    const QByteArray large(1 << 20, 'x');
    QByteArray input;
    openServed([&](FakeConnection &connection) {
        const auto seen = connection.receiveRecord<deviceprotocol::IoRequest>();
        input = connection.receive(seen.inputLength);
        connection.sendReply(0, input);
    });
    QByteArray output(large.size(), '\0');
    QVERIFY(request(m_handle, 1, large, &output).ok);
    QVERIFY(input == large);
    QVERIFY(output == large);
}

void tst_DeviceFiles::anErrorLeavesTheOutputAlone()
{
    openServed([](FakeConnection &connection) {
        connection.answer(ERROR_GEN_FAILURE, "12");
        connection.answer(0, "34");
    });
    QByteArray output(4, '-');
    const Outcome result = request(m_handle, 1, {}, &output);
    QVERIFY(result.failedWith(ERROR_GEN_FAILURE));
    QCOMPARE(result.returned, untouched);
    QCOMPARE(output, QByteArray("----"));
    QVERIFY(request(m_handle, 1, {}, &output).ok);
    QCOMPARE(output, QByteArray("34--"));
}

void tst_DeviceFiles::aReplyLongerThanAskedForIsAProtocolError()
{
    openServed([](FakeConnection &connection) {
        connection.answer(0, "12345");
        connection.answer(0, "1234");
    });
    QByteArray output(4, '-');
    QVERIFY(request(m_handle, 1, {}, &output).failedWith(ERROR_IO_DEVICE));
    QVERIFY(request(m_handle, 1, {}, &output).failedWith(ERROR_DEVICE_NOT_CONNECTED));
    QCOMPARE(output, QByteArray("----"));
}

void tst_DeviceFiles::aDeviceThatLeavesIsNotConnected()
{
    openServed(
        [](FakeConnection &connection) { connection.receiveRecord<deviceprotocol::IoRequest>(); });
    QVERIFY(request(m_handle, 1, {}).failedWith(ERROR_DEVICE_NOT_CONNECTED));
    QVERIFY(request(m_handle, 1, QByteArray(100000, 'x')).failedWith(ERROR_DEVICE_NOT_CONNECTED));
    QVERIFY(closeDevice());
}

void tst_DeviceFiles::aDeviceThatLeavesWithinItsReplyIsNotConnected()
{
    openServed([](FakeConnection &connection) {
        connection.receiveRecord<deviceprotocol::IoRequest>();
        const deviceprotocol::Reply reply{0, 4};
        connection.send(QByteArray(reinterpret_cast<const char *>(&reply), sizeof reply) + "12");
    });
    QByteArray output(4, '-');
    QVERIFY(request(m_handle, 1, {}, &output).failedWith(ERROR_DEVICE_NOT_CONNECTED));
    QCOMPARE(output, QByteArray("----"));
}

void tst_DeviceFiles::missingBuffersAreRefused()
{
    openServed([](FakeConnection &) {});
    DWORD returned = 0;
    char byte = 0;
    QCOMPARE(failureOf(DeviceIoControl(m_handle, 1, nullptr, 0, nullptr, 0, nullptr, nullptr)),
             ERROR_NOACCESS);
    QCOMPARE(failureOf(DeviceIoControl(m_handle, 1, nullptr, 1, nullptr, 0, &returned, nullptr)),
             ERROR_NOACCESS);
    QCOMPARE(failureOf(DeviceIoControl(m_handle, 1, &byte, 1, nullptr, 1, &returned, nullptr)),
             ERROR_NOACCESS);
}

void tst_DeviceFiles::aDeviceKnowsNoOtherOperations()
{
    openServed([](FakeConnection &) {});
    DWORD count = 0;
    char byte = 0;
    QCOMPARE(failureOf(ReadFile(m_handle, &byte, 1, &count, nullptr)), ERROR_INVALID_FUNCTION);
    QCOMPARE(failureOf(WriteFile(m_handle, &byte, 1, &count, nullptr)), ERROR_INVALID_FUNCTION);
    QCOMPARE(failureOf(ConnectNamedPipe(m_handle, nullptr)), ERROR_INVALID_FUNCTION);
    QCOMPARE(failureOf(DisconnectNamedPipe(m_handle)), ERROR_INVALID_FUNCTION);
}

void tst_DeviceFiles::successLeavesTheLastErrorAlone()
{
    openServed([](FakeConnection &connection) { connection.answer(); });
    QCOMPARE(GetLastError(), untouched);
    QCOMPARE(request(m_handle, 1, {}).error, untouched);
    QVERIFY(closeDevice());
    QCOMPARE(GetLastError(), untouched);
}

void tst_DeviceFiles::theLastErrorBelongsToTheThread()
{
    SetLastError(untouched);
    DWORD before = untouched;
    DWORD after = untouched;
    std::thread([&] {
        before = GetLastError();
        open(devicePath);
        after = GetLastError();
    }).join();
    QCOMPARE(before, ERROR_SUCCESS);
    QCOMPARE(after, ERROR_FILE_NOT_FOUND);
    QCOMPARE(GetLastError(), untouched);
}

void tst_DeviceFiles::callsLeaveErrnoAlone()
{
    errno = ELIBMAX;
    QCOMPARE(CreateFileW(devicePath, 0, 0, nullptr, OPEN_EXISTING, 0, nullptr),
             INVALID_HANDLE_VALUE);
    QCOMPARE(errno, ELIBMAX);
}

void tst_DeviceFiles::aClosedHandleIsUnknown()
{
    openServed([](FakeConnection &) {});
    QVERIFY(CloseHandle(m_handle));
    QVERIFY(request(m_handle, 1, {}).failedWith(ERROR_INVALID_HANDLE));
    QVERIFY(request(nullptr, 1, {}).failedWith(ERROR_INVALID_HANDLE));
    QVERIFY(request(INVALID_HANDLE_VALUE, 1, {}).failedWith(ERROR_INVALID_HANDLE));
    QCOMPARE(failureOf(CloseHandle(m_handle)), ERROR_INVALID_HANDLE);
    m_handle = INVALID_HANDLE_VALUE;
}

void tst_DeviceFiles::handleValuesAreNotUsedAgain()
{
    openServed([](FakeConnection &) {});
    const HANDLE first = m_handle;
    QVERIFY(CloseHandle(first));
    m_handle = open(devicePath);
    QVERIFY(m_handle != INVALID_HANDLE_VALUE);
    QVERIFY(m_handle != first);
}

void tst_DeviceFiles::requestsOfTwoThreadsTakeTurns()
{
    constexpr int rounds = 200;
    openServed([](FakeConnection &connection) {
        for (int round = 0; round < 2 * rounds; ++round) {
            const auto seen = connection.receiveRecord<deviceprotocol::IoRequest>();
            connection.sendReply(0, connection.receive(seen.inputLength));
        }
    });
    const auto echo = [this](char letter) {
        int correct = 0;
        for (int round = 0; round < rounds; ++round) {
            const QByteArray input(1000, letter);
            QByteArray output(1000, '\0');
            correct += request(m_handle, 1, input, &output).ok && output == input ? 1 : 0;
        }
        return correct;
    };
    std::future<int> other = std::async(std::launch::async, [&] { return echo('b'); });
    QCOMPARE(echo('a'), rounds);
    QCOMPARE(other.get(), rounds);
}

void tst_DeviceFiles::closingWaitsForTheRequestUnderWay()
{
    std::promise<void> requestArrived;
    std::promise<void> answer;
    openServed([&](FakeConnection &connection) {
        connection.receiveRecord<deviceprotocol::IoRequest>();
        requestArrived.set_value();
        answer.get_future().wait();
        connection.sendReply(0, "1234");
    });
    std::future<Outcome> requested = std::async(std::launch::async, [&] {
        QByteArray output(4, '\0');
        return request(m_handle, 1, {}, &output);
    });
    requestArrived.get_future().wait();
    std::future<BOOL> closed =
        std::async(std::launch::async, [&] { return CloseHandle(m_handle); });
    // The handle is gone as soon as the closing has begun, but the device stays until it is served.
    QTRY_VERIFY(!CancelIoEx(m_handle, nullptr) && GetLastError() == ERROR_INVALID_HANDLE);
    answer.set_value();
    QVERIFY(requested.get().ok);
    QVERIFY(closed.get());
    m_handle = INVALID_HANDLE_VALUE;
}

QTEST_GUILESS_MAIN(tst_DeviceFiles)
#include "tst_devicefiles.moc"
