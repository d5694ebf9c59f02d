#ifndef SIDEBYSIDE_H
#define SIDEBYSIDE_H

#include "stage.h"

/// A panel that shows an RX1, and the program that it is compared with, at the same time on one
/// desktop: what is shared, and what else the machine does, is the same for both.
class SideBySide
{
public:
    SideBySide(Stage &stage, const QString &floorProgram);

    /// Both with an RX1 plugged in, the panel's window open. The other shows a window with a title
    /// that begins with @p floorTitle.
    void showWindows(const QString &floorTitle);
    /// Both with their icon in the tray and no interface.
    void showIcons();
    /// Gives both interfaces levels that they have not had.
    void changeLevels();

    qint64 panel() const { return m_panel->processId(); }
    qint64 floor() const { return m_floor->processId(); }

private:
    Stage &m_stage;
    std::unique_ptr<HostLane> m_panelLane;
    std::unique_ptr<HostLane> m_floorLane;
    std::unique_ptr<PanelProgram> m_panel;
    std::unique_ptr<PanelProgram> m_floor;
    int m_level = 1;
};

#endif
