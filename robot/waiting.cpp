#include "waiting.h"

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QEventLoop>
#include <QTimer>

namespace {

// Conditions ask other processes, so they are not asked more often than this.
constexpr std::chrono::milliseconds pause{25};

void runEventsForOnePause()
{
    QEventLoop loop;
    QTimer::singleShot(pause, &loop, &QEventLoop::quit);
    loop.exec();
}

} // namespace

bool waitUntil(const std::function<bool()> &condition, std::chrono::milliseconds deadline)
{
    const QDeadlineTimer timer(deadline);
    while (!condition()) {
        if (timer.hasExpired())
            return false;
        runEventsForOnePause();
    }
    return true;
}
