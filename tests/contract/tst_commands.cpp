#include "consolecapture.h"
#include "drivercommands.h"
#include "logcapture.h"
#include "logtext.h"
#include "opening.h"
#include "simcommands.h"
#include "testsimulator.h"
#include "vesmoraiocontrol.h"
#include "win32spy.h"

#include <QTest>

#include <iostream>
#include <memory>

// Two things have no test because nothing between here and the driver can bring them about: the
// texts of exceptions, and the complaint about a version reply that is too short.

namespace {

/// One call of a command and all that was seen of it.
struct Observation {
    QString answer;
    QList<Win32Call> calls;
    QStringList log;
    QStringList outputLines;
    QStringList errorLines;
};

Observation observe(const DriverCommand &command, VesmoraIoControl &device)
{
    Observation seen;
    const LogCapture log;
    const ConsoleCapture output(std::wcout);
    const ConsoleCapture errors(std::cerr);
    Win32Spy spy;
    seen.answer = command.run(device);
    seen.calls = spy.stop();
    seen.log = withoutAddresses(log.lines());
    seen.outputLines = output.lines();
    seen.errorLines = errors.lines();
    return seen;
}

/// Only one command logs, and only when it works.
QStringList logOf(const DriverCommand &command)
{
    return command.name == "getBufferSize" ? QStringList{"Buffer size: (address)"} : QStringList();
}

bool isPacket(quint32 code)
{
    return code == 0xFFDC209C || code == 0xFFDC20A0;
}

QByteArray pattern(qsizetype length)
{
    QByteArray bytes(length, '\0');
    for (qsizetype i = 0; i < length; ++i)
        bytes[i] = static_cast<char>(0x40 + i % 0x40);
    return bytes;
}

} // namespace

class tst_Commands : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void cleanupTestCase();

    void everyCommandOfTheDriverHasAnExample();
    void makesOneExactRequestAndGivesTheAnswer_data() { addCommandRows(); }
    void makesOneExactRequestAndGivesTheAnswer();
    void aFailingDriverIsAskedOnceAndNothingIsUndone_data();
    void aFailingDriverIsAskedOnceAndNothingIsUndone();
    void withoutAnOpenDeviceNothingIsSent_data() { addCommandRows(); }
    void withoutAnOpenDeviceNothingIsSent();
    void afterUnpluggingEveryCommandFailsWithNotConnected_data() { addCommandRows(); }
    void afterUnpluggingEveryCommandFailsWithNotConnected();
    void waitsForALateAnswer_data() { addCommandRows(); }
    void waitsForALateAnswer();

    void setMicVolumeAfterAFailedOpenReturnsTrueAndSendsNothing();
    void upgradeFirmwareAfterAFailedOpenReturnsFalseAndSendsNothing();
    void everyPacketCommandReturnsTrueThoughTheDriverRejectsTheCode();
    void aPacketTheDeviceDoesNotUnderstandIsSentAsItIs();
    void getSampleRateOnAFailingDriverReturnsZero();
    void getDevicePidOnAFailingDriverLeavesTheVariable();

    void settersSendLittleEndianNumbers_data();
    void settersSendLittleEndianNumbers();
    void gettersGiveAnyNumber_data();
    void gettersGiveAnyNumber();
    void gettersOfferAZeroedBufferOfTheirOwn();
    void getBufferSizeLogsTheAddressOfTheVariable();

    void packetsHaveExactlyTheseBytes_data();
    void packetsHaveExactlyTheseBytes();
    void packetsEndInThirtyZeroBytesWhateverTheCommand();

    void theMixerBlockArrivesWholeAndUncopied();
    void theMixerBlockIsSentWholeForASingleChange();
    void theMeterRecordIsFilledInPlace();

    void vendorRequestMakesTheReplyThirtyTwoBytes_data();
    void vendorRequestMakesTheReplyThirtyTwoBytes();
    void vendorRequestSendsTheRequestWithItsOwnLength_data();
    void vendorRequestSendsTheRequestWithItsOwnLength();

    void getFirmwareVersionCopiesUpToItsCapacity_data();
    void getFirmwareVersionCopiesUpToItsCapacity();
    void getFirmwareVersionTakesAnyByte();
    void getFirmwareVersionEndsItsComplaintAndFlushes();

private:
    HANDLE open();
    static void addCommandRows();
    static const DriverCommand &fetchCommand();
    QByteArray bytesOfLastRequest();

    TestSimulator m_simulator;
    std::unique_ptr<VesmoraIoControl> m_device;
    int m_faults = 0;
};

void tst_Commands::init()
{
    QVERIFY2(m_simulator.reset() && prepareAnswers(m_simulator),
             qPrintable(m_simulator.errorString()));
    m_device = std::make_unique<VesmoraIoControl>();
}

void tst_Commands::cleanup()
{
    m_device.reset();
    QTRY_COMPARE(m_simulator.state().openHandles, 0u);
}

void tst_Commands::cleanupTestCase()
{
    qInfo("%d faults injected", m_faults);
}

/// Plugs an RX1 in, opens it and forgets what the record says of that. Returns its handle.
HANDLE tst_Commands::open()
{
    const bool isPlugged = m_simulator.plug(VESMORA_PID_RX1);
    const Opening opening = openDevice(*m_device);
    if (!isPlugged || !opening.result || !m_simulator.clearRecord())
        qFatal("There is no device to talk to: %s", qPrintable(m_simulator.errorString()));
    return opening.handle;
}

void tst_Commands::addCommandRows()
{
    QTest::addColumn<int>("index");
    for (int i = 0; i < driverCommands().size(); ++i)
        QTest::newRow(qPrintable(driverCommands()[i].name)) << i;
}

const DriverCommand &tst_Commands::fetchCommand()
{
    QFETCH(int, index);
    return driverCommands()[index];
}

QByteArray tst_Commands::bytesOfLastRequest()
{
    const QList<Record> records = m_simulator.record();
    return records.isEmpty() ? QByteArray() : records.constLast().bytes;
}

void tst_Commands::everyCommandOfTheDriverHasAnExample()
{
    QStringList names;
    for (quint32 i = 0; i < sim_command_count; ++i)
        names << sim_commands[i].name;
    for (quint32 i = 0; i < sim_packet_command_count; ++i)
        names << sim_packet_commands[i].name;
    for (const DriverCommand &command : driverCommands())
        names.removeAll(command.name);
    QCOMPARE(names.join(u' '), "sendPacket"); // which has a method for each opcode
}

void tst_Commands::makesOneExactRequestAndGivesTheAnswer()
{
    const DriverCommand &command = fetchCommand();
    const HANDLE handle = open();
    const Observation seen = observe(command, *m_device);
    QCOMPARE(seen.answer, command.accepted);
    QCOMPARE(textsOf(seen.calls), QStringList{command.callText()});
    QCOMPARE(seen.calls[0].handle, handle);
    QCOMPARE(seen.calls[0].inputBytes, command.input);
    QCOMPARE(seen.log, logOf(command));
    QCOMPARE(seen.outputLines, QStringList());
    QCOMPARE(seen.errorLines, QStringList());

    const QList<Record> records = m_simulator.record();
    QCOMPARE(records.size(), 1);
    const Record &record = records[0];
    QCOMPARE(record.text(), command.request);
    QCOMPARE(record.code, command.code);
    QCOMPARE(record.inputLength, quint32(command.input.size()));
    QCOMPARE(record.outputLength, command.outputLength);
    if (command.name != "sendMixerBlock")
        QCOMPARE(record.bytes, command.input);
}

void tst_Commands::aFailingDriverIsAskedOnceAndNothingIsUndone_data()
{
    QTest::addColumn<int>("index");
    QTest::addColumn<quint32>("error");
    for (int i = 0; i < driverCommands().size(); ++i) {
        for (const quint32 error : {1u, 5u, 31u, 87u, 121u, 1117u, 1167u}) {
            QTest::addRow("%s %u", qPrintable(driverCommands()[i].name), error) << i << error;
        }
    }
}

/// The second of three calls fails; the first and the third do not notice.
void tst_Commands::aFailingDriverIsAskedOnceAndNothingIsUndone()
{
    const DriverCommand &command = fetchCommand();
    QFETCH(quint32, error);
    open();
    QVERIFY(m_simulator.fail(command.name, 2, error));
    QCOMPARE(observe(command, *m_device).answer, command.accepted);
    const Observation seen = observe(command, *m_device);
    QCOMPARE(observe(command, *m_device).answer, command.accepted);
    ++m_faults;

    QCOMPARE(seen.answer, command.refused);
    QCOMPARE(textsOf(seen.calls), QStringList{command.callText()});
    QCOMPARE(seen.calls[0].error, DWORD(error));
    QCOMPARE(seen.log, QStringList());
    QCOMPARE(seen.outputLines, QStringList());
    QCOMPARE(seen.errorLines, command.complaint);
    QCOMPARE(m_simulator.requests(true),
             (QStringList{command.request, command.repeated + QString(" !%1").arg(error),
                          command.repeated}));
}

void tst_Commands::withoutAnOpenDeviceNothingIsSent()
{
    const DriverCommand &command = fetchCommand();
    QVERIFY(m_simulator.plug(VESMORA_PID_RX1));
    const Observation seen = observe(command, *m_device);
    QCOMPARE(seen.answer, command.closed);
    QCOMPARE(textsOf(seen.calls), QStringList());
    QCOMPARE(seen.log, QStringList());
    QCOMPARE(seen.outputLines, QStringList());
    QCOMPARE(seen.errorLines, command.complaint);
    QCOMPARE(m_simulator.requests(true), QStringList());
}

void tst_Commands::afterUnpluggingEveryCommandFailsWithNotConnected()
{
    const DriverCommand &command = fetchCommand();
    const HANDLE handle = open();
    QVERIFY(m_simulator.unplug());
    const Observation seen = observe(command, *m_device);
    QCOMPARE(seen.answer, command.refused);
    QCOMPARE(textsOf(seen.calls), QStringList{command.callText()});
    QCOMPARE(seen.calls[0].handle, handle);
    QCOMPARE(seen.calls[0].error, DWORD(ERROR_DEVICE_NOT_CONNECTED));
    QCOMPARE(seen.log, QStringList());
    QCOMPARE(seen.errorLines, command.complaint);
    QCOMPARE(m_simulator.state().openHandles, 1u);
    QCOMPARE(m_simulator.events(), (QStringList{"unplug", command.request + " !1167"}));
    QCOMPARE(callsOfDeleting(std::move(m_device)).value(0).handle, handle);
}

/// A command that came back early could not have the answer.
void tst_Commands::waitsForALateAnswer()
{
    const DriverCommand &command = fetchCommand();
    open();
    QVERIFY(m_simulator.delay(command.name, 50));
    const Observation seen = observe(command, *m_device);
    QCOMPARE(seen.answer, command.accepted);
    QCOMPARE(seen.calls.size(), 1);
    QCOMPARE(seen.calls[0].error, DWORD(0));
    QCOMPARE(m_simulator.requests(true), QStringList{command.request});
}

void tst_Commands::setMicVolumeAfterAFailedOpenReturnsTrueAndSendsNothing()
{
    const ConsoleCapture output(std::wcout);
    QVERIFY(!m_device->openDevice());
    QVERIFY(m_simulator.plug(VESMORA_PID_RX1));
    Win32Spy spy;
    QVERIFY(m_device->setMicVolume(1, 20));
    QCOMPARE(textsOf(spy.stop()), QStringList());
    QCOMPARE(m_simulator.requests(), QStringList());
}

void tst_Commands::upgradeFirmwareAfterAFailedOpenReturnsFalseAndSendsNothing()
{
    const ConsoleCapture output(std::wcout);
    QVERIFY(!m_device->openDevice());
    QVERIFY(m_simulator.plug(VESMORA_PID_RX1));
    Win32Spy spy;
    QVERIFY(!m_device->upgradeFirmware());
    QCOMPARE(textsOf(spy.stop()), QStringList());
    QCOMPARE(m_simulator.requests(), QStringList());
}

void tst_Commands::everyPacketCommandReturnsTrueThoughTheDriverRejectsTheCode()
{
    open();
    QVERIFY(m_simulator.fail(0xFFDC209C, 1, ERROR_INVALID_FUNCTION, 0));
    QStringList expected;
    for (const DriverCommand &command : driverCommands()) {
        if (command.code != 0xFFDC209C)
            continue;
        QCOMPARE(observe(command, *m_device).answer, "true");
        expected.append(command.request + " !1");
        ++m_faults;
    }
    QVERIFY(!expected.isEmpty());
    QCOMPARE(m_simulator.requests(), expected);
}

void tst_Commands::aPacketTheDeviceDoesNotUnderstandIsSentAsItIs()
{
    open();
    QVERIFY(m_device->setMic48V(200, 2));
    const QList<Record> records = m_simulator.record();
    QCOMPARE(records.size(), 1);
    QCOMPARE(records[0].bytes, packet("015b0002c8"));
    QCOMPARE(records[0].error, quint32(ERROR_INVALID_PARAMETER));
}

void tst_Commands::getSampleRateOnAFailingDriverReturnsZero()
{
    open();
    QVERIFY(m_simulator.fail("getSampleRate", 1, ERROR_GEN_FAILURE));
    QCOMPARE(m_device->getSampleRate(), 0u);
    QCOMPARE(m_simulator.requests(), QStringList{"getSampleRate !31"});
    ++m_faults;
}

void tst_Commands::getDevicePidOnAFailingDriverLeavesTheVariable()
{
    open();
    QVERIFY(m_simulator.fail("getDevicePid", 1, ERROR_GEN_FAILURE));
    std::uint32_t identifier = 42;
    QVERIFY(!m_device->getDevicePid(identifier));
    QCOMPARE(identifier, 42u);
    QCOMPARE(m_simulator.requests(), QStringList{"getDevicePid !31"});
    ++m_faults;
}

void tst_Commands::settersSendLittleEndianNumbers_data()
{
    QTest::addColumn<quint32>("number");
    QTest::addColumn<QByteArray>("bytes");
    QTest::newRow("0") << 0u << QByteArray::fromHex("00000000");
    QTest::newRow("1") << 1u << QByteArray::fromHex("01000000");
    QTest::newRow("44100") << 44100u << QByteArray::fromHex("44ac0000");
    QTest::newRow("every byte another") << 0x12345678u << QByteArray::fromHex("78563412");
    QTest::newRow("sign bit") << 0x80000000u << QByteArray::fromHex("00000080");
    QTest::newRow("largest") << 0xFFFFFFFFu << QByteArray::fromHex("ffffffff");
}

void tst_Commands::settersSendLittleEndianNumbers()
{
    QFETCH(quint32, number);
    QFETCH(QByteArray, bytes);
    open();
    for (const auto set :
         {&VesmoraIoControl::setSampleRate, &VesmoraIoControl::setBufferSize,
          &VesmoraIoControl::setUsbLatency, &VesmoraIoControl::setWdmChannelCount}) {
        QVERIFY((*m_device.*set)(number));
        QCOMPARE(bytesOfLastRequest(), bytes);
    }

    const SimulatorState state = m_simulator.state();
    QCOMPARE(state.sampleRate, number);
    QCOMPARE(state.bufferSize, number);
    QCOMPARE(state.usbLatency, number);
    QCOMPARE(state.wdmChannels, number);
}

void tst_Commands::gettersGiveAnyNumber_data()
{
    QTest::addColumn<quint32>("number");
    for (const quint32 number : {0u, 1u, 15u, 44100u, 0x12345678u, 0x80000000u, 0xFFFFFFFFu})
        QTest::addRow("%u", number) << number;
}

void tst_Commands::gettersGiveAnyNumber()
{
    QFETCH(quint32, number);
    open();
    QVERIFY(m_simulator.setSampleRate(number) && m_simulator.setBufferSize(number)
            && m_simulator.setUsbLatency(number) && m_simulator.setIdentifier(number));
    const LogCapture log;
    QCOMPARE(m_device->getSampleRate(), number);
    for (const auto get : {&VesmoraIoControl::getBufferSize, &VesmoraIoControl::getUsbLatency,
                           &VesmoraIoControl::getDevicePid}) {
        std::uint32_t value = ~number;
        QVERIFY((*m_device.*get)(value));
        QCOMPARE(value, number);
    }
}

void tst_Commands::gettersOfferAZeroedBufferOfTheirOwn()
{
    open();
    const LogCapture log;
    std::uint32_t value = 0xDEADBEEF;
    Win32Spy spy;
    QVERIFY(m_device->getBufferSize(value));
    QVERIFY(m_device->getUsbLatency(value));
    QVERIFY(m_device->getDevicePid(value));
    m_device->getSampleRate();
    const QList<Win32Call> calls = spy.stop();
    QCOMPARE(calls.size(), 4);
    for (const Win32Call &call : calls) {
        QVERIFY(call.output != &value);
        QCOMPARE(call.outputBefore, QByteArray(4, '\0'));
    }
}

void tst_Commands::getBufferSizeLogsTheAddressOfTheVariable()
{
    open();
    LogCapture log;
    std::uint32_t value = 0;
    QVERIFY(m_device->getBufferSize(value));
    QCOMPARE(
        log.take(),
        QStringList{QString("Buffer size: 0x%1").arg(reinterpret_cast<quintptr>(&value), 0, 16)});
    QVERIFY(m_simulator.fail("getBufferSize", 1, ERROR_GEN_FAILURE));
    QVERIFY(!m_device->getBufferSize(value));
    QCOMPARE(log.take(), QStringList());
    ++m_faults;
}

using PacketCall = bool (*)(VesmoraIoControl &);
Q_DECLARE_METATYPE(PacketCall)

template <auto method, auto... arguments> bool sends(VesmoraIoControl &device)
{
    return (device.*method)(arguments...);
}

void tst_Commands::packetsHaveExactlyTheseBytes_data()
{
    using D = VesmoraIoControl;
    constexpr int lowest = -32768;
    QTest::addColumn<PacketCall>("call");
    QTest::addColumn<QByteArray>("bytes");
    const auto row = [](const char *name, PacketCall call, const char *beginning) {
        QTest::newRow(name) << call << packet(beginning);
    };
    row("out volume 1 100", sends<&D::setOutVolume, 1, 100>, "01030002016400");
    row("out volume 2 0", sends<&D::setOutVolume, 2, 0>, "01030002020000");
    row("out volume 5 -1", sends<&D::setOutVolume, 5, -1>, "0103000205ffff");
    row("out volume 6 256", sends<&D::setOutVolume, 6, 256>, "01030002060001");
    row("out volume 255 highest", sends<&D::setOutVolume, 255, 32767>, "01030002ffff7f");
    row("out volume 0 lowest", sends<&D::setOutVolume, 0, lowest>, "01030002000080");
    row("mic volume 1 -10", sends<&D::setMicVolume, 1, -10>, "0107000201f6ff");
    row("mic volume 2 -1", sends<&D::setMicVolume, 2, -1>, "0107000202ffff");
    row("mic volume 1 140", sends<&D::setMicVolume, 1, 140>, "01070002018c00");
    row("mic volume 1 highest", sends<&D::setMicVolume, 1, 32767>, "0107000201ff7f");
    row("mic volume 1 lowest", sends<&D::setMicVolume, 1, lowest>, "01070002010080");
    row("20 dB 1 on", sends<&D::setMic20dB, 1, 1>, "015a000101");
    row("20 dB 2 off", sends<&D::setMic20dB, 2, 0>, "015a000002");
    row("48 V 1 on", sends<&D::setMic48V, 1, 1>, "015b000101");
    row("48 V 2 off", sends<&D::setMic48V, 2, 0>, "015b000002");
    row("instrument 1 on", sends<&D::switchMicInstruction, 1, 1>, "0164000101");
    row("instrument 2 off", sends<&D::switchMicInstruction, 2, 0>, "0164000002");
    row("OTG off", sends<&D::setOtgOff>, "015e");
    row("OTG on", sends<&D::setOtgOn>, "015f");
    row("upgrade", sends<&D::upgradeFirmware>, "0160");
}

void tst_Commands::packetsHaveExactlyTheseBytes()
{
    QFETCH(PacketCall, call);
    QFETCH(QByteArray, bytes);
    open();
    QVERIFY(call(*m_device));
    const QList<Record> records = m_simulator.record();
    QCOMPARE(records.size(), 1);
    QCOMPARE(records[0].code, 0xFFDC209Cu);
    QCOMPARE(records[0].inputLength, 37u);
    QCOMPARE(records[0].outputLength, 0u);
    QCOMPARE(records[0].bytes.toHex(' '), bytes.toHex(' '));
    QCOMPARE(records[0].error, 0u);
}

void tst_Commands::packetsEndInThirtyZeroBytesWhateverTheCommand()
{
    open();
    int sent = 0;
    for (const DriverCommand &command : driverCommands()) {
        observe(command, *m_device);
        sent += isPacket(command.code) ? 1 : 0;
    }
    int packets = 0;
    for (const Record &record : m_simulator.record()) {
        if (!isPacket(record.code))
            continue;
        QCOMPARE(record.bytes.size(), 37);
        QCOMPARE(record.bytes.sliced(7), QByteArray(30, '\0'));
        ++packets;
    }
    QCOMPARE(packets, sent);
}

void tst_Commands::theMixerBlockArrivesWholeAndUncopied()
{
    open();
    QList<double> values;
    for (int i = 0; i < 8288; ++i)
        values.append(i + 0.25);
    MixerBlock block;
    std::memcpy(&block, values.constData(), sizeof block);
    Win32Spy spy;
    QVERIFY(m_device->sendMixerBlock(block));
    const QList<Win32Call> calls = spy.stop();
    QCOMPARE(textsOf(calls), QStringList{Win32Spy::commandText(0xFFDC2040, 66304, 0)});
    QCOMPARE(calls[0].input, static_cast<const void *>(&block));
    QCOMPARE(m_simulator.mixerBlock(), values);
}

void tst_Commands::theMixerBlockIsSentWholeForASingleChange()
{
    open();
    MixerBlock block{};
    QVERIFY(m_device->sendMixerBlock(block));
    block.matrix[255][31] = -0.5;
    QVERIFY(m_device->sendMixerBlock(block));
    const QList<Record> records = m_simulator.record();
    QCOMPARE(records.size(), 2);
    QCOMPARE(records[0].text(), "sendMixerBlock");
    QCOMPARE(records[1].text(), "sendMixerBlock (255,31)=-0.5");
    QCOMPARE(records[1].changes[0].index, 8191);
    QCOMPARE(records[0].inputLength, 66304u);
    QCOMPARE(records[1].inputLength, 66304u);
}

void tst_Commands::theMeterRecordIsFilledInPlace()
{
    open();
    QMap<int, qint32> levels;
    for (int i = 0; i < 192; ++i)
        levels.insert(i, (i % 2 == 0 ? 1 : -1) * (1 + i * 11000000));
    QVERIFY(m_simulator.setMeters(levels));
    MeterRecord record{};
    Win32Spy spy;
    QVERIFY(m_device->readMeterData(record));
    const QList<Win32Call> calls = spy.stop();
    QCOMPARE(textsOf(calls), QStringList{Win32Spy::commandText(0xFFDC2074, 0, 768)});
    QCOMPARE(calls[0].output, static_cast<const void *>(&record));
    QCOMPARE(QList<qint32>(std::begin(record.levels), std::end(record.levels)), levels.values());
}

void tst_Commands::vendorRequestMakesTheReplyThirtyTwoBytes_data()
{
    QTest::addColumn<int>("length");
    QTest::addColumn<bool>("driverFails");
    for (const int length : {0, 1, 10, 31, 32, 33, 64, 1000}) {
        QTest::addRow("%d", length) << length << false;
        QTest::addRow("%d, the driver fails", length) << length << true;
    }
}

void tst_Commands::vendorRequestMakesTheReplyThirtyTwoBytes()
{
    QFETCH(int, length);
    QFETCH(bool, driverFails);
    open();
    if (driverFails) {
        QVERIFY(m_simulator.fail("vendorRequest", 1, ERROR_GEN_FAILURE));
        ++m_faults;
    }
    const QByteArray request = packet("0165");
    const QByteArray before = pattern(length);
    std::vector<std::uint8_t> reply(before.begin(), before.end());
    Win32Spy spy;
    QCOMPARE(m_device->vendorRequest({request.begin(), request.end()}, reply), !driverFails);
    const QList<Win32Call> calls = spy.stop();
    QCOMPARE(textsOf(calls), QStringList{Win32Spy::commandText(0xFFDC20A0, 37, 32)});
    // What was there stays, what is new is zero, until the device answers.
    const QByteArray offered = before.first(std::min(length, 32)).leftJustified(32, '\0');
    QCOMPARE(calls[0].outputBefore.toHex(), offered.toHex());
    QCOMPARE(calls[0].output, static_cast<const void *>(reply.data()));
    const QByteArray expected =
        driverFails ? offered : QByteArray("2025093001").leftJustified(32, '\0');
    QCOMPARE(
        QByteArray(reinterpret_cast<const char *>(reply.data()), qsizetype(reply.size())).toHex(),
        expected.toHex());
}

void tst_Commands::vendorRequestSendsTheRequestWithItsOwnLength_data()
{
    QTest::addColumn<QByteArray>("request");
    QTest::addColumn<QString>("line");
    QTest::newRow("empty") << QByteArray() << "vendorRequest !24";
    QTest::newRow("1 byte") << QByteArray(1, '\1') << "vendorRequest <1 bytes> !24";
    QTest::newRow("a byte short") << packet("0165").chopped(1) << "vendorRequest <36 bytes> !24";
    QTest::newRow("a byte more") << packet("0165") + '\0' << "vendorRequest <38 bytes> !24";
    QTest::newRow("another opcode") << packet("0166") << "vendorRequest 0x66 !1";
    QTest::newRow("the version") << packet("0165") << "getFirmwareVersion";
}

void tst_Commands::vendorRequestSendsTheRequestWithItsOwnLength()
{
    QFETCH(QByteArray, request);
    QFETCH(QString, line);
    open();
    std::vector<std::uint8_t> reply;
    const bool isVersion = line == "getFirmwareVersion";
    QCOMPARE(m_device->vendorRequest({request.begin(), request.end()}, reply), isVersion);
    QCOMPARE(reply.size(), std::size_t(32));
    const QList<Record> records = m_simulator.record();
    QCOMPARE(records.size(), 1);
    QCOMPARE(records[0].text(), line);
    QCOMPARE(records[0].inputLength, quint32(request.size()));
    QCOMPARE(records[0].outputLength, 32u);
    QCOMPARE(records[0].bytes, request);
}

void tst_Commands::getFirmwareVersionCopiesUpToItsCapacity_data()
{
    QTest::addColumn<quint32>("capacity");
    QTest::addColumn<int>("copied");
    QTest::newRow("0") << 0u << 0;
    QTest::newRow("1") << 1u << 1;
    QTest::newRow("4") << 4u << 4;
    QTest::newRow("9") << 9u << 9;
    QTest::newRow("10") << 10u << 10;
    QTest::newRow("11") << 11u << 10;
    QTest::newRow("32") << 32u << 10;
    QTest::newRow("255") << 255u << 10;
    QTest::newRow("256") << 256u << 10;
    QTest::newRow("largest") << 0xFFFFFFFFu << 10;
}

void tst_Commands::getFirmwareVersionCopiesUpToItsCapacity()
{
    QFETCH(quint32, capacity);
    QFETCH(int, copied);
    open();
    std::vector<std::uint8_t> version(40, 0xEE);
    QVERIFY(m_device->getFirmwareVersion(version.data(), capacity));
    const QByteArray expected =
        QByteArray("2025093001").first(copied) + QByteArray(40 - copied, '\xEE');
    QCOMPARE(QByteArray(reinterpret_cast<const char *>(version.data()), 40).toHex(),
             expected.toHex());
    QCOMPARE(m_simulator.requests(), QStringList{"getFirmwareVersion"});
}

void tst_Commands::getFirmwareVersionTakesAnyByte()
{
    const QByteArray firmware = QByteArray::fromHex("00ff01807f0a0d00fe20");
    QVERIFY(m_simulator.setFirmware(firmware));
    open();
    QByteArray version(10, '\xEE');
    QVERIFY(m_device->getFirmwareVersion(reinterpret_cast<std::uint8_t *>(version.data()), 10));
    QCOMPARE(version.toHex(), firmware.toHex());
}

void tst_Commands::getFirmwareVersionEndsItsComplaintAndFlushes()
{
    std::uint8_t version[10];
    const ConsoleCapture errors(std::cerr);
    QVERIFY(!m_device->getFirmwareVersion(version, sizeof version));
    QCOMPARE(errors.lines(), QStringList{"Failed to read firmware version from device."});
    QVERIFY(errors.endsWithALineEnd());
    QVERIFY(errors.flushes() > 0);
}

QTEST_GUILESS_MAIN(tst_Commands)
#include "tst_commands.moc"
