#ifndef OPENING_H
#define OPENING_H

#include "vesmoraiocontrol.h"
#include "win32spy.h"

#include <memory>

/// One openDevice() and all that was seen of it.
struct Opening {
    bool result = false;
    QList<Win32Call> calls;
    HANDLE handle = INVALID_HANDLE_VALUE; ///< what the last open returned
    QStringList lines;                    ///< on std::wcout
    int flushes = 0;
    bool isEnded = false; ///< whether the last line was
    QStringList errorLines;
    QStringList log;
};

Opening openDevice(VesmoraIoControl &device);

/// The calls that a command makes, stopAudio(): none on a closed device.
QList<Win32Call> callsOfACommand(VesmoraIoControl &device);

/// The calls that are made while the object is deleted.
QList<Win32Call> callsOfDeleting(std::unique_ptr<VesmoraIoControl> device);

QString busPath(int bus);
/// What openDevice() writes when the busses before @p bus do not exist; 16 for all of them.
QStringList failureLines(int bus);
QString successLine(int bus);
/// Win32Call::text of the opens of busses 0 to @p last.
QStringList openTexts(int last);

#endif
