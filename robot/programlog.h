#ifndef PROGRAMLOG_H
#define PROGRAMLOG_H

#include "waiting.h"

#include <QByteArray>
#include <QStringList>

class QProcess;

/// The complete lines that a program wrote, as text, in the order in which they arrived.
class ProgramLog
{
public:
    enum class Encoding {
        Utf8,
        Gbk ///< what a Windows program writes in a Chinese locale
    };

    explicit ProgramLog(Encoding encoding = Encoding::Utf8);

    /// Collects both channels of @p process from now on; the log must outlive the process.
    void follow(QProcess *process);

    /// Standard output and standard error together; their order is each channel's own.
    QStringList lines() const { return m_lines; }
    /// Standard output alone.
    QStringList outputLines() const { return m_output.lines; }
    /// Standard error alone.
    QStringList errorLines() const { return m_error.lines; }

    /// The lines that contain @p text.
    QStringList linesWith(const QString &text) const;
    qsizetype count(const QString &text) const { return linesWith(text).size(); }
    /// Waits until @p text stands in at least @p times lines.
    bool waitFor(const QString &text, qsizetype times = 1,
                 std::chrono::milliseconds deadline = usualDeadline) const;

private:
    struct Channel {
        QByteArray rest;
        QStringList lines;
    };

    void append(Channel &channel, const QByteArray &bytes);
    void appendLine(Channel &channel, QByteArray line);
    QString decode(const QByteArray &line) const;

    Encoding m_encoding;
    Channel m_output;
    Channel m_error;
    QStringList m_lines;
};

#endif
