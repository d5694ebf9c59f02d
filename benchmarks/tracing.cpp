#include "tracing.h"

#include "simulatorclient.h"

#include <QCoreApplication>
#include <QThread>

#include <cstdio>

namespace {

/// Where lines of the log are collected; null for nowhere.
QStringList *collected = nullptr;

void handle(QtMsgType type, const QMessageLogContext &, const QString &text)
{
    // What Qt remarks of its platform is none of the product's.
    if (type != QtDebugMsg) {
        std::fprintf(stderr, "%s\n", text.toUtf8().constData());
        return;
    }
    // What other threads say comes at any time.
    if (collected && QThread::currentThread() == QCoreApplication::instance()->thread())
        collected->append(text.trimmed());
}

QStringList texts(const QList<Record> &records)
{
    QStringList lines;
    for (const Record &record : records)
        lines.append(record.text());
    return lines;
}

/// What differs at first.
QString difference(const QStringList &product, const QStringList &floor)
{
    qsizetype same = 0;
    while (same < product.size() && same < floor.size() && product[same] == floor[same])
        ++same;
    return QStringLiteral("%1 and %2 lines, of which %3 are the same; then\n  %4\n  %5\n")
        .arg(product.size())
        .arg(floor.size())
        .arg(same)
        .arg(product.value(same), floor.value(same));
}

} // namespace

Log::Log()
{
    qInstallMessageHandler(handle);
}

Log::~Log()
{
    qInstallMessageHandler(nullptr);
}

Trace traceOf(SimulatorClient &simulator, const Work &work)
{
    Trace trace;
    require(simulator.clearRecord(), simulator.errorString());
    collected = &trace.log;
    work();
    collected = nullptr;
    trace.records = simulator.record();
    return trace;
}

void requireSameTraces(const QString &name, const Trace &product, const Trace &floor)
{
    const QStringList asked = texts(product.records);
    const QStringList askedBare = texts(floor.records);
    require(!asked.isEmpty() && asked == askedBare,
            name + QStringLiteral(": product and floor do not ask the same: ")
                + difference(asked, askedBare));
    require(product.log == floor.log,
            name + QStringLiteral(": product and floor do not log the same: ")
                + difference(product.log, floor.log));
}
