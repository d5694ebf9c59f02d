#ifndef LOGTEXT_H
#define LOGTEXT_H

#include <QStringList>

/// The lines of a log with "(address)" in place of the one thing in them that no test can know: the
/// address that "Buffer size:" gives.
QStringList withoutAddresses(QStringList lines);

/// The lines of a log without what the platform says of its own accord: offscreen Qt, or Qt under
/// Wine, of what it cannot do.
QStringList withoutPlatformRemarks(QStringList lines);

#endif
