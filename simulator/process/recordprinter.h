#ifndef RECORDPRINTER_H
#define RECORDPRINTER_H

#include "simulation.h"

/// Prints what is recorded, as it happens, as one JSON object a line on standard output.
class RecordPrinter
{
public:
    explicit RecordPrinter(Simulation &simulation)
        : m_simulation(simulation)
    { }
    /// Prints what is new.
    void print();

private:
    Simulation &m_simulation;
    std::uint32_t m_printed = 0;
};

#endif
