#include "simulation.h"

#include "simstatus.h"

namespace {

// Hours of polling, or tens of thousands of knob steps.
constexpr std::size_t recordBytes = 8u << 20;

class BusHandle : public ServedHandle
{
public:
    BusHandle(Simulation &simulation, std::uint32_t bus)
        : m_simulation(simulation)
        , m_bus(bus)
    { }
    ~BusHandle() override
    {
        if (m_isOpen)
            m_simulation.closeBus(m_handle);
    }

    std::uint32_t open(const deviceprotocol::OpenRequest &request) override
    {
        const std::uint32_t error = m_simulation.openBus(m_bus, request, m_handle);
        m_isOpen = error == 0;
        return error;
    }

    Answer request(std::uint32_t code, const std::vector<std::uint8_t> &input,
                   std::uint32_t outputLength) override
    {
        return m_simulation.busRequest(m_handle, code, input, outputLength);
    }

private:
    Simulation &m_simulation;
    std::uint32_t m_bus;
    SimHandle m_handle{};
    bool m_isOpen = false;
};

class ControlHandle : public ServedHandle
{
public:
    ControlHandle(Simulation &simulation, std::function<std::uint32_t()> changed)
        : m_simulation(simulation)
        , m_changed(std::move(changed))
    { }

    std::uint32_t open(const deviceprotocol::OpenRequest &) override { return 0; }

    Answer request(std::uint32_t code, const std::vector<std::uint8_t> &input,
                   std::uint32_t outputLength) override
    {
        Answer answer = m_simulation.controlRequest(code, input, outputLength);
        if (const std::uint32_t error = m_changed())
            answer = {error, {}, {}};
        return answer;
    }

private:
    Simulation &m_simulation;
    std::function<std::uint32_t()> m_changed;
};

} // namespace

Simulation::Simulation()
    : m_storage(recordBytes / sizeof(std::uint64_t))
    , m_model(std::make_unique<SimModel>())
    , m_start(std::chrono::steady_clock::now())
{
    model_init(m_model.get(), m_storage.data(), recordBytes);
}

std::uint32_t Simulation::time() const
{
    const auto elapsed = std::chrono::steady_clock::now() - m_start;
    return static_cast<std::uint32_t>(
        std::chrono::duration_cast<std::chrono::milliseconds>(elapsed).count());
}

std::uint32_t Simulation::plug(std::uint32_t identifier, std::uint32_t bus)
{
    const VesmoraSimPlug plug{identifier, bus};
    return status_to_error(model_plug(m_model.get(), &plug, time()));
}

void Simulation::unplug()
{
    model_unplug(m_model.get(), time());
}

std::vector<std::uint8_t> Simulation::recordPage(std::uint32_t from)
{
    std::vector<std::uint8_t> page(VESMORA_SIM_LONGEST_PAGE);
    std::uint32_t length = 0;
    journal_read(&m_model->journal, from, page.data(), static_cast<std::uint32_t>(page.size()),
                 &length);
    page.resize(length);
    return page;
}

std::unique_ptr<ServedHandle> Simulation::busHandle(std::uint32_t bus)
{
    return std::make_unique<BusHandle>(*this, bus);
}

std::unique_ptr<ServedHandle> Simulation::controlHandle(std::function<std::uint32_t()> changed)
{
    return std::make_unique<ControlHandle>(*this, std::move(changed));
}

std::uint32_t Simulation::openBus(std::uint32_t bus, const deviceprotocol::OpenRequest &request,
                                  SimHandle &handle)
{
    return status_to_error(
        model_open(m_model.get(), bus, request.desiredAccess, request.shareMode, time(), &handle));
}

void Simulation::closeBus(const SimHandle &handle)
{
    model_close(m_model.get(), &handle, time());
}

template <typename Perform>
Answer Simulation::perform(std::uint32_t code, const std::vector<std::uint8_t> &input,
                           std::uint32_t outputLength, Perform perform)
{
    std::vector<std::uint8_t> output(outputLength);
    const SimRequest request{code,          input.data(), static_cast<std::uint32_t>(input.size()),
                             output.data(), outputLength, time()};
    const SimReply reply = perform(request);
    output.resize(reply.bytesReturned);
    return {status_to_error(reply.status), std::move(output),
            std::chrono::milliseconds(reply.delay)};
}

Answer Simulation::busRequest(const SimHandle &handle, std::uint32_t code,
                              const std::vector<std::uint8_t> &input, std::uint32_t outputLength)
{
    return perform(code, input, outputLength, [&](const SimRequest &request) {
        return model_request(m_model.get(), &handle, &request);
    });
}

Answer Simulation::controlRequest(std::uint32_t code, const std::vector<std::uint8_t> &input,
                                  std::uint32_t outputLength)
{
    return perform(code, input, outputLength, [&](const SimRequest &request) {
        return model_control(m_model.get(), &request);
    });
}
