#include "sidebyside.h"
#include "subjects.h"
#include "usage.h"

using namespace std::chrono_literals;

namespace {

// Until the panel has looked for an interface and the engine's last step is done.
constexpr auto settling = 2500ms;

} // namespace

void measureMemory(const Patience &patience)
{
    Stage stage;
    const auto measure = [&](const Figure &figure, const QString &floorName,
                             const std::function<void(SideBySide &)> &show) {
        QList<double> proportional[2];
        QList<double> unique[2];
        for (int turn = 0; turn < patience.turns; ++turn) {
            SideBySide sides(stage, floorProgram(floorName));
            show(sides);
            letPass(settling);
            const Memory used[] = {memoryOf(sides.panel()), memoryOf(sides.floor())};
            for (int side = 0; side < 2; ++side) {
                proportional[side].append(used[side].proportional);
                unique[side].append(used[side].unique);
            }
        }
        const QString unit = QStringLiteral("KiB");
        report(figure, QStringLiteral("PSS"), unit, proportional[0], proportional[1]);
        report(figure, QStringLiteral("USS"), unit, unique[0], unique[1]);
    };
    measure({.name = QStringLiteral("memory, icon alone"),
             .floor = QStringLiteral("nothing but the icon")},
            QStringLiteral("vesmora-floor-trayonly"), [](SideBySide &sides) { sides.showIcons(); });
    measure({.name = QStringLiteral("memory, RX1 shown"),
             .floor = QStringLiteral("the icon and plain widgets"),
             .goal = 1.1},
            QStringLiteral("vesmora-floor-trayandwidgets"),
            [](SideBySide &sides) { sides.showWindows(QStringLiteral("Vesmora widgets")); });
}
