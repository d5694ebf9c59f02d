#include "opening.h"

#include "consolecapture.h"
#include "logcapture.h"

#include <iostream>

Opening openDevice(VesmoraIoControl &device)
{
    Opening opening;
    const LogCapture log;
    const ConsoleCapture output(std::wcout);
    const ConsoleCapture errors(std::cerr);
    Win32Spy spy;
    opening.result = device.openDevice();
    opening.calls = spy.stop();
    opening.handle = opening.calls.constLast().handle;
    opening.lines = output.lines();
    opening.flushes = output.flushes();
    opening.isEnded = output.endsWithALineEnd();
    opening.errorLines = errors.lines();
    opening.log = log.lines();
    return opening;
}

QList<Win32Call> callsOfACommand(VesmoraIoControl &device)
{
    Win32Spy spy;
    device.stopAudio();
    return spy.stop();
}

QList<Win32Call> callsOfDeleting(std::unique_ptr<VesmoraIoControl> device)
{
    Win32Spy spy;
    device.reset();
    return spy.stop();
}

QString busPath(int bus)
{
    return QString("\\\\.\\VesmoraAudioBus%1").arg(bus);
}

QStringList failureLines(int bus)
{
    QStringList lines;
    for (int i = 0; i < bus; ++i)
        lines.append(QString("Open device %1 failed, error: 2").arg(busPath(i)));
    return lines;
}

QString successLine(int bus)
{
    return QString("Open device %1 success!").arg(busPath(bus));
}

QStringList openTexts(int last)
{
    QStringList texts;
    for (int i = 0; i <= last; ++i)
        texts.append(Win32Spy::openText(busPath(i)));
    return texts;
}
