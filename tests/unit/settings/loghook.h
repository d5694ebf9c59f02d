#ifndef LOGHOOK_H
#define LOGHOOK_H

#include <QString>

#include <atomic>
#include <functional>
#include <mutex>

/// Does something at the very moment the product logs a line, on the thread that logs it: the way
/// into the middle of what otherwise runs through. Once, and one hook at a time; the line goes on
/// to where lines went before.
class LogHook
{
public:
    /// @p beginning is that of the line. @p action must not log.
    LogHook(const QString &beginning, const std::function<void()> &action);
    ~LogHook();
    LogHook(const LogHook &) = delete;
    LogHook &operator=(const LogHook &) = delete;

    bool wasReached() const { return m_reached; }

private:
    static void handle(QtMsgType type, const QMessageLogContext &context, const QString &text);

    // What the handler uses, which another thread may be in at any time.
    static std::mutex s_mutex;
    static std::atomic<LogHook *> s_current;
    static std::atomic<QtMessageHandler> s_previous;

    const QString m_beginning;
    const std::function<void()> m_action;
    std::atomic<bool> m_reached = false;
};

#endif
