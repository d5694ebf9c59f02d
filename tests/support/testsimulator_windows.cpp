#include "testsimulator.h"

class TestSimulator::Lane
{ };

TestSimulator::TestSimulator()
{
    if (!open() || !reset())
        qFatal("The simulator's driver does not answer: %s", qPrintable(errorString()));
}

TestSimulator::~TestSimulator()
{
    reset();
}

bool TestSimulator::canRefuseOpens() const
{
    return false;
}
