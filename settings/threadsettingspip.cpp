#include "threadsettingspip.h"

#include <QDebug>
#include <QtEndian>

using namespace std::chrono_literals;

namespace {

/// The message is 32-bit little-endian words; all but the last one are only logged.
constexpr int wordCount = 5;
constexpr int openWindowWord = 4;

constexpr unsigned long pauseMs = 100;
constexpr auto cancelInterval = 5ms;

void logWords(const quint32 (&words)[wordCount])
{
    QDebug line = qDebug();
    line << "Received data from pipe:";
    for (const quint32 word : words)
        line << word;
}

} // namespace

ThreadSettingsPip::ThreadSettingsPip(QObject *parent)
    : QThread(parent)
    , m_server(new PipeServer(QStringLiteral(R"(\\.\pipe\VesmoraASIOToPannel)")))
{
    if (!m_server->create())
        qDebug() << "Failed to create named pipe in ThreadSettingsPip.";
    qDebug() << "ThreadSettingsPip initialized.";
}

ThreadSettingsPip::~ThreadSettingsPip()
{
    stop();
    m_server->close();
    delete m_server;
}

void ThreadSettingsPip::stop()
{
    requestInterruption();
    // A cancellation that comes just before the thread blocks is lost, so it is repeated.
    do {
        m_server->cancel();
    } while (!wait(QDeadlineTimer(cancelInterval)));
}

void ThreadSettingsPip::run()
{
    while (isRunning() && !isInterruptionRequested()) {
        qDebug() << "ThreadSettingsPip is running waiting Asio Info...";
        PipeServer::Message message{};
        if (m_server->receive(message))
            handle(message);
        else
            qDebug() << "No data received from pipe.";
        msleep(pauseMs);
    }
}

void ThreadSettingsPip::handle(const PipeServer::Message &message)
{
    quint32 words[wordCount];
    qFromLittleEndian<quint32>(message.data(), wordCount, words);
    logWords(words);
    if (words[openWindowWord] == 0)
        return;
    qDebug() << "Open Window Signal from ASIO.";
    emit progressUpdated(1);
}
