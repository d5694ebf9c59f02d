// Measures what the product costs as a whole program and appends a line of JSON for each
// measurement to a file: vesmora-bench-processes [--quick] --results FILE SUBJECT...
//
// VESMORA_PANEL, VESMORA_SIMULATOR and VESMORA_SIMCTL name the programs, VESMORA_FLOORS the folder
// of those that the panel is compared with. A subject is one of those below.

#include "subjects.h"

#include <QCommandLineParser>
#include <QCoreApplication>

#include <algorithm>

namespace {

struct Subject {
    QLatin1StringView name;
    void (*measure)(const Patience &patience);
};

constexpr Subject subjects[] = {
    {QLatin1StringView("start"), measureStart},
    {QLatin1StringView("idle"), measureIdle},
    {QLatin1StringView("memory"), measureMemory},
    {QLatin1StringView("peers"), measurePeers},
};

void measure(const QString &name, const Patience &patience)
{
    const auto *subject = std::find_if(std::begin(subjects), std::end(subjects),
                                       [&](const Subject &known) { return known.name == name; });
    require(subject != std::end(subjects), QStringLiteral("There is no subject ") + name);
    subject->measure(patience);
}

} // namespace

int main(int argc, char *argv[])
{
    QCoreApplication application(argc, argv);
    const QCommandLineOption quick(QStringLiteral("quick"));
    const QCommandLineOption results(QStringLiteral("results"), QString(), QStringLiteral("file"));
    QCommandLineParser parser;
    parser.addOption(quick);
    parser.addOption(results);
    parser.process(application);
    reportTo(parser.value(results));

    const QStringList names = parser.positionalArguments();
    for (const QString &name : names)
        measure(name, parser.isSet(quick) ? quickPatience : usualPatience);
    return 0;
}
