#include "refusingdriver.h"

#include "vesmoraiocontrol.h"

#include <QMap>

#include <utility>

namespace {

QStringList commands;
constexpr int allOfThem = 0;
/// Which one of a command to refuse, counted from the next.
QMap<QString, int> refusals;

bool isRefused(const QString &name)
{
    const auto refusal = refusals.find(name);
    if (refusal == refusals.end())
        return false;
    if (*refusal == allOfThem)
        return true;
    if (--*refusal > 0)
        return false;
    refusals.erase(refusal);
    return true;
}

template <typename... Arguments> bool answer(const QString &name, Arguments... arguments)
{
    commands << QStringList{name, QString::number(int(arguments))...}.join(' ');
    return !isRefused(name);
}

} // namespace

void refusingdriver::reset()
{
    commands.clear();
    refusals.clear();
}

void refusingdriver::refuse(const QString &command, int nth)
{
    refusals.insert(command, nth);
}

void refusingdriver::refuseAll(const QString &command)
{
    refusals.insert(command, allOfThem);
}

QStringList refusingdriver::takeCommands()
{
    return std::exchange(commands, {});
}

VesmoraIoControl::~VesmoraIoControl()
{
    answer("close");
}

bool VesmoraIoControl::openDevice()
{
    return answer("open");
}

std::uint32_t VesmoraIoControl::getSampleRate()
{
    answer("getSampleRate");
    return 44100;
}

bool VesmoraIoControl::setSampleRate(std::uint32_t rate)
{
    return answer("setSampleRate", rate);
}

bool VesmoraIoControl::getBufferSize(std::uint32_t &out)
{
    out = 192;
    return answer("getBufferSize");
}

bool VesmoraIoControl::setBufferSize(std::uint32_t samples)
{
    return answer("setBufferSize", samples);
}

bool VesmoraIoControl::getUsbLatency(std::uint32_t &out)
{
    out = 8;
    return answer("getUsbLatency");
}

bool VesmoraIoControl::setUsbLatency(std::uint32_t frames)
{
    return answer("setUsbLatency", frames);
}

bool VesmoraIoControl::setWdmChannelCount(std::uint32_t channels)
{
    return answer("setWdmChannelCount", channels);
}

bool VesmoraIoControl::stopAudio()
{
    return answer("stopAudio");
}

bool VesmoraIoControl::initAudio()
{
    return answer("initAudio");
}

bool VesmoraIoControl::restartAudio()
{
    return answer("restartAudio");
}

bool VesmoraIoControl::enableUsbSlowMode()
{
    return answer("enableUsbSlowMode");
}

bool VesmoraIoControl::disableUsbSlowMode()
{
    return answer("disableUsbSlowMode");
}

bool VesmoraIoControl::sendMixerBlock(const MixerBlock &)
{
    return answer("sendMixerBlock");
}

bool VesmoraIoControl::readMeterData(MeterRecord &)
{
    return answer("readMeterData");
}

bool VesmoraIoControl::setOutVolume(std::uint8_t channel, std::int16_t value)
{
    return answer("setOutVolume", channel, value);
}

bool VesmoraIoControl::setMicVolume(std::uint8_t channel, std::int16_t value)
{
    return answer("setMicVolume", channel, value);
}

bool VesmoraIoControl::setMic20dB(std::uint8_t channel, std::uint8_t state)
{
    return answer("setMic20dB", channel, state);
}

bool VesmoraIoControl::setMic48V(std::uint8_t channel, std::uint8_t state)
{
    return answer("setMic48V", channel, state);
}

bool VesmoraIoControl::switchMicInstruction(std::uint8_t channel, std::uint8_t state)
{
    return answer("switchMicInstruction", channel, state);
}

bool VesmoraIoControl::setOtgOff()
{
    return answer("setOtgOff");
}

bool VesmoraIoControl::setOtgOn()
{
    return answer("setOtgOn");
}

double VesmoraIoControl::dbToGain(double)
{
    return 0.5;
}

double VesmoraIoControl::peakToDb(std::int32_t)
{
    return -12.0;
}
