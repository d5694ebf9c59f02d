#include "server.h"

#include "controlprotocol.h"
#include "hostfolder.h"
#include "simstatus.h"
#include "vesmoracontract.h"

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>

namespace {

// Where interests() puts what; the connections follow.
enum Place { StopPlace, ControlPlace, BusPlace, FirstConnectionPlace };

std::string busSocketName(std::uint32_t bus)
{
    return VESMORA_BUS_NAME + std::to_string(bus);
}

std::string describe(const std::string &what, int error)
{
    return hostFolderPath() + ": " + what + ": " + std::strerror(error);
}

} // namespace

Server::Server(Simulation &simulation, std::function<void()> afterRequest)
    : m_simulation(simulation)
    , m_afterRequest(std::move(afterRequest))
{ }

std::string Server::start()
{
    if (std::string mistake = claimFolder(); !mistake.empty())
        return mistake;
    m_control.listener = Listener::create(m_folder.get(), VESMORA_SIM_DEVICE_NAME);
    if (!m_control.listener)
        return describe(VESMORA_SIM_DEVICE_NAME, errno);
    m_control.handle = [this] { return m_simulation.controlHandle([this] { return syncBus(); }); };
    if (syncBus() != 0)
        return describe(VESMORA_BUS_NAME, errno);
    return {};
}

/// The lock goes with the process, however it ends; sockets that are there without it are stale.
std::string Server::claimFolder()
{
    UniqueFd place;
    if (const int error = openHostFolder(place); error != 0)
        return describe("the folder cannot be used", error);
    m_folder = UniqueFd(::openat(place.get(), ".", O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (!m_folder)
        return describe("the folder cannot be opened", errno);
    if (::flock(m_folder.get(), LOCK_EX | LOCK_NB) != 0)
        return hostFolderPath() + ": another simulator is serving this folder";
    for (std::uint32_t bus = 0; bus < VESMORA_BUS_COUNT; ++bus)
        ::unlinkat(m_folder.get(), busSocketName(bus).c_str(), 0);
    return {};
}

/// Makes the bus socket what the model says; a Win32 error when it cannot be made.
std::uint32_t Server::syncBus()
{
    const bool isCurrent = m_busGeneration == m_simulation.generation();
    if (m_bus.listener && (!m_simulation.isPlugged() || !isCurrent))
        m_bus.listener.reset();
    if (!m_simulation.isPlugged() || m_bus.listener)
        return 0;
    const std::uint32_t bus = m_simulation.bus();
    m_bus.listener = Listener::create(m_folder.get(), busSocketName(bus));
    if (!m_bus.listener) {
        m_simulation.unplug();
        return status_to_error(SIM_INSUFFICIENT_RESOURCES);
    }
    m_bus.handle = [this, bus] { return m_simulation.busHandle(bus); };
    m_busGeneration = m_simulation.generation();
    return 0;
}

std::vector<pollfd> Server::interests(int stop, Connection::Clock::time_point now) const
{
    std::vector<pollfd> polled(FirstConnectionPlace);
    polled[StopPlace] = {stop, POLLIN, 0};
    polled[ControlPlace] = {m_control.listener->number(), POLLIN, 0};
    polled[BusPlace] = {m_bus.listener ? m_bus.listener->number() : -1, POLLIN, 0};
    for (const Connection &connection : m_connections)
        polled.push_back(connection.interest(now));
    return polled;
}

/// In ms until the first delayed answer is due, rounded up; -1 when there is none.
int Server::timeout(Connection::Clock::time_point now) const
{
    std::optional<Connection::Clock::time_point> first;
    for (const Connection &connection : m_connections) {
        const auto due = connection.due(now);
        if (due && (!first || *due < *first))
            first = due;
    }
    if (!first)
        return -1;
    return static_cast<int>(std::chrono::ceil<std::chrono::milliseconds>(*first - now).count());
}

/// Closed handles come first: a client that closes one and then uses another is to find them in
/// that order in the record.
void Server::dropGone(std::vector<pollfd> &results)
{
    auto result = results.begin() + FirstConnectionPlace;
    for (auto it = m_connections.begin(); it != m_connections.end();) {
        if (!(result->revents & (POLLHUP | POLLERR))) {
            ++it;
            ++result;
            continue;
        }
        it = m_connections.erase(it);
        result = results.erase(result);
    }
}

void Server::advanceConnections(std::vector<pollfd> &results, Connection::Clock::time_point now)
{
    auto result = results.begin() + FirstConnectionPlace;
    for (auto it = m_connections.begin(); it != m_connections.end(); ++result) {
        const bool goesOn = it->advance(result->revents, now);
        it = goesOn ? std::next(it) : m_connections.erase(it);
        m_afterRequest();
    }
}

void Server::admit(const std::vector<pollfd> &results)
{
    for (const auto &[place, entrance] :
         {std::pair(ControlPlace, &m_control), {BusPlace, &m_bus}}) {
        if (!(results[place].revents & POLLIN) || !entrance->listener)
            continue;
        if (UniqueFd socket = entrance->listener->accept())
            m_connections.emplace_back(std::move(socket), entrance->handle());
    }
}

bool Server::run(int stop)
{
    for (;;) {
        const auto before = Connection::Clock::now();
        std::vector<pollfd> polled = interests(stop, before);
        if (::poll(polled.data(), polled.size(), timeout(before)) < 0) {
            if (errno == EINTR)
                continue;
            return false;
        }
        if (polled[StopPlace].revents != 0)
            return true;
        // Looking again shows everything that came before what the first look found.
        ::poll(polled.data(), polled.size(), 0);
        dropGone(polled);
        m_afterRequest();
        advanceConnections(polled, Connection::Clock::now());
        admit(polled);
    }
}
