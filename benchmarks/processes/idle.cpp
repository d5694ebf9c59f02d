#include "sidebyside.h"
#include "subjects.h"
#include "usage.h"

#include <QTimer>

using namespace std::chrono_literals;

namespace {

constexpr auto settling = 2s;
/// Faster than the panel reads them, so that each reading finds others.
constexpr auto levelInterval = 450ms;

/// What a program used in a while.
struct Activity {
    double processor = 0;
    double wakeUps = 0;
};

/// Measures what a program uses from now on.
class Watch
{
public:
    explicit Watch(qint64 process)
        : m_process(process)
        , m_processor(processorTimeOf(process))
        , m_wakeUps(wakeUpsOf(process))
    { }

    Activity stop() const
    {
        Activity used{.processor = processorTimeOf(m_process) - m_processor};
        const QMap<int, qint64> wakeUps = wakeUpsOf(m_process);
        // A thread that has ended in the meantime was not woken for the timers.
        for (auto thread = wakeUps.begin(); thread != wakeUps.end(); ++thread)
            used.wakeUps += static_cast<double>(*thread - m_wakeUps.value(thread.key()));
        return used;
    }

private:
    qint64 m_process;
    double m_processor;
    QMap<int, qint64> m_wakeUps;
};

/// Measures both programs at once, turn after turn.
void measureTurns(const Figure &figure, const Patience &patience, const SideBySide &sides)
{
    QList<double> processor[2];
    QList<double> wakeUps[2];
    for (int turn = 0; turn < patience.turns; ++turn) {
        const Watch watches[] = {Watch(sides.panel()), Watch(sides.floor())};
        letPass(patience.turn);
        for (int side = 0; side < 2; ++side) {
            const Activity used = watches[side].stop();
            processor[side].append(used.processor);
            wakeUps[side].append(used.wakeUps);
        }
    }
    report(figure, QStringLiteral("processor"), QStringLiteral("µs"), processor[0], processor[1]);
    report(figure, QStringLiteral("wake-ups"), QString(), wakeUps[0], wakeUps[1]);
}

} // namespace

void measureIdle(const Patience &patience)
{
    Stage stage;
    SideBySide sides(stage, floorProgram(QStringLiteral("vesmora-floor-readouts")));
    sides.showWindows(QStringLiteral("Vesmora readouts"));
    letPass(settling);

    Figure figure{.name = QStringLiteral("idle, RX1 shown, %1 s").arg(patience.turn.count() / 1000),
                  .floor = QStringLiteral("two readouts, two timers"),
                  .goal = 1.1};
    measureTurns(figure, patience, sides);

    QTimer levels;
    QObject::connect(&levels, &QTimer::timeout, &levels, [&] { sides.changeLevels(); });
    levels.start(levelInterval);
    figure.name += QStringLiteral(", levels changing");
    measureTurns(figure, patience, sides);
}
