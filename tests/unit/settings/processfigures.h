#ifndef PROCESSFIGURES_H
#define PROCESSFIGURES_H

#include <QtGlobal>

/// How many handles (natively: file descriptors) this process has open.
int openHandleCount();

/// How much of this process is in memory, in bytes.
qint64 residentBytes();

#endif
