#include "scripteddriver.h"

#include "vesmoraiocontrol.h"

#include <utility>

namespace {

QStringList commands;
QStringList refused;

bool answer(const QString &name)
{
    commands << name;
    return !refused.contains(name);
}

bool answer(const QString &name, std::uint32_t value)
{
    commands << u"%1 %2"_qs.arg(name).arg(value);
    return !refused.contains(name);
}

} // namespace

void scripteddriver::reset()
{
    commands.clear();
    refused.clear();
}

void scripteddriver::refuse(const QString &command)
{
    refused << command;
}

QStringList scripteddriver::takeCommands()
{
    return std::exchange(commands, {});
}

VesmoraIoControl::~VesmoraIoControl() = default;

bool VesmoraIoControl::openDevice()
{
    return answer(u"open"_qs);
}

std::uint32_t VesmoraIoControl::getSampleRate()
{
    answer(u"getSampleRate"_qs);
    return 44100;
}

bool VesmoraIoControl::setSampleRate(std::uint32_t rate)
{
    return answer(u"setSampleRate"_qs, rate);
}

bool VesmoraIoControl::getBufferSize(std::uint32_t &out)
{
    out = 192;
    return answer(u"getBufferSize"_qs);
}

bool VesmoraIoControl::setBufferSize(std::uint32_t samples)
{
    return answer(u"setBufferSize"_qs, samples);
}

bool VesmoraIoControl::getUsbLatency(std::uint32_t &out)
{
    out = 8;
    return answer(u"getUsbLatency"_qs);
}

bool VesmoraIoControl::setUsbLatency(std::uint32_t frames)
{
    return answer(u"setUsbLatency"_qs, frames);
}

bool VesmoraIoControl::setWdmChannelCount(std::uint32_t channels)
{
    return answer(u"setWdmChannelCount"_qs, channels);
}

bool VesmoraIoControl::stopAudio()
{
    return answer(u"stopAudio"_qs);
}

bool VesmoraIoControl::initAudio()
{
    return answer(u"initAudio"_qs);
}

bool VesmoraIoControl::restartAudio()
{
    return answer(u"restartAudio"_qs);
}

bool VesmoraIoControl::enableUsbSlowMode()
{
    return answer(u"enableUsbSlowMode"_qs);
}

bool VesmoraIoControl::disableUsbSlowMode()
{
    return answer(u"disableUsbSlowMode"_qs);
}

bool VesmoraIoControl::setOtgOff()
{
    return answer(u"setOtgOff"_qs);
}

bool VesmoraIoControl::setOtgOn()
{
    return answer(u"setOtgOn"_qs);
}
