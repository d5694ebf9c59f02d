// Reads measurements, a line of JSON each, from standard input and prints them as a table:
// vesmora-bench-table [--json FILE]

#include "comparison.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <algorithm>
#include <cstdio>
#include <utility>

namespace {

using Row = QStringList;

QList<double> numbers(const QJsonValue &array)
{
    QList<double> list;
    const QJsonArray elements = array.toArray();
    for (const auto &element : elements)
        list.append(element.toDouble());
    return list;
}

double median(QList<double> values)
{
    std::sort(values.begin(), values.end());
    const qsizetype middle = values.size() / 2;
    return values.size() % 2 != 0 ? values[middle] : (values[middle - 1] + values[middle]) / 2;
}

/// The measurement with what the table says of it.
QJsonObject summarised(QJsonObject measurement)
{
    const QList<double> product = numbers(measurement[QStringLiteral("product")]);
    const QList<double> floor = numbers(measurement[QStringLiteral("floor")]);
    require(!product.isEmpty() && product.size() == floor.size(),
            QStringLiteral("No pairs: ") + measurement[QStringLiteral("figure")].toString());
    QList<double> ratios;
    for (qsizetype i = 0; i < product.size(); ++i)
        ratios.append(product[i] / floor[i]);
    measurement[QStringLiteral("pairs")] = product.size();
    measurement[QStringLiteral("productMedian")] = median(product);
    measurement[QStringLiteral("floorMedian")] = median(floor);
    measurement[QStringLiteral("ratioMedian")] = median(ratios);
    measurement[QStringLiteral("ratioMinimum")] = *std::min_element(ratios.begin(), ratios.end());
    measurement[QStringLiteral("ratioMaximum")] = *std::max_element(ratios.begin(), ratios.end());
    return measurement;
}

QList<QJsonObject> readMeasurements()
{
    QFile input;
    require(input.open(stdin, QIODevice::ReadOnly), input.errorString());
    QList<QJsonObject> measurements;
    for (QByteArray line = input.readLine(); !line.isEmpty(); line = input.readLine()) {
        const QJsonDocument document = QJsonDocument::fromJson(line);
        require(document.isObject(), QStringLiteral("No measurement: ") + QString::fromUtf8(line));
        measurements.append(summarised(document.object()));
    }
    return measurements;
}

QString ratio(const QJsonValue &value)
{
    return QString::number(value.toDouble(), 'f', 2);
}

QString amount(const QJsonValue &value)
{
    const double number = value.toDouble();
    return QString::number(number, 'f', number < 100 ? 1 : 0);
}

Row rowOf(const QJsonObject &measurement)
{
    const auto of = [&](const char *key) { return measurement[QLatin1String(key)]; };
    return {of("figure").toString(),
            of("against").toString(),
            of("measure").toString(),
            of("goal").toDouble() > 0 ? ratio(of("goal")) : QStringLiteral("-"),
            ratio(of("ratioMedian")),
            ratio(of("ratioMinimum")),
            ratio(of("ratioMaximum")),
            amount(of("productMedian")),
            amount(of("floorMedian")),
            of("unit").toString(),
            QString::number(of("pairs").toInt())};
}

void print(const QList<Row> &rows)
{
    constexpr qsizetype firstNumber = 3; // texts stand left, numbers right
    QList<qsizetype> widths(rows.constFirst().size(), 0);
    for (const Row &row : rows) {
        for (qsizetype i = 0; i < row.size(); ++i)
            widths[i] = std::max(widths[i], row[i].size());
    }
    for (const Row &row : rows) {
        QString line;
        for (qsizetype i = 0; i < row.size(); ++i)
            line += (i < firstNumber ? row[i].leftJustified(widths[i])
                                     : row[i].rightJustified(widths[i]))
                + QStringLiteral("  ");
        std::puts(line.toUtf8().constData());
    }
}

void write(const QString &name, const QList<QJsonObject> &measurements)
{
    QJsonArray all;
    for (const QJsonObject &measurement : measurements)
        all.append(measurement);
    const QByteArray text = QJsonDocument(all).toJson();
    QFile file(name);
    require(file.open(QIODevice::WriteOnly) && file.write(text) == text.size() && file.flush(),
            name + QStringLiteral(": ") + file.errorString());
}

} // namespace

int main(int argc, char *argv[])
{
    QCoreApplication application(argc, argv);
    const QCommandLineOption json(QStringLiteral("json"), QString(), QStringLiteral("file"));
    QCommandLineParser parser;
    parser.addOption(json);
    parser.process(application);

    const QList<QJsonObject> measurements = readMeasurements();
    require(!measurements.isEmpty(), QStringLiteral("Nothing was measured."));
    QList<Row> rows{{QStringLiteral("figure"), QStringLiteral("against"), QStringLiteral("measure"),
                     QStringLiteral("goal"), QStringLiteral("ratio"), QStringLiteral("min"),
                     QStringLiteral("max"), QStringLiteral("product"), QStringLiteral("floor"),
                     QStringLiteral("unit"), QStringLiteral("pairs")}};
    QString figure;
    for (const QJsonObject &measurement : measurements) {
        Row row = rowOf(measurement);
        // Said once for all that is measured of it.
        if (const QString name = row[0] + row[1]; std::exchange(figure, name) == name)
            row[0] = row[1] = QString();
        rows.append(row);
    }
    print(rows);
    if (parser.isSet(json))
        write(parser.value(json), measurements);
    return 0;
}
