#include "modelnames.h"

#include "arguments.h"
#include "vesmoracontract.h"

#include <QStringList>

#include <limits>

const QList<ModelName> &modelNames()
{
    static const QList<ModelName> names{{QStringLiteral("rx1"), VESMORA_PID_RX1},
                                        {QStringLiteral("rx2"), VESMORA_PID_RX2},
                                        {QStringLiteral("rm"), VESMORA_PID_RM}};
    return names;
}

QString modelChoice()
{
    QStringList names;
    for (const ModelName &model : modelNames())
        names << model.name;
    return names.join(u'|');
}

std::optional<quint32> modelIdentifier(const QString &name)
{
    for (const ModelName &model : modelNames()) {
        if (name == model.name)
            return model.identifier;
    }
    const auto number = Arguments::parse(name, 1, std::numeric_limits<quint32>::max());
    return number ? std::optional(static_cast<quint32>(*number)) : std::nullopt;
}
