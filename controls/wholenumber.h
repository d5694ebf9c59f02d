#ifndef WHOLENUMBER_H
#define WHOLENUMBER_H

#include <QString>

#include <optional>

/// The whole number that @p text is: decimal digits, a sign before them if need be, space around
/// them. Nothing when the text is anything else. However long the number is, it is one: beyond 64
/// bits it becomes the nearest that 64 bits hold.
std::optional<qint64> wholeNumber(const QString &text);

#endif
