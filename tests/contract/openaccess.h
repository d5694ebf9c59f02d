#ifndef OPENACCESS_H
#define OPENACCESS_H

#include "record.h"

#include <windows.h>

/// What an open handle may be used for, as the system has it.
struct OpenAccess {
    quint32 granted = 0;
    quint32 readAndWrite = 0; ///< what it is for one that was opened for reading and writing
};

/// @p opening is the simulator's entry for the open that made the handle.
OpenAccess accessOf(HANDLE device, const Record &opening);

#endif
