#include "loghook.h"

std::mutex LogHook::s_mutex;
std::atomic<LogHook *> LogHook::s_current = nullptr;
std::atomic<QtMessageHandler> LogHook::s_previous = nullptr;

LogHook::LogHook(const QString &beginning, const std::function<void()> &action)
    : m_beginning(beginning)
    , m_action(action)
{
    const std::lock_guard lock(s_mutex);
    Q_ASSERT(!s_current);
    s_current = this;
    s_previous = qInstallMessageHandler(&LogHook::handle);
}

LogHook::~LogHook()
{
    const std::lock_guard lock(s_mutex);
    qInstallMessageHandler(s_previous);
    s_current = nullptr;
}

void LogHook::handle(QtMsgType type, const QMessageLogContext &context, const QString &text)
{
    const std::lock_guard lock(s_mutex);
    s_previous.load()(type, context, text);
    LogHook *const current = s_current;
    if (current && text.startsWith(current->m_beginning) && !current->m_reached.exchange(true))
        current->m_action();
}
