#ifndef STAGE_H
#define STAGE_H

#include "desktop.h"
#include "hostlane.h"
#include "traymanager.h"

#include <memory>

/// Where tools/bench says that the programs are which are compared; fatal when it does not.
QString panelProgram();
QString floorProgram(const QString &name);

/// A desktop without a screen, on which programs appear to be compared.
class Stage
{
public:
    /// Fatal when there can be no such desktop.
    Stage();

    /// Surroundings for one kind of program, with a simulated interface of their own.
    std::unique_ptr<HostLane> surroundings(const QString &program) const;

    /// Waits until the program started last shows its icon in the tray.
    void waitForIcon();
    /// Waits until a window shows something whose title begins with @p title.
    void waitForWindow(const QString &title);
    /// Clicks the icon in the tray, of which there is one.
    void clickIcon();

private:
    Desktop m_desktop;
    std::unique_ptr<TrayManager> m_tray;
};

/// Starts the lane's program; fatal when it does not start.
std::unique_ptr<PanelProgram> start(HostLane &lane);

/// Lets the programs be for a while.
void letPass(std::chrono::milliseconds duration);

#endif
