#include "otgtimers.h"

#include <algorithm>

QList<QTimer *> otgTimers(const QObject &owner)
{
    return owner.findChildren<QTimer *>(QString(), Qt::FindDirectChildrenOnly);
}

bool isOtgPending(const QObject &owner)
{
    const QList<QTimer *> timers = otgTimers(owner);
    return std::any_of(timers.cbegin(), timers.cend(),
                       [](const QTimer *timer) { return timer->isActive(); });
}
