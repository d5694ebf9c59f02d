#include "programlog.h"

#include <QProcess>

#include <iconv.h>

namespace {

/// Bytes that are not GBK become '?', so that a broken line is seen and not lost.
QByteArray gbkToUtf8(const QByteArray &gbk)
{
    const iconv_t converter = iconv_open("UTF-8", "GBK");
    if (converter == reinterpret_cast<iconv_t>(-1))
        return gbk;
    QByteArray input = gbk;
    QByteArray output(input.size() * 3 + 1, Qt::Uninitialized);
    char *from = input.data();
    char *to = output.data();
    size_t left = static_cast<size_t>(input.size());
    size_t room = static_cast<size_t>(output.size());
    while (left > 0 && iconv(converter, &from, &left, &to, &room) == static_cast<size_t>(-1)) {
        *to++ = '?';
        --room;
        ++from;
        --left;
    }
    iconv_close(converter);
    output.truncate(to - output.data());
    return output;
}

} // namespace

ProgramLog::ProgramLog(Encoding encoding)
    : m_encoding(encoding)
{ }

void ProgramLog::follow(QProcess *process)
{
    QObject::connect(process, &QProcess::readyReadStandardOutput, process,
                     [this, process] { append(m_output, process->readAllStandardOutput()); });
    QObject::connect(process, &QProcess::readyReadStandardError, process,
                     [this, process] { append(m_error, process->readAllStandardError()); });
}

QStringList ProgramLog::linesWith(const QString &text) const
{
    return m_lines.filter(text, Qt::CaseSensitive);
}

bool ProgramLog::waitFor(const QString &text, qsizetype times,
                         std::chrono::milliseconds deadline) const
{
    return waitUntil([&] { return count(text) >= times; }, deadline);
}

void ProgramLog::append(Channel &channel, const QByteArray &bytes)
{
    channel.rest += bytes;
    for (qsizetype end = channel.rest.indexOf('\n'); end >= 0; end = channel.rest.indexOf('\n')) {
        appendLine(channel, channel.rest.left(end));
        channel.rest.remove(0, end + 1);
    }
}

void ProgramLog::appendLine(Channel &channel, QByteArray line)
{
    if (line.endsWith('\r'))
        line.chop(1);
    // QDebug separates with blanks and leaves one at the end of some lines.
    const QString text = decode(line).trimmed();
    channel.lines << text;
    m_lines << text;
}

QString ProgramLog::decode(const QByteArray &line) const
{
    return QString::fromUtf8(m_encoding == Encoding::Gbk ? gbkToUtf8(line) : line);
}
