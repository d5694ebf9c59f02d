#include "usage.h"

#include <QDir>
#include <QFile>

#include <ctime>

namespace {

QString folderOf(qint64 process)
{
    return QStringLiteral("/proc/%1/").arg(process);
}

/// The numbers of a file with lines like "Name:  12 kB".
QMap<QByteArray, qint64> numbersIn(const QString &path)
{
    QMap<QByteArray, qint64> numbers;
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return numbers;
    const QList<QByteArray> lines = file.readAll().split('\n');
    for (const QByteArray &line : lines) {
        const qsizetype colon = line.indexOf(':');
        const QByteArray number = line.mid(colon + 1).simplified().split(' ').constFirst();
        numbers.insert(line.left(colon), number.toLongLong());
    }
    return numbers;
}

QStringList namesIn(const QString &folder)
{
    return QDir(folder).entryList(QDir::AllEntries | QDir::System | QDir::NoDotAndDotDot);
}

} // namespace

double processorTimeOf(qint64 process)
{
    clockid_t clock{};
    timespec time{};
    if (clock_getcpuclockid(static_cast<pid_t>(process), &clock) == 0)
        clock_gettime(clock, &time);
    return static_cast<double>(time.tv_sec) * 1e6 + static_cast<double>(time.tv_nsec) / 1e3;
}

QMap<int, qint64> wakeUpsOf(qint64 process)
{
    const QString tasks = folderOf(process) + QStringLiteral("task/");
    const QStringList threads = namesIn(tasks);
    QMap<int, qint64> counts;
    for (const QString &thread : threads) {
        const auto numbers = numbersIn(tasks + thread + QStringLiteral("/status"));
        counts.insert(thread.toInt(), numbers["voluntary_ctxt_switches"]);
    }
    return counts;
}

Memory memoryOf(qint64 process)
{
    const auto numbers = numbersIn(folderOf(process) + QStringLiteral("smaps_rollup"));
    const qint64 unique = numbers["Private_Clean"] + numbers["Private_Dirty"];
    return {static_cast<double>(numbers["Pss"]), static_cast<double>(unique)};
}

int openFilesOf(qint64 process)
{
    return static_cast<int>(namesIn(folderOf(process) + QStringLiteral("fd")).size());
}

int threadsOf(qint64 process)
{
    return static_cast<int>(namesIn(folderOf(process) + QStringLiteral("task")).size());
}
