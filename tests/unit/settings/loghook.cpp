#include "loghook.h"

std::mutex LogHook::s_mutex;
LogHook *LogHook::s_current = nullptr;
QtMessageHandler LogHook::s_previous = nullptr;

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
    s_previous(type, context, text);
    if (s_current && text.startsWith(s_current->m_beginning)
        && !s_current->m_reached.exchange(true))
        s_current->m_action();
}
