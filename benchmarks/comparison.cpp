#include "comparison.h"

#include "clock.h"

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <utility>

namespace {

QFile results;

double wallTime()
{
    const auto now = std::chrono::steady_clock::now().time_since_epoch();
    return std::chrono::duration<double, std::micro>(now).count();
}

QJsonArray toJson(const QList<double> &numbers)
{
    QJsonArray array;
    for (const double number : numbers)
        array.append(number);
    return array;
}

Cost costOfTimes(int times, const Work &work)
{
    return costOf([&] {
        for (int i = 0; i < times; ++i)
            work();
    });
}

/// How often work has to be repeated to take as long as a measurement shall. Always even: work may
/// go to and fro.
int timesToFill(const Effort &effort, const Work &work)
{
    const double wanted = std::max(effort.batch, processorTimeGrain);
    for (int times = 2;; times *= 2) {
        const double taken = costOfTimes(times, work).processor;
        if (taken >= wanted / 4)
            return 2 * static_cast<int>(std::ceil(times * wanted / taken / 2));
    }
}

} // namespace

Cost operator+(const Cost &first, const Cost &second)
{
    return {first.wall + second.wall, first.processor + second.processor};
}

Cost operator*(const Cost &cost, double factor)
{
    return {cost.wall * factor, cost.processor * factor};
}

Cost operator/(const Cost &cost, double divisor)
{
    return cost * (1 / divisor);
}

Cost costOf(const Work &work)
{
    const double wall = wallTime();
    const double processor = processorTime();
    work();
    const double processorAfter = processorTime();
    return {wallTime() - wall, processorAfter - processor};
}

void reportTo(const QString &file)
{
    results.setFileName(file);
    require(results.open(QIODevice::Append), file + QStringLiteral(": ") + results.errorString());
}

void report(const Figure &figure, const QString &measure, const QString &unit,
            const QList<double> &product, const QList<double> &floor)
{
    const QJsonObject line{
        {QStringLiteral("figure"), figure.name},  {QStringLiteral("against"), figure.floor},
        {QStringLiteral("goal"), figure.goal},    {QStringLiteral("measure"), measure},
        {QStringLiteral("unit"), unit},           {QStringLiteral("product"), toJson(product)},
        {QStringLiteral("floor"), toJson(floor)},
    };
    const QByteArray text = QJsonDocument(line).toJson(QJsonDocument::Compact) + '\n';
    require(results.write(text) == text.size() && results.flush(), results.errorString());
}

void report(const Figure &figure, const QList<Cost> &product, const QList<Cost> &floor)
{
    const auto all = [](const QList<Cost> &costs, double Cost::*time) {
        QList<double> times;
        for (const Cost &cost : costs)
            times.append(cost.*time);
        return times;
    };
    for (const auto &[measure, time] : {std::pair(QStringLiteral("processor"), &Cost::processor),
                                        std::pair(QStringLiteral("wall"), &Cost::wall)})
        report(figure, measure, QStringLiteral("µs"), all(product, time), all(floor, time));
}

void compare(const Figure &figure, const Effort &effort, const std::function<Cost()> &product,
             const std::function<Cost()> &floor)
{
    product();
    floor();
    QList<Cost> products;
    QList<Cost> floors;
    for (int pair = 0; pair < effort.pairs; ++pair) {
        // Neither side is always the one that finds the other's traces in the caches.
        if (pair % 2 != 0)
            floors.append(floor());
        products.append(product());
        if (pair % 2 == 0)
            floors.append(floor());
    }
    report(figure, products, floors);
}

void compareRepeated(const Figure &figure, const Effort &effort, const Work &product,
                     const Work &floor, const Work &before)
{
    const auto repeated = [&](const Work &work) {
        return [&, times = timesToFill(effort, work)] {
            if (before)
                before();
            return costOfTimes(times, work) / times;
        };
    };
    compare(figure, effort, repeated(product), repeated(floor));
}

void require(bool condition, const QString &reason)
{
    if (condition)
        return;
    std::fprintf(stderr, "%s\n", reason.toUtf8().constData());
    std::exit(EXIT_FAILURE);
}
