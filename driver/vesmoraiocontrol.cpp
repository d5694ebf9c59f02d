#include "vesmoraiocontrol.h"

#include "devicepaths.h"

#include <QDebug>

#include <algorithm>
#include <cmath>
#include <exception>
#include <iostream>
#include <limits>

namespace {

constexpr double silenceDb = -80.0;
constexpr double maximumDb = 6.0;

CommandPacket plainPacket(std::uint8_t opcode)
{
    CommandPacket packet{};
    packet.kind = VESMORA_PACKET_KIND;
    packet.opcode = opcode;
    return packet;
}

CommandPacket switchPacket(std::uint8_t opcode, std::uint8_t channel, std::uint8_t state)
{
    CommandPacket packet = plainPacket(opcode);
    packet.argument = state;
    packet.channel = channel;
    return packet;
}

CommandPacket volumePacket(std::uint8_t opcode, std::uint8_t channel, std::int16_t value)
{
    CommandPacket packet = plainPacket(opcode);
    const auto bits = static_cast<std::uint16_t>(value);
    packet.argument = VESMORA_VOLUME_VALUE_LENGTH;
    packet.channel = channel;
    packet.valueLow = static_cast<std::uint8_t>(bits & 0xFFu);
    packet.valueHigh = static_cast<std::uint8_t>(bits >> 8);
    return packet;
}

/// Runs @p body; an exception ends here, as one line on std::cerr, and counts as a failure.
template <typename Body> bool guarded(const char *failureText, Body body)
{
    try {
        return body();
    } catch (const std::exception &error) {
        std::cerr << failureText << error.what() << std::endl;
    } catch (...) {
        std::cerr << failureText << "Unknown error" << std::endl;
    }
    return false;
}

} // namespace

VesmoraIoControl::~VesmoraIoControl()
{
    if (!isOpen())
        return;
    CloseHandle(m_device);
    m_device = INVALID_HANDLE_VALUE;
}

bool VesmoraIoControl::openDevice()
{
    for (const std::wstring &path : devicePaths) {
        const HANDLE device =
            CreateFileW(path.c_str(), GENERIC_READ | GENERIC_WRITE,
                        FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr, OPEN_EXISTING, 0, nullptr);
        if (device != INVALID_HANDLE_VALUE) {
            m_device = device;
            std::wcout << L"Open device " << path << L" success!" << std::endl;
            return true;
        }
        const DWORD error = GetLastError();
        std::wcout << L"Open device " << path << L" failed, error: " << error << std::endl;
    }
    return false;
}

bool VesmoraIoControl::transact(DWORD code, const void *input, DWORD inputLength, void *output,
                                DWORD outputLength)
{
    if (!isOpen())
        return false;
    DWORD bytesReturned = 0;
    // Windows takes the input as a mutable pointer although it only reads it.
    return DeviceIoControl(m_device, code, const_cast<void *>(input), inputLength, output,
                           outputLength, &bytesReturned, nullptr)
        != FALSE;
}

bool VesmoraIoControl::command(DWORD code)
{
    return transact(code, nullptr, 0, nullptr, 0);
}

bool VesmoraIoControl::writeValue(DWORD code, std::uint32_t value)
{
    return transact(code, &value, sizeof value, nullptr, 0);
}

bool VesmoraIoControl::readValue(DWORD code, std::uint32_t &out)
{
    std::uint32_t value = 0;
    if (!transact(code, nullptr, 0, &value, sizeof value))
        return false;
    out = value;
    return true;
}

std::uint32_t VesmoraIoControl::getSampleRate()
{
    std::uint32_t rate = 0;
    readValue(VESMORA_GET_SAMPLE_RATE, rate);
    return rate;
}

bool VesmoraIoControl::setSampleRate(std::uint32_t rate)
{
    return writeValue(VESMORA_SET_SAMPLE_RATE, rate);
}

bool VesmoraIoControl::getBufferSize(std::uint32_t &out)
{
    if (!readValue(VESMORA_GET_BUFFER_SIZE, out))
        return false;
    // The address on purpose: callers log the value themselves.
    qDebug() << "Buffer size:" << static_cast<const void *>(&out);
    return true;
}

bool VesmoraIoControl::setBufferSize(std::uint32_t samples)
{
    return writeValue(VESMORA_SET_BUFFER_SIZE, samples);
}

bool VesmoraIoControl::getUsbLatency(std::uint32_t &out)
{
    return readValue(VESMORA_GET_USB_LATENCY, out);
}

bool VesmoraIoControl::setUsbLatency(std::uint32_t frames)
{
    return writeValue(VESMORA_SET_USB_LATENCY, frames);
}

bool VesmoraIoControl::setWdmChannelCount(std::uint32_t channels)
{
    return writeValue(VESMORA_SET_WDM_CHANNEL_COUNT, channels);
}

bool VesmoraIoControl::stopAudio()
{
    return command(VESMORA_STOP_AUDIO);
}

bool VesmoraIoControl::initAudio()
{
    return command(VESMORA_INIT_AUDIO);
}

bool VesmoraIoControl::restartAudio()
{
    return command(VESMORA_RESTART_AUDIO);
}

bool VesmoraIoControl::enableUsbSlowMode()
{
    return command(VESMORA_ENABLE_USB_SLOW_MODE);
}

bool VesmoraIoControl::disableUsbSlowMode()
{
    return command(VESMORA_DISABLE_USB_SLOW_MODE);
}

bool VesmoraIoControl::getDevicePid(std::uint32_t &out)
{
    return readValue(VESMORA_GET_DEVICE_PID, out);
}

bool VesmoraIoControl::getFirmwareVersion(std::uint8_t *out, std::uint32_t capacity)
{
    return guarded("Failed to get firmware version: ", [&] {
        const CommandPacket packet = plainPacket(VESMORA_OPCODE_FIRMWARE_VERSION);
        const auto *bytes = reinterpret_cast<const std::uint8_t *>(&packet);
        std::vector<std::uint8_t> reply;
        if (!vendorRequest({bytes, bytes + sizeof packet}, reply)) {
            std::cerr << "Failed to read firmware version from device." << std::endl;
            return false;
        }
        if (reply.size() < VESMORA_FIRMWARE_VERSION_LENGTH) {
            std::cerr << "Invalid firmware version response size." << std::endl;
            return false;
        }
        std::copy_n(reply.begin(),
                    std::min<std::uint32_t>(capacity, VESMORA_FIRMWARE_VERSION_LENGTH), out);
        return true;
    });
}

bool VesmoraIoControl::sendMixerBlock(const MixerBlock &block)
{
    return transact(VESMORA_SEND_MIXER_BLOCK, &block, sizeof block, nullptr, 0);
}

bool VesmoraIoControl::readMeterData(MeterRecord &record)
{
    return transact(VESMORA_READ_METER_DATA, nullptr, 0, &record, sizeof record);
}

/// Sends @p packet and returns true whatever the driver answers, also when no device is open.
/// @p failureText begins the line about an exception, after which it returns false.
bool VesmoraIoControl::sendPacket(const CommandPacket &packet, const char *failureText)
{
    return guarded(failureText, [&] {
        transact(VESMORA_SEND_PACKET, &packet, sizeof packet, nullptr, 0);
        return true;
    });
}

bool VesmoraIoControl::setOutVolume(std::uint8_t channel, std::int16_t value)
{
    return sendPacket(volumePacket(VESMORA_OPCODE_OUT_VOLUME, channel, value),
                      "Failed to set out volume: ");
}

bool VesmoraIoControl::setMicVolume(std::uint8_t channel, std::int16_t value)
{
    return sendPacket(volumePacket(VESMORA_OPCODE_MIC_VOLUME, channel, value),
                      "Failed to set mic volume: ");
}

bool VesmoraIoControl::setMic20dB(std::uint8_t channel, std::uint8_t state)
{
    return sendPacket(switchPacket(VESMORA_OPCODE_MIC_20DB, channel, state),
                      "Failed to set mic 20dB: ");
}

bool VesmoraIoControl::setMic48V(std::uint8_t channel, std::uint8_t state)
{
    return sendPacket(switchPacket(VESMORA_OPCODE_MIC_48V, channel, state),
                      "Failed to set mic 48V: ");
}

bool VesmoraIoControl::switchMicInstruction(std::uint8_t channel, std::uint8_t state)
{
    return sendPacket(switchPacket(VESMORA_OPCODE_MIC_INSTRUMENT, channel, state),
                      "Failed to switch mic instruction: ");
}

bool VesmoraIoControl::setOtgOff()
{
    return sendPacket(plainPacket(VESMORA_OPCODE_OTG_OFF), "Failed to set OTG Off: ");
}

bool VesmoraIoControl::setOtgOn()
{
    return sendPacket(plainPacket(VESMORA_OPCODE_OTG_ON), "Failed to set OTG On: ");
}

bool VesmoraIoControl::upgradeFirmware()
{
    return isOpen()
        && sendPacket(plainPacket(VESMORA_OPCODE_UPGRADE_FIRMWARE), "Failed to upgrade firmware: ");
}

bool VesmoraIoControl::vendorRequest(const std::vector<std::uint8_t> &request,
                                     std::vector<std::uint8_t> &reply)
{
    if (!isOpen())
        return false;
    reply.resize(sizeof(VendorReply));
    return transact(VESMORA_VENDOR_REQUEST, request.data(), static_cast<DWORD>(request.size()),
                    reply.data(), static_cast<DWORD>(reply.size()));
}

double VesmoraIoControl::dbToGain(double db)
{
    const double level = std::clamp(db, silenceDb, maximumDb);
    return level == silenceDb ? 0.0 : std::pow(10.0, level / 20.0);
}

double VesmoraIoControl::peakToDb(std::int32_t peak)
{
    // Negated with wrap-around: the most negative value stays negative and gives NaN.
    const auto bits = static_cast<std::uint32_t>(peak);
    const auto magnitude = static_cast<std::int32_t>(peak < 0 ? 0u - bits : bits);
    constexpr double fullScale = std::numeric_limits<std::int32_t>::max();
    return 20.0 * std::log10(magnitude / fullScale);
}
