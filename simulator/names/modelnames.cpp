#include "modelnames.h"

#include "arguments.h"
#include "vesmoracontract.h"

#include <limits>

std::optional<quint32> modelIdentifier(const QString &name)
{
    if (name == QLatin1String("rx1"))
        return VESMORA_PID_RX1;
    if (name == QLatin1String("rx2"))
        return VESMORA_PID_RX2;
    if (name == QLatin1String("rm"))
        return VESMORA_PID_RM;
    const auto number = Arguments::parse(name, 1, std::numeric_limits<quint32>::max());
    return number ? std::optional(static_cast<quint32>(*number)) : std::nullopt;
}
