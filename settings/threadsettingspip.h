#ifndef THREADSETTINGSPIP_H
#define THREADSETTINGSPIP_H

#include "pipeserver.h"

#include <QThread>

#include <atomic>

/// Listens on VESMORA_WINDOW_PIPE for the ASIO driver's wish to see the settings window.
class ThreadSettingsPip : public QThread
{
    Q_OBJECT

public:
    /// Creates the pipe. Without one the thread runs all the same and logs each failing attempt.
    explicit ThreadSettingsPip(QObject *parent);
    /// Ends the thread, whatever it is blocked in, then closes the pipe.
    ~ThreadSettingsPip() override;

signals:
    /// The ASIO driver asked for the window; @p value is always 1. Emitted on the listening thread.
    void progressUpdated(int value);

protected:
    void run() override;

private:
    void listen();
    void handle(const PipeServer::Message &message);
    void stop();

    PipeServer *m_server;
    std::atomic<HANDLE> m_thread = nullptr; ///< the listening one, by which its calls are cancelled
};

#endif
