#ifndef SIMULATION_H
#define SIMULATION_H

#include "servedhandle.h"
#include "simmodel.h"

#include <functional>
#include <memory>

/// The model with its memory and clock, as devices for connections. Outlives its handles.
class Simulation
{
public:
    Simulation();

    bool isPlugged() const { return m_model->plugged != 0; }
    std::uint32_t bus() const { return m_model->bus; }
    /// A number that differs for each time something is plugged in.
    std::uint32_t generation() const { return m_model->generation; }

    /// A Win32 error, 0 for success.
    std::uint32_t plug(std::uint32_t identifier, std::uint32_t bus);
    void unplug();

    /// How many entries the record has.
    std::uint32_t entries() const { return m_model->journal.entries; }
    /// A page of the record, from the given entry number on.
    std::vector<std::uint8_t> recordPage(std::uint32_t from);

    std::unique_ptr<ServedHandle> busHandle(std::uint32_t bus);
    /// @p changed is called after every request, before the requester sees the answer; it returns a
    /// Win32 error that takes the answer's place, or 0.
    std::unique_ptr<ServedHandle> controlHandle(std::function<std::uint32_t()> changed);

    Answer busRequest(const SimHandle &handle, std::uint32_t code,
                      const std::vector<std::uint8_t> &input, std::uint32_t outputLength);
    Answer controlRequest(std::uint32_t code, const std::vector<std::uint8_t> &input,
                          std::uint32_t outputLength);
    std::uint32_t openBus(std::uint32_t bus, const deviceprotocol::OpenRequest &request,
                          SimHandle &handle);
    void closeBus(const SimHandle &handle);

private:
    std::uint32_t time() const;
    template <typename Perform>
    Answer perform(std::uint32_t code, const std::vector<std::uint8_t> &input,
                   std::uint32_t outputLength, Perform perform);

    std::vector<std::uint64_t> m_storage;
    std::unique_ptr<SimModel> m_model;
    std::chrono::steady_clock::time_point m_start;
};

#endif
