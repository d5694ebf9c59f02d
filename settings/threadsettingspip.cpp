#include "threadsettingspip.h"

#include <QDebug>
#include <QtEndian>

using namespace std::chrono_literals;

namespace {

// A request is nothing but words.
constexpr int wordCount = sizeof(WindowRequest) / sizeof(quint32);
constexpr int showSettingsWord = offsetof(WindowRequest, showSettings) / sizeof(quint32);

constexpr unsigned long pauseMs = 100;
constexpr auto cancelInterval = 5ms;
constexpr auto cancelPatience = 1s; // until the cancelling by handle counts as vain

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
    , m_server(new PipeServer(QString::fromWCharArray(VESMORA_WINDOW_PIPE)))
{
    if (!m_server->create())
        qDebug() << "Failed to create named pipe in ThreadSettingsPip.";
    qDebug() << "ThreadSettingsPip initialized.";
}

ThreadSettingsPip::~ThreadSettingsPip()
{
    stop();
    if (m_thread)
        CloseHandle(m_thread);
    m_server->close();
    delete m_server;
}

void ThreadSettingsPip::stop()
{
    requestInterruption();
    // A program that cannot end would keep the next one from starting, so there is a second way.
    const QDeadlineTimer firstWay(cancelPatience);
    // A cancellation that comes just before the thread blocks is lost, so it is repeated.
    do {
        m_server->cancel();
        if (firstWay.hasExpired())
            CancelSynchronousIo(m_thread);
    } while (!wait(QDeadlineTimer(cancelInterval)));
}

void ThreadSettingsPip::run()
{
    m_thread = OpenThread(THREAD_TERMINATE, FALSE, GetCurrentThreadId());
    while (isRunning() && !isInterruptionRequested()) {
        qDebug() << "ThreadSettingsPip is running waiting Asio Info...";
        listen();
        msleep(pauseMs);
    }
}

void ThreadSettingsPip::listen()
{
    PipeServer::Message message{};
    if (m_server->receive(message)) {
        handle(message);
        return;
    }
    if (m_server->wasAbandoned())
        m_server->disconnect();
    qDebug() << "No data received from pipe.";
}

void ThreadSettingsPip::handle(const PipeServer::Message &message)
{
    quint32 words[wordCount];
    qFromLittleEndian<quint32>(message.data(), wordCount, words);
    logWords(words);
    if (words[showSettingsWord] == 0)
        return;
    qDebug() << "Open Window Signal from ASIO.";
    emit progressUpdated(1);
}
