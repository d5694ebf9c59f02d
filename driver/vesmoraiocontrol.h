#ifndef VESMORAIOCONTROL_H
#define VESMORAIOCONTROL_H

#include "vesmoracontract.h"

#include <windows.h>

#include <cstdint>
#include <vector>

/// One connection to the audio driver. Every command is one synchronous DeviceIoControl request.
///
/// Construct, call openDevice() once, issue commands, delete. Each owner has a connection of its
/// own; the driver allows any number at a time. GUI thread only.
///
/// Unless stated otherwise a command returns whether the driver accepted it, and false without
/// asking the driver when no device is open. Nothing is retried and nothing throws.
class VesmoraIoControl
{
public:
    VesmoraIoControl() = default;
    ~VesmoraIoControl();
    VesmoraIoControl(const VesmoraIoControl &) = delete;
    VesmoraIoControl &operator=(const VesmoraIoControl &) = delete;

    /// Opens the first of devicePaths that answers and reports each attempt on std::wcout.
    /// Returns false when none does. Must not be called while a device is open.
    bool openDevice();

    /// The sample rate in Hz, or 0 when the driver fails.
    std::uint32_t getSampleRate();
    /// @p rate is in Hz.
    bool setSampleRate(std::uint32_t rate);
    /// The audio buffer in samples; @p out keeps its value on failure.
    bool getBufferSize(std::uint32_t &out);
    bool setBufferSize(std::uint32_t samples);
    /// The USB latency in USB frames; @p out keeps its value on failure.
    bool getUsbLatency(std::uint32_t &out);
    bool setUsbLatency(std::uint32_t frames);
    /// The number of channels that Windows' own audio sees.
    bool setWdmChannelCount(std::uint32_t channels);

    // The audio engine: stopped before a setting changes, then restarted, or set up anew.
    bool stopAudio();
    bool initAudio();
    bool restartAudio();
    bool enableUsbSlowMode();
    bool disableUsbSlowMode();

    /// The product identifier (VESMORA_PID_...); @p out keeps its value on failure.
    bool getDevicePid(std::uint32_t &out);
    /// Copies the version's ten bytes, or the first @p capacity of them, into @p out.
    /// Failures are also reported on std::cerr.
    bool getFirmwareVersion(std::uint8_t *out, std::uint32_t capacity);

    /// Replaces the driver's whole routing and gain matrix (linear gains).
    bool sendMixerBlock(const MixerBlock &block);
    /// Reads the current peaks; see peakToDb().
    bool readMeterData(MeterRecord &record);

    // The packet commands. Channels are 1-based, a state is 0 (off) or 1 (on), values are in the
    // device's own units. The driver's answer is not examined: they return true whatever it was,
    // also when no device is open. Only upgradeFirmware() returns false then.
    bool setOutVolume(std::uint8_t channel, std::int16_t value);
    bool setMicVolume(std::uint8_t channel, std::int16_t value);
    bool setMic20dB(std::uint8_t channel, std::uint8_t state);
    bool setMic48V(std::uint8_t channel, std::uint8_t state);
    bool switchMicInstruction(std::uint8_t channel, std::uint8_t state);
    bool setOtgOff();
    bool setOtgOn();
    bool upgradeFirmware();

    /// Sends @p request as it is; @p reply is made 32 bytes long and filled by the device.
    bool vendorRequest(const std::vector<std::uint8_t> &request, std::vector<std::uint8_t> &reply);

    /// The linear gain of a level clamped to -80..+6 dB; -80 dB is silence, exactly 0.0.
    static double dbToGain(double db);
    /// The level in dBFS of a signed peak: minus infinity for 0, NaN for the most negative value.
    static double peakToDb(std::int32_t peak);

private:
    bool isOpen() const { return m_device != INVALID_HANDLE_VALUE; }
    bool transact(DWORD code, const void *input, DWORD inputLength, void *output,
                  DWORD outputLength);
    bool command(DWORD code);
    bool writeValue(DWORD code, std::uint32_t value);
    bool readValue(DWORD code, std::uint32_t &out);
    bool sendPacket(const CommandPacket &packet, const char *failureText);

    HANDLE m_device = INVALID_HANDLE_VALUE;
};

#endif
