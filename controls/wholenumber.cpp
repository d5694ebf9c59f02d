#include "wholenumber.h"

#include <QByteArray>

#include <algorithm>
#include <limits>

std::optional<qint64> wholeNumber(const QString &text)
{
    // Space is ASCII's alone, as everywhere in Qt's conversions of numbers.
    const QByteArray number = text.toLatin1().trimmed();
    const bool isNegative = number.startsWith('-');
    const bool hasSign = isNegative || number.startsWith('+');
    const auto digits = number.cbegin() + (hasSign ? 1 : 0);
    const auto isDigit = [](char c) { return c >= '0' && c <= '9'; };
    if (digits == number.cend() || !std::all_of(digits, number.cend(), isDigit))
        return std::nullopt;

    bool fits = false;
    const qint64 value = number.toLongLong(&fits);
    if (fits)
        return value;
    using Bounds = std::numeric_limits<qint64>;
    return isNegative ? Bounds::min() : Bounds::max();
}
