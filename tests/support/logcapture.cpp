#include "logcapture.h"

#include <QMutexLocker>

LogCapture *LogCapture::s_current = nullptr;

LogCapture::LogCapture()
{
    Q_ASSERT(!s_current);
    s_current = this;
    m_previous = qInstallMessageHandler(&LogCapture::handle);
}

LogCapture::~LogCapture()
{
    qInstallMessageHandler(m_previous);
    s_current = nullptr;
}

QStringList LogCapture::lines() const
{
    const QMutexLocker locker(&m_mutex);
    return m_lines;
}

QStringList LogCapture::take()
{
    const QMutexLocker locker(&m_mutex);
    return std::exchange(m_lines, {});
}

void LogCapture::handle(QtMsgType type, const QMessageLogContext &context, const QString &text)
{
    // The test's own verdicts, and the end of the program, go where they always go.
    if (type == QtFatalMsg) {
        s_current->m_previous(type, context, text);
        return;
    }
    QString line = text;
    while (line.endsWith(' '))
        line.chop(1);
    const QMutexLocker locker(&s_current->m_mutex);
    s_current->m_lines.append(line);
}
