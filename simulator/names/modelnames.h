#ifndef MODELNAMES_H
#define MODELNAMES_H

#include <QString>

#include <optional>

/// The product identifier of "rx1", "rx2", "rm" or a number from 1 on.
std::optional<quint32> modelIdentifier(const QString &name);

#endif
