#ifndef LOGCAPTURE_H
#define LOGCAPTURE_H

#include <QMutex>
#include <QStringList>

/// Collects what goes to Qt's debug log while it lives, so that a test can compare it line by line.
///
/// Nothing reaches the test's own output meanwhile; lines of any thread are taken. One at a time.
class LogCapture
{
public:
    LogCapture();
    ~LogCapture();
    LogCapture(const LogCapture &) = delete;
    LogCapture &operator=(const LogCapture &) = delete;

    /// The lines so far, without trailing white space, in order.
    QStringList lines() const;
    /// The lines so far, which are then forgotten.
    QStringList take();
    bool contains(const QString &line) const { return lines().contains(line); }

private:
    static void handle(QtMsgType type, const QMessageLogContext &context, const QString &text);

    static LogCapture *s_current;
    QtMessageHandler m_previous;
    mutable QMutex m_mutex;
    QStringList m_lines;
};

#endif
