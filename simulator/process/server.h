#ifndef SERVER_H
#define SERVER_H

#include "connection.h"
#include "listener.h"
#include "simulation.h"

#include <functional>
#include <list>
#include <string>

/// Serves the simulation's devices as sockets in the device folder: the test-control device always,
/// the bus device while something is plugged in.
class Server
{
public:
    /// @p afterRequest is called after everything that can have been recorded.
    Server(Simulation &simulation, std::function<void()> afterRequest);
    Server(const Server &) = delete;
    Server &operator=(const Server &) = delete;

    /// Claims the device folder and opens the sockets that are to be there; a message for people
    /// when that does not work, empty otherwise.
    std::string start();
    /// Serves until @p stop becomes readable; false when the system failed.
    bool run(int stop);

private:
    struct Entrance {
        std::unique_ptr<Listener> listener;
        std::function<std::unique_ptr<ServedHandle>()> handle;
    };

    std::string claimFolder();
    std::uint32_t syncBus();
    std::vector<pollfd> interests(int stop, Connection::Clock::time_point now) const;
    int timeout(Connection::Clock::time_point now) const;
    void advanceConnections(std::vector<pollfd> &results, Connection::Clock::time_point now);
    void dropGone(std::vector<pollfd> &results);
    void admit(const std::vector<pollfd> &results);

    Simulation &m_simulation;
    std::function<void()> m_afterRequest;
    UniqueFd m_folder; ///< outlives what listens in it
    Entrance m_control;
    Entrance m_bus;
    std::uint32_t m_busGeneration = 0;
    std::list<Connection> m_connections;
};

#endif
