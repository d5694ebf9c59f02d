#include "drivercommands.h"

#include "simulatorclient.h"
#include "vesmoraiocontrol.h"
#include "win32spy.h"

#include <cstring>
#include <limits>

namespace {

using Device = VesmoraIoControl;

constexpr std::uint32_t untouched = 0xDEADBEEF; // 3735928559
constexpr char firmware[] = "2025093001";

QString word(bool result)
{
    return result ? "true" : "false";
}

QString hexOf(const void *bytes, std::size_t length)
{
    return QString::fromLatin1(
        QByteArray(static_cast<const char *>(bytes), qsizetype(length)).toHex());
}

template <auto method, auto... arguments> QString run(Device &device)
{
    return word((device.*method)(arguments...));
}

QString runGetSampleRate(Device &device)
{
    return QString::number(device.getSampleRate());
}

template <auto method> QString runGetter(Device &device)
{
    std::uint32_t value = untouched;
    const bool result = (device.*method)(value);
    return word(result) + u' ' + QString::number(value);
}

QString runSendMixerBlock(Device &device)
{
    static MixerBlock block{};
    block.matrix[64][0] = 1.0;
    block.outputGains[95] = 0.5;
    return word(device.sendMixerBlock(block));
}

QString runReadMeterData(Device &device)
{
    MeterRecord record;
    std::fill(std::begin(record.levels), std::end(record.levels), 7);
    const bool result = device.readMeterData(record);
    return QString("%1 %2 %3 %4")
        .arg(word(result))
        .arg(record.levels[0])
        .arg(record.levels[1])
        .arg(record.levels[VESMORA_METER_LEVELS - 1]);
}

QString runVendorRequest(Device &device)
{
    const QByteArray request = packet("0165");
    std::vector<std::uint8_t> reply(3, 0xAB);
    const bool result = device.vendorRequest({request.begin(), request.end()}, reply);
    return word(result) + u' ' + hexOf(reply.data(), reply.size());
}

QString runGetFirmwareVersion(Device &device)
{
    std::uint8_t version[12];
    std::memset(version, 0xEE, sizeof version);
    const bool result = device.getFirmwareVersion(version, VESMORA_FIRMWARE_VERSION_LENGTH);
    return word(result) + u' ' + hexOf(version, sizeof version);
}

QByteArray mixerInput()
{
    QByteArray bytes(66304, '\0');
    // 1.0 and 0.5 as little-endian doubles
    bytes.replace(64 * 32 * 8, 8, QByteArray::fromHex("000000000000f03f"));
    bytes.replace((8192 + 95) * 8, 8, QByteArray::fromHex("000000000000e03f"));
    return bytes;
}

DriverCommand numberReader(const char *name, QString (*run)(Device &), quint32 code,
                           const char *answer)
{
    DriverCommand command;
    command.name = command.request = command.repeated = QString::fromLatin1(name);
    command.run = run;
    command.code = code;
    command.outputLength = 4;
    command.accepted = QString("true ") + answer;
    command.refused = command.closed = "false 3735928559";
    return command;
}

DriverCommand sampleRateReader()
{
    DriverCommand command = numberReader("getSampleRate", runGetSampleRate, 0xFFDC2020, "");
    command.accepted = "48000";
    command.refused = command.closed = "0";
    return command;
}

/// One whose whole answer is its result.
DriverCommand plainCommand(const char *name, QString (*run)(Device &), quint32 code,
                           const char *inputHex = "", const char *argument = "")
{
    DriverCommand command;
    command.name = command.request = QString::fromLatin1(name);
    if (*argument)
        command.request.append(' ').append(argument);
    command.repeated = command.request;
    command.run = run;
    command.code = code;
    command.input = QByteArray::fromHex(inputHex);
    command.accepted = "true";
    command.refused = command.closed = "false";
    return command;
}

DriverCommand packetCommand(const char *name, QString (*run)(Device &), const char *beginning,
                            const char *arguments = "")
{
    DriverCommand command = plainCommand(name, run, 0xFFDC209C, "", arguments);
    command.input = packet(beginning);
    command.refused = command.closed = "true";
    return command;
}

/// The only packet command that admits that no device is open.
DriverCommand upgradeCommand()
{
    DriverCommand command = packetCommand("upgradeFirmware", run<&Device::upgradeFirmware>, "0160");
    command.closed = "false";
    return command;
}

DriverCommand mixerCommand()
{
    DriverCommand command =
        plainCommand("sendMixerBlock", runSendMixerBlock, 0xFFDC2040, "", "(64,0)=1 gain[95]=0.5");
    command.repeated = command.name;
    command.input = mixerInput();
    return command;
}

DriverCommand meterCommand()
{
    DriverCommand command = plainCommand("readMeterData", runReadMeterData, 0xFFDC2074);
    command.outputLength = 768;
    command.accepted = "true 1000000 -1 -2147483648";
    command.refused = command.closed = "false 7 7 7";
    return command;
}

DriverCommand vendorCommand()
{
    DriverCommand command = plainCommand("vendorRequest", runVendorRequest, 0xFFDC20A0);
    command.request = command.repeated = "getFirmwareVersion";
    command.input = packet("0165");
    command.outputLength = 32;
    command.accepted = "true 3230323530393330303100000000000000000000000000000000000000000000";
    command.refused = "false ababab0000000000000000000000000000000000000000000000000000000000";
    command.closed = "false ababab";
    return command;
}

DriverCommand firmwareCommand()
{
    DriverCommand command = vendorCommand();
    command.name = "getFirmwareVersion";
    command.run = runGetFirmwareVersion;
    command.accepted = "true 32303235303933303031eeee";
    command.refused = command.closed = "false eeeeeeeeeeeeeeeeeeeeeeee";
    command.complaint = QStringList{"Failed to read firmware version from device."};
    return command;
}

QList<DriverCommand> listCommands()
{
    using D = Device;
    return {
        sampleRateReader(),
        plainCommand("setSampleRate", run<&D::setSampleRate, 192000u>, 0xFFDC2038, "00ee0200",
                     "192000"),
        mixerCommand(),
        plainCommand("setBufferSize", run<&D::setBufferSize, 512u>, 0xFFDC2044, "00020000", "512"),
        numberReader("getBufferSize", runGetter<&D::getBufferSize>, 0xFFDC2048, "192"),
        numberReader("getUsbLatency", runGetter<&D::getUsbLatency>, 0xFFDC204C, "6"),
        plainCommand("setUsbLatency", run<&D::setUsbLatency, 0x01020304u>, 0xFFDC2050, "04030201",
                     "16909060"),
        meterCommand(),
        plainCommand("stopAudio", run<&D::stopAudio>, 0xFFDC2078),
        plainCommand("initAudio", run<&D::initAudio>, 0xFFDC207C),
        plainCommand("restartAudio", run<&D::restartAudio>, 0xFFDC2080),
        numberReader("getDevicePid", runGetter<&D::getDevicePid>, 0xFFDC2084, "1"),
        plainCommand("setWdmChannelCount", run<&D::setWdmChannelCount, 4294967295u>, 0xFFDC2088,
                     "ffffffff", "4294967295"),
        plainCommand("enableUsbSlowMode", run<&D::enableUsbSlowMode>, 0xFFDC2090),
        plainCommand("disableUsbSlowMode", run<&D::disableUsbSlowMode>, 0xFFDC2094),
        packetCommand("setOutVolume", run<&D::setOutVolume, 1, 100>, "01030002016400", "1 100"),
        packetCommand("setMicVolume", run<&D::setMicVolume, 1, -10>, "0107000201f6ff", "1 -10"),
        packetCommand("setMic20dB", run<&D::setMic20dB, 2, 1>, "015a000102", "2 1"),
        packetCommand("setMic48V", run<&D::setMic48V, 1, 1>, "015b000101", "1 1"),
        packetCommand("setOtgOff", run<&D::setOtgOff>, "015e"),
        packetCommand("setOtgOn", run<&D::setOtgOn>, "015f"),
        upgradeCommand(),
        packetCommand("switchMicInstruction", run<&D::switchMicInstruction, 1, 1>, "0164000101",
                      "1 1"),
        vendorCommand(),
        firmwareCommand(),
    };
}

} // namespace

QString DriverCommand::callText() const
{
    return Win32Spy::commandText(code, input.size(), outputLength);
}

const QList<DriverCommand> &driverCommands()
{
    static const QList<DriverCommand> commands = listCommands();
    return commands;
}

bool prepareAnswers(SimulatorClient &simulator)
{
    return simulator.setSampleRate(48000) && simulator.setBufferSize(192)
        && simulator.setUsbLatency(6) && simulator.setFirmware(firmware)
        && simulator.setMeters(
            {{0, 1000000},
             {1, -1},
             {VESMORA_METER_LEVELS - 1, std::numeric_limits<std::int32_t>::min()}});
}

QByteArray packet(const char *beginning)
{
    return QByteArray::fromHex(beginning).leftJustified(sizeof(CommandPacket), '\0');
}
