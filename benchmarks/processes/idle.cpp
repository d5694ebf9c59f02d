#include "sidebyside.h"
#include "subjects.h"
#include "usage.h"

#include <QTimer>

using namespace std::chrono_literals;

namespace {

constexpr auto settling = 2s;
/// Faster than the panel reads them, so that each reading finds others.
constexpr auto levelInterval = 450ms;

/// What a program has used until now; and, of two such moments, what it used between them.
struct Activity {
    double processor = 0;
    double wakeUps = 0;

    static Activity of(qint64 process)
    {
        return {processorTimeOf(process), static_cast<double>(wakeUpsOf(process))};
    }
    Activity operator-(const Activity &earlier) const
    {
        return {processor - earlier.processor, wakeUps - earlier.wakeUps};
    }
};

/// Measures both programs at once, turn after turn.
void measureTurns(const Figure &figure, const Patience &patience, const SideBySide &sides)
{
    QList<double> processor[2];
    QList<double> wakeUps[2];
    for (int turn = 0; turn < patience.turns; ++turn) {
        const qint64 processes[] = {sides.panel(), sides.floor()};
        const Activity before[] = {Activity::of(processes[0]), Activity::of(processes[1])};
        letPass(patience.turn);
        for (int side = 0; side < 2; ++side) {
            const Activity used = Activity::of(processes[side]) - before[side];
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
