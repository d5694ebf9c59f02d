#include "simulatorclient.h"

#include "recorddecoder.h"
#include "simstatus.h"

namespace {

constexpr wchar_t devicePath[] = LR"(\\.\VesmoraSimControl)";
constexpr qsizetype pageSize = 0x40000;
static_assert(pageSize >= qsizetype(VESMORA_SIM_LONGEST_PAGE));

QString describe(DWORD error)
{
    const char *name = status_name(static_cast<quint32>(error));
    return name ? QStringLiteral("error %1 (%2)").arg(error).arg(QLatin1String(name))
                : QStringLiteral("error %1").arg(error);
}

quint32 opcodeOrAny(int opcode)
{
    return opcode < 0 ? VESMORA_SIM_ANY_OPCODE : static_cast<quint32>(opcode);
}

} // namespace

SimulatorClient::~SimulatorClient()
{
    close();
}

bool SimulatorClient::open()
{
    m_error = 0;
    m_errorString.clear();
    if (m_device != INVALID_HANDLE_VALUE)
        return true;
    m_device = CreateFileW(devicePath, GENERIC_READ | GENERIC_WRITE,
                           FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr, OPEN_EXISTING, 0, nullptr);
    if (m_device != INVALID_HANDLE_VALUE)
        return true;
    m_error = GetLastError();
    m_errorString = QStringLiteral("the simulator is not running: ") + describe(m_error);
    return false;
}

void SimulatorClient::close()
{
    if (m_device == INVALID_HANDLE_VALUE)
        return;
    CloseHandle(m_device);
    m_device = INVALID_HANDLE_VALUE;
}

bool SimulatorClient::transact(const char *what, quint32 code, const void *input,
                               qsizetype inputLength, void *output, qsizetype outputLength,
                               DWORD *returned)
{
    if (!open())
        return false;
    DWORD ignored = 0;
    const BOOL done = DeviceIoControl(
        m_device, code, const_cast<void *>(input), static_cast<DWORD>(inputLength), output,
        static_cast<DWORD>(outputLength), returned ? returned : &ignored, nullptr);
    if (done)
        return true;
    m_error = GetLastError();
    m_errorString = QLatin1String(what) + QStringLiteral(" failed: ") + describe(m_error);
    return false;
}

bool SimulatorClient::command(const char *what, quint32 code)
{
    return transact(what, code, nullptr, 0);
}

bool SimulatorClient::refuse(const QString &reason)
{
    m_error = 0;
    m_errorString = reason;
    return false;
}

bool SimulatorClient::plug(quint32 identifier, int bus)
{
    const VesmoraSimPlug plug{identifier, static_cast<quint32>(bus)};
    return transact("plug", VESMORA_SIM_PLUG, &plug, sizeof plug);
}

bool SimulatorClient::unplug()
{
    return command("unplug", VESMORA_SIM_UNPLUG);
}

bool SimulatorClient::reset()
{
    return command("reset", VESMORA_SIM_RESET);
}

bool SimulatorClient::setMeters(const QMap<int, qint32> &levels)
{
    QList<VesmoraSimMeter> meters;
    for (auto it = levels.cbegin(); it != levels.cend(); ++it)
        meters.append({static_cast<quint32>(it.key()), it.value()});
    return transact("setMeters", VESMORA_SIM_SET_METERS, meters.constData(),
                    meters.size() * qsizetype(sizeof(VesmoraSimMeter)));
}

bool SimulatorClient::setFirmware(const QByteArray &firmware)
{
    return transact("setFirmware", VESMORA_SIM_SET_FIRMWARE, firmware.constData(), firmware.size());
}

bool SimulatorClient::setIdentifier(quint32 identifier)
{
    return setValue(VESMORA_SIM_IDENTIFIER, identifier);
}

bool SimulatorClient::setSampleRate(quint32 rate)
{
    return setValue(VESMORA_SIM_SAMPLE_RATE, rate);
}

bool SimulatorClient::setBufferSize(quint32 samples)
{
    return setValue(VESMORA_SIM_BUFFER_SIZE, samples);
}

bool SimulatorClient::setUsbLatency(quint32 frames)
{
    return setValue(VESMORA_SIM_USB_LATENCY, frames);
}

bool SimulatorClient::setValue(VesmoraSimValue which, quint32 value)
{
    const VesmoraSimSetting setting{static_cast<quint32>(which), value};
    return transact("setValue", VESMORA_SIM_SET_VALUE, &setting, sizeof setting);
}

bool SimulatorClient::addFault(const VesmoraSimFault &fault)
{
    return transact("fail", VESMORA_SIM_ADD_FAULT, &fault, sizeof fault);
}

bool SimulatorClient::fail(quint32 code, int nth, DWORD error, int count, int opcode)
{
    if (nth < 1 || count < 0 || error > 0xFFFF)
        return refuse(QStringLiteral("fail: the number, count or error is out of range"));
    return addFault({code, opcodeOrAny(opcode), static_cast<quint32>(nth),
                     static_cast<quint32>(count), status_from_error(static_cast<quint32>(error))});
}

bool SimulatorClient::fail(const QString &command, int nth, DWORD error, int count)
{
    const auto key = findCommand(command);
    if (!key)
        return refuse(QStringLiteral("fail: no command is called ") + command);
    return fail(key->code, nth, error, count,
                key->opcode == VESMORA_SIM_ANY_OPCODE ? -1 : static_cast<int>(key->opcode));
}

bool SimulatorClient::setDelay(const VesmoraSimDelay &delay)
{
    return transact("delay", VESMORA_SIM_SET_DELAY, &delay, sizeof delay);
}

bool SimulatorClient::delay(quint32 code, int milliseconds, int opcode)
{
    if (milliseconds < 0)
        return refuse(QStringLiteral("delay: the time is out of range"));
    return setDelay({code, opcodeOrAny(opcode), static_cast<quint32>(milliseconds)});
}

bool SimulatorClient::delay(const QString &command, int milliseconds)
{
    const auto key = findCommand(command);
    if (!key)
        return refuse(QStringLiteral("delay: no command is called ") + command);
    if (milliseconds < 0)
        return refuse(QStringLiteral("delay: the time is out of range"));
    return setDelay({key->code, key->opcode, static_cast<quint32>(milliseconds)});
}

bool SimulatorClient::clearFaults()
{
    return command("clearFaults", VESMORA_SIM_CLEAR_FAULTS);
}

bool SimulatorClient::clearRecord()
{
    return command("clearRecord", VESMORA_SIM_CLEAR_RECORD);
}

QList<Record> SimulatorClient::record(quint32 from)
{
    QList<Record> records;
    QByteArray page(pageSize, Qt::Uninitialized);
    for (;;) {
        const quint32 next = records.isEmpty() ? from : records.constLast().number + 1;
        DWORD length = 0;
        if (!transact("record", VESMORA_SIM_READ_RECORD, &next, sizeof next, page.data(),
                      page.size(), &length))
            return {};
        const auto decoded = decodePage(QByteArrayView(page).first(static_cast<qsizetype>(length)));
        if (!decoded) {
            refuse(QStringLiteral("record: the simulator's answer is damaged"));
            return {};
        }
        records += decoded->records;
        if (!decoded->records.isEmpty())
            continue;
        if (decoded->lost != 0) {
            Record lost;
            lost.kind = Record::Kind::Lost;
            lost.value = decoded->lost;
            records.append(lost);
        }
        return records;
    }
}

SimulatorState SimulatorClient::state()
{
    VesmoraSimState raw{};
    if (!transact("state", VESMORA_SIM_READ_STATE, nullptr, 0, &raw, sizeof raw))
        return {};
    return SimulatorState::fromRaw(raw);
}

QList<double> SimulatorClient::mixerBlock()
{
    QList<double> values(VESMORA_SIM_MIXER_VALUES);
    if (!transact("mixerBlock", VESMORA_SIM_READ_MIXER, nullptr, 0, values.data(),
                  values.size() * qsizetype(sizeof(double))))
        return {};
    return values;
}
