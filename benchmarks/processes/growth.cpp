// Measures whether a program that runs for years comes to cost more, or to hold more, than at its
// beginning: vesmora-bench-growth [--quick] --results FILE
//
// The simulated interface has to run. The pauses of the audio engine are left out.

#include "comparison.h"
#include "datafile.h"
#include "pluggedwindow.h"
#include "tracing.h"
#include "usage.h"
#include "vesmoracontract.h"
#include "wheel.h"

#include <QApplication>
#include <QCommandLineParser>
#include <QSettings>
#include <QTimer>

#include <iostream>

#include <malloc.h>
#include <windows.h>

// The linker has the product call this in place of Sleep().
extern "C" void __wrap_Sleep(DWORD) // NOLINT(bugprone-reserved-identifier): the linker's name
{ }

namespace {

constexpr int warmUp = 10;

struct Times {
    int plugs;
    int steps;
    int vainLooks; ///< of each kind; each leaves a file open
    int compared;  ///< of the first ones and of the last ones
};
constexpr Times usualTimes{10000, 100000, 200, 100};
constexpr Times quickTimes{20, 500, 10, 10};

struct Holding {
    QString name;
    QString unit;
    double amount;
};

/// What this process holds.
struct Holdings {
    Holding memory;
    Holding heap;
    Holding openFiles;
    Holding threads;
    Holding widgets;
    Holding objects;
    Holding engineTimers; ///< two for every start of the engine, which are meant to stay
};

Holding count(const char *name, qsizetype amount)
{
    return {QLatin1String(name), QString(), static_cast<double>(amount)};
}

Holding size(const char *name, double kibibytes)
{
    return {QLatin1String(name), QStringLiteral("KiB"), kibibytes};
}

Holdings holdings(PluggedWindow &window)
{
    const qint64 self = QCoreApplication::applicationPid();
    const auto heap = mallinfo2();
    const qsizetype timers =
        window.settings().findChildren<QTimer *>(QString(), Qt::FindDirectChildrenOnly).size();
    const qsizetype objects = window.window().findChildren<QObject *>().size()
        + window.settings().findChildren<QObject *>().size() - timers;
    return {.memory = size("PSS", memoryOf(self).proportional),
            .heap = size("heap in use", static_cast<double>(heap.uordblks + heap.hblkhd) / 1024),
            .openFiles = count("open files", openFilesOf(self)),
            .threads = count("threads", threadsOf(self)),
            .widgets = count("widgets", QApplication::allWidgets().size()),
            .objects = count("other objects", objects),
            .engineTimers = count("engine's timers", timers)};
}

void reportHolding(const Figure &figure, const Holding &end, const Holding &beginning)
{
    report(figure, end.name, end.unit, {end.amount}, {beginning.amount});
}

/// Work that depends on nothing that was before.
class Yardstick
{
public:
    void apply()
    {
        constexpr int times = 10;
        for (int i = 0; i < times; ++i) {
            m_file.setValue(QStringLiteral("Yardstick"), ++m_value);
            m_file.sync();
        }
    }

private:
    QSettings m_file{dataFile(QStringLiteral("yardstick.ini")), QSettings::IniFormat};
    int m_value = 0;
};

/// Repeats the event and compares the end with the beginning. In between, minutes pass and others
/// may have come to use the machine, so the time of an event counts in times of a yardstick.
void measureGrowth(const QString &name, int times, int compared, PluggedWindow &window,
                   const Work &event)
{
    for (int i = 0; i < warmUp; ++i)
        event();
    const Holdings beginning = holdings(window);
    QList<double> first;
    QList<double> last;
    Yardstick yardstick;
    const auto costInYardsticks = [&] {
        const double cost = costOf(event).processor;
        return cost / costOf([&] { yardstick.apply(); }).processor;
    };
    for (int i = 0; i < compared; ++i)
        first.append(costInYardsticks());
    for (int i = compared; i < times - compared; ++i)
        event();
    for (int i = 0; i < compared; ++i)
        last.append(costInYardsticks());
    Figure figure{.name = QStringLiteral("%1 %2").arg(times).arg(name),
                  .floor = QStringLiteral("the beginning"),
                  .goal = 1};
    report(figure, QStringLiteral("processor"), QStringLiteral("10 saves"), last, first);
    // The engine's timers take what more there is.
    figure.goal = 0;
    const Holdings end = holdings(window);
    for (const auto held :
         {&Holdings::memory, &Holdings::heap, &Holdings::openFiles, &Holdings::threads,
          &Holdings::widgets, &Holdings::objects, &Holdings::engineTimers})
        reportHolding(figure, end.*held, beginning.*held);
}

/// What looks for a device leave behind that end early, each of which is meant to keep its
/// connection.
void measureLeft(const QString &name, int times, PluggedWindow &window, const Work &prepare)
{
    const auto look = [&] {
        prepare();
        window.detect();
        window.hurryEngine();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    };
    for (int i = 0; i < warmUp; ++i)
        look();
    const Holdings beginning = holdings(window);
    for (int i = 0; i < times; ++i)
        look();
    const Figure figure{.name = QStringLiteral("%1 looks, %2").arg(times).arg(name),
                        .floor = QStringLiteral("the beginning")};
    const Holdings end = holdings(window);
    reportHolding(figure, end.heap, beginning.heap);
    reportHolding(figure, end.openFiles, beginning.openFiles);
}

void plugAndUnplug(PluggedWindow &window)
{
    window.plug();
    window.detect();
    window.awaitPainting();
    window.hurryEngine();
    window.unplug();
}

void measureSteps(const Times &times, PluggedWindow &window)
{
    window.plug();
    window.detect();
    auto *knob = window.window().findChild<Knob *>(QStringLiteral("Headphone"));
    require(knob != nullptr, QStringLiteral("The window shows no panel"));
    Wheel wheel(*knob);
    measureGrowth(QStringLiteral("steps"), times.steps, times.compared, window, [&] {
        wheel.turn();
        QCoreApplication::processEvents();
    });
    window.hurryEngine();
    window.unplug();
}

void measureVainLooks(int times, PluggedWindow &window)
{
    SimulatorClient &simulator = window.simulator();
    const auto succeed = [&](bool done) { require(done, simulator.errorString()); };
    window.plug();
    measureLeft(QStringLiteral("firmware unreadable"), times, window, [&] {
        succeed(simulator.fail(QStringLiteral("getFirmwareVersion"), 1, ERROR_GEN_FAILURE));
    });
    // After the look's own.
    constexpr int openOfEngine = 2;
    measureLeft(QStringLiteral("no connection for the engine"), times, window, [&] {
        succeed(simulator.fail(QStringLiteral("open"), openOfEngine, ERROR_GEN_FAILURE));
    });
    succeed(simulator.setIdentifier(UINT32_MAX));
    measureLeft(QStringLiteral("unknown device"), times, window, [] {});
}

void measure(const Times &times)
{
    PluggedWindow window(VESMORA_PID_RX1);
    measureGrowth(QStringLiteral("plugs"), times.plugs, times.compared, window,
                  [&] { plugAndUnplug(window); });
    measureSteps(times, window);
    measureVainLooks(times.vainLooks, window);
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

    const Log log;
    // That a look fails as it shall is no news.
    std::cerr.setstate(std::ios_base::failbit);
    measure(parser.isSet(quick) ? quickTimes : usualTimes);
    return 0;
}
