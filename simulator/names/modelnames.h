#ifndef MODELNAMES_H
#define MODELNAMES_H

#include <QList>
#include <QString>

#include <optional>

/// A model's name on command lines and its product identifier.
struct ModelName {
    QString name;
    quint32 identifier;
};

/// Every model that has a name.
const QList<ModelName> &modelNames();
/// All the names as usage lines have them: "rx1|...".
QString modelChoice();

/// The product identifier of a model's name or of a number from 1 on.
std::optional<quint32> modelIdentifier(const QString &name);

#endif
