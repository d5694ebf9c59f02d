#include "stage.h"
#include "subjects.h"
#include "usage.h"

#include <QElapsedTimer>

namespace {

Cost costOfStart(Stage &stage, HostLane &lane)
{
    QElapsedTimer wall;
    wall.start();
    const auto program = start(lane);
    stage.waitForIcon();
    const double processor = processorTimeOf(program->processId());
    return {static_cast<double>(wall.nsecsElapsed()) / 1e3, processor};
}

} // namespace

void measureStart(const Patience &patience)
{
    Stage stage;
    const auto panel = stage.surroundings(panelProgram());
    const auto measure = [&](const Figure &figure, const QString &floorName) {
        const auto floor = stage.surroundings(floorProgram(floorName));
        compare(
            figure, patience.effort, [&] { return costOfStart(stage, *panel); },
            [&] { return costOfStart(stage, *floor); });
    };
    const QString name = QStringLiteral("start to painted tray icon");
    measure({.name = name, .floor = QStringLiteral("nothing but the icon")},
            QStringLiteral("vesmora-floor-trayonly"));
    measure({.name = name, .floor = QStringLiteral("the icon and what is ordered"), .goal = 1.05},
            QStringLiteral("vesmora-floor-orderedstart"));
}
