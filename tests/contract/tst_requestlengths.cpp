#include "drivercommands.h"
#include "opening.h"
#include "simcommands.h"
#include "testsimulator.h"
#include "vesmoracontract.h"

#include <QTest>

#include <algorithm>

namespace {

QByteArray pattern(qsizetype length)
{
    QByteArray bytes(length, '\0');
    for (qsizetype i = 0; i < length; ++i)
        bytes[i] = static_cast<char>(0x40 + i % 0x40);
    return bytes;
}

/// A request to the driver, made without VesmoraIoControl.
struct RawResult {
    bool done = false;
    DWORD error = 0;
    DWORD returned = 0;
};

RawResult request(HANDLE device, quint32 code, QByteArray input, QByteArray &output)
{
    RawResult result;
    result.done = DeviceIoControl(device, code, input.isEmpty() ? nullptr : input.data(),
                                  DWORD(input.size()), output.isEmpty() ? nullptr : output.data(),
                                  DWORD(output.size()), &result.returned, nullptr)
        != FALSE;
    result.error = result.done ? 0 : GetLastError();
    return result;
}

} // namespace

/// What the driver makes of requests that VesmoraIoControl never makes.
class tst_RequestLengths : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void theDriverRejectsWrongLengths_data();
    void theDriverRejectsWrongLengths();
    void aLongerReplyBufferIsFilledOnlyAsFarAsTheReplyGoes_data();
    void aLongerReplyBufferIsFilledOnlyAsFarAsTheReplyGoes();
    void theDriverRejectsCodesThatAreNotUsed_data();
    void theDriverRejectsCodesThatAreNotUsed();

private:
    TestSimulator m_simulator;
    HANDLE m_device = INVALID_HANDLE_VALUE;
};

void tst_RequestLengths::init()
{
    QVERIFY2(m_simulator.reset() && prepareAnswers(m_simulator)
                 && m_simulator.plug(VESMORA_PID_RX1),
             qPrintable(m_simulator.errorString()));
    m_device = CreateFileW(busPath(0).toStdWString().c_str(), GENERIC_READ | GENERIC_WRITE,
                           FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr, OPEN_EXISTING, 0, nullptr);
    QVERIFY(m_device != INVALID_HANDLE_VALUE);
    QVERIFY(m_simulator.clearRecord());
}

void tst_RequestLengths::cleanup()
{
    QVERIFY(CloseHandle(m_device));
    QTRY_COMPARE(m_simulator.state().openHandles, 0u);
}

void tst_RequestLengths::theDriverRejectsWrongLengths_data()
{
    QTest::addColumn<quint32>("code");
    QTest::addColumn<int>("inputLength");
    QTest::addColumn<int>("outputLength");
    QTest::addColumn<quint32>("error");
    QList<quint32> codes;
    for (const DriverCommand &command : driverCommands()) {
        if (codes.contains(command.code))
            continue;
        codes.append(command.code);
        const int input = int(command.input.size());
        const int output = int(command.outputLength);
        const auto row = [&](const char *what, int inputLength, int outputLength, quint32 error) {
            QTest::addRow("%s %s", qPrintable(command.name), what)
                << command.code << inputLength << outputLength << error;
        };
        row("input a byte more", input + 1, output, 24);
        if (input > 0) {
            row("input a byte short", input - 1, output, 24);
            row("no input", 0, output, 24);
        }
        if (output > 0) {
            row("output a byte short", input, output - 1, 122);
            row("no output", input, 0, 122);
        }
    }
    QCOMPARE(codes.size(), qsizetype(sim_command_count));
}

void tst_RequestLengths::theDriverRejectsWrongLengths()
{
    QFETCH(quint32, code);
    QFETCH(int, inputLength);
    QFETCH(int, outputLength);
    QFETCH(quint32, error);
    const QByteArray before = pattern(outputLength);
    QByteArray output = before;
    const RawResult result = request(m_device, code, pattern(inputLength), output);
    QVERIFY(!result.done);
    QCOMPARE(result.error, DWORD(error));
    QCOMPARE(output, before);
    const QList<Record> records = m_simulator.record();
    QCOMPARE(records.size(), 1);
    QCOMPARE(records[0].code, code);
    QCOMPARE(records[0].inputLength, quint32(inputLength));
    QCOMPARE(records[0].outputLength, quint32(outputLength));
    QCOMPARE(records[0].error, error);
}

void tst_RequestLengths::aLongerReplyBufferIsFilledOnlyAsFarAsTheReplyGoes_data()
{
    QTest::addColumn<int>("index");
    for (int i = 0; i < driverCommands().size(); ++i) {
        if (driverCommands()[i].outputLength > 0)
            QTest::newRow(qPrintable(driverCommands()[i].name)) << i;
    }
}

void tst_RequestLengths::aLongerReplyBufferIsFilledOnlyAsFarAsTheReplyGoes()
{
    QFETCH(int, index);
    const DriverCommand &command = driverCommands()[index];
    const qsizetype length = command.outputLength;
    QByteArray output(length + 9, '\x55');
    const RawResult result = request(m_device, command.code, command.input, output);
    QVERIFY(result.done);
    QCOMPARE(result.returned, DWORD(length));
    QVERIFY(output.first(length) != QByteArray(length, '\x55'));
    QCOMPARE(output.sliced(length), QByteArray(9, '\x55'));
}

void tst_RequestLengths::theDriverRejectsCodesThatAreNotUsed_data()
{
    QTest::addColumn<quint32>("function");
    for (quint32 function = 0x809; function <= 0x826; ++function) {
        const bool isUsed = std::any_of(driverCommands().begin(), driverCommands().end(),
                                        [=](const DriverCommand &command) {
                                            return command.code == (0xFFDCu << 16 | function << 2);
                                        });
        if (!isUsed)
            QTest::addRow("0x%x", function) << function;
    }
}

void tst_RequestLengths::theDriverRejectsCodesThatAreNotUsed()
{
    QFETCH(quint32, function);
    QByteArray output(4, '\x55');
    const RawResult result = request(m_device, 0xFFDCu << 16 | function << 2, QByteArray(), output);
    QVERIFY(!result.done);
    QCOMPARE(result.error, DWORD(ERROR_INVALID_FUNCTION));
    QCOMPARE(output, QByteArray(4, '\x55'));
}

QTEST_GUILESS_MAIN(tst_RequestLengths)
#include "tst_requestlengths.moc"
