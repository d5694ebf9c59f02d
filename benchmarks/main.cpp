// Measures what the product costs within this process and appends a line of JSON for each
// measurement to a file: vesmora-bench [--quick] --results FILE SUBJECT...
//
// The simulated interface has to run. A subject is one of those below.

#include "figures.h"

#include <QApplication>
#include <QCommandLineParser>

#include <algorithm>

namespace {

struct Subject {
    QLatin1StringView name;
    void (*measure)(const Effort &effort);
};

constexpr Subject subjects[] = {
    {QLatin1StringView("painting"), measurePainting},
    {QLatin1StringView("step"), measureStep},
    {QLatin1StringView("click"), measureClick},
    {QLatin1StringView("plug"), measurePlug},
};

void measure(const QString &name, const Effort &effort)
{
    const auto *subject = std::find_if(std::begin(subjects), std::end(subjects),
                                       [&](const Subject &known) { return known.name == name; });
    require(subject != std::end(subjects), QStringLiteral("There is no subject ") + name);
    subject->measure(effort);
}

} // namespace

int main(int argc, char *argv[])
{
    QApplication application(argc, argv);
    const QCommandLineOption quick(QStringLiteral("quick"));
    const QCommandLineOption results(QStringLiteral("results"), QString(), QStringLiteral("file"));
    QCommandLineParser parser;
    parser.addOption(quick);
    parser.addOption(results);
    parser.process(application);
    reportTo(parser.value(results));

    const QStringList names = parser.positionalArguments();
    for (const QString &name : names)
        measure(name, parser.isSet(quick) ? quickEffort : Effort{});
    return 0;
}
