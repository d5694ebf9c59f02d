#include "logtext.h"

#include <QRegularExpression>

#include <algorithm>

QStringList withoutAddresses(QStringList lines)
{
    static const QRegularExpression address("^(Buffer size:) 0x[0-9a-f]+$");
    return lines.replaceInStrings(address, "\\1 (address)");
}

QStringList withoutPlatformRemarks(QStringList lines)
{
    static const QStringList beginnings{"This plugin does not support ",
                                        "EnableNonClientDpiScaling() failed",
                                        "qt.qpa.windows: SetProcessDpiAwarenessContext("};
    lines.removeIf([](const QString &line) {
        return std::any_of(beginnings.cbegin(), beginnings.cend(),
                           [&](const QString &beginning) { return line.startsWith(beginning); });
    });
    return lines;
}
