#ifndef PLATFORMREMARKS_H
#define PLATFORMREMARKS_H

#include <QStringList>

/// The lines of a log without what the offscreen platform, or Wine, says about things that it
/// cannot do.
inline QStringList withoutPlatformRemarks(const QStringList &lines)
{
    QStringList rest;
    for (const QString &line : lines) {
        if (!line.startsWith(QStringLiteral("This plugin does not support "))
            && !line.startsWith(QStringLiteral("EnableNonClientDpiScaling() failed ")))
            rest << line;
    }
    return rest;
}

#endif
