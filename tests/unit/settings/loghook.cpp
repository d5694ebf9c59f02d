#include "loghook.h"

LogHook *LogHook::s_current = nullptr;

LogHook::LogHook(const QString &beginning, const std::function<void()> &action)
    : m_beginning(beginning)
    , m_action(action)
{
    Q_ASSERT(!s_current);
    // Known before the handler that looks for it is in place, as other threads may be logging.
    s_current = this;
    m_previous = qInstallMessageHandler(nullptr);
    qInstallMessageHandler(m_previous);
    qInstallMessageHandler(&LogHook::handle);
}

LogHook::~LogHook()
{
    qInstallMessageHandler(m_previous);
    s_current = nullptr;
}

void LogHook::handle(QtMsgType type, const QMessageLogContext &context, const QString &text)
{
    s_current->m_previous(type, context, text);
    if (text.startsWith(s_current->m_beginning) && !s_current->m_reached.exchange(true))
        s_current->m_action();
}
