#include "interruption.h"

#include <csignal>

namespace {

volatile std::sig_atomic_t isRequested = 0;

void remember(int)
{
    isRequested = 1;
}

} // namespace

void interruption::watch()
{
    struct sigaction action { };
    action.sa_handler = remember;
    sigaction(SIGINT, &action, nullptr);
    sigaction(SIGTERM, &action, nullptr);
    sigaction(SIGHUP, &action, nullptr);
}

bool interruption::requested()
{
    return isRequested != 0;
}
