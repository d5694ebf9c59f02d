#include "desktopdemo.h"

#include "hostlane.h"
#include "interruption.h"
#include "waiting.h"

#include <QTextStream>

namespace {

void explain(const QString &model)
{
    QTextStream(stdout)
        << QStringLiteral("The panel runs with a simulated %1. Click its icon in the system tray "
                          "to open it.\n")
               .arg(model.toUpper())
        << QStringLiteral("\"Quit\" in the icon's menu or Ctrl-C ends everything.") << Qt::endl;
}

} // namespace

bool runOnDesktop(const QString &model, const LanePrograms &programs, const QString &folder,
                  const QString &locale, QString *error)
{
    Desktop desktop;
    if (!desktop.useExisting() || !desktop.ensureTray()) {
        *error = desktop.errorString();
        return false;
    }
    HostLane lane(desktop, programs);
    lane.setFolder(folder + QStringLiteral("/desktop"));
    if (!lane.open()) {
        *error = lane.errorString();
        return false;
    }
    if (!lane.simulator().plug(model)) {
        *error = lane.simulator().errorString();
        return false;
    }
    const std::unique_ptr<PanelProgram> panel = lane.launch(locale);
    if (!panel) {
        *error = lane.errorString();
        return false;
    }
    explain(model);
    waitUntil([&] { return interruption::requested() || !panel->isRunning(); },
              std::chrono::milliseconds::max());
    if (!panel->isRunning() && panel->exitCode() != 0) {
        *error = QStringLiteral("the panel ended with %1:\n%2")
                     .arg(panel->exitCode())
                     .arg(panel->log().errorLines().join(u'\n'));
        return false;
    }
    return true;
}
