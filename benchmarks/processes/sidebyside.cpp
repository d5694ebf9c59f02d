#include "sidebyside.h"

#include "comparison.h"

namespace {

void plug(HostLane &lane)
{
    require(lane.simulator().plug(QStringLiteral("rx1")), lane.simulator().errorString());
}

} // namespace

SideBySide::SideBySide(Stage &stage, const QString &floorProgram)
    : m_stage(stage)
    , m_panelLane(stage.surroundings(panelProgram()))
    , m_floorLane(stage.surroundings(floorProgram))
{ }

void SideBySide::showWindows(const QString &floorTitle)
{
    plug(*m_panelLane);
    plug(*m_floorLane);
    m_panel = start(*m_panelLane);
    m_stage.waitForIcon();
    // A window without a panel says in Chinese that there is none, which takes a font of its own.
    require(m_panel->log().waitFor(QStringLiteral("Device found")), QStringLiteral("No panel"));
    m_stage.clickIcon();
    m_stage.waitForWindow(QStringLiteral("Vesmora RX1"));
    m_floor = start(*m_floorLane);
    m_stage.waitForWindow(floorTitle);
}

void SideBySide::showIcons()
{
    m_panel = start(*m_panelLane);
    m_stage.waitForIcon();
    m_floor = start(*m_floorLane);
    m_stage.waitForIcon();
}

void SideBySide::changeLevels()
{
    constexpr int step = 12345677;
    m_level = (m_level + step) % (1 << 30);
    for (const auto &lane : {m_panelLane.get(), m_floorLane.get()})
        require(lane->simulator().setLevels({m_level, m_level, m_level / 2, m_level / 2}),
                lane->simulator().errorString());
}
