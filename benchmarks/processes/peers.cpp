#include "sidebyside.h"
#include "soundserver.h"
#include "subjects.h"
#include "usage.h"

#include <QElapsedTimer>
#include <QStandardPaths>

using namespace std::chrono_literals;

namespace {

constexpr auto settling = 2500ms;

struct Peer {
    QLatin1StringView program;
    QLatin1StringView title; ///< its window's, as it begins
};
constexpr Peer peers[] = {
    {QLatin1StringView("pavucontrol-qt"), QLatin1StringView("Volume Control")},
    {QLatin1StringView("qasmixer"), QLatin1StringView("QasMixer")},
};

/// What a user waits for: the panel comes up as an icon, its peers as windows.
Cost costOfStart(HostLane &lane, const std::function<void()> &appear)
{
    QElapsedTimer wall;
    wall.start();
    const auto program = start(lane);
    appear();
    const double processor = processorTimeOf(program->processId());
    return {static_cast<double>(wall.nsecsElapsed()) / 1e3, processor};
}

void compareStart(const Peer &peer, const QString &program, const Effort &effort)
{
    Stage stage;
    const auto panelLane = stage.surroundings(panelProgram());
    const auto peerLane = stage.surroundings(program);
    compare(
        {.name = QStringLiteral("start to the user"), .floor = peer.program, .goal = 1}, effort,
        [&] { return costOfStart(*panelLane, [&] { stage.waitForIcon(); }); },
        [&] { return costOfStart(*peerLane, [&] { stage.waitForWindow(peer.title); }); });
}

void compareMemory(const Peer &peer, const QString &program, int turns)
{
    Stage stage;
    QList<double> ofPanel;
    QList<double> ofPeer;
    for (int turn = 0; turn < turns; ++turn) {
        SideBySide sides(stage, program);
        sides.showWindows(peer.title);
        letPass(settling);
        ofPanel.append(memoryOf(sides.panel()).proportional);
        ofPeer.append(memoryOf(sides.floor()).proportional);
    }
    report({.name = QStringLiteral("memory, window shown"), .floor = peer.program, .goal = 1},
           QStringLiteral("PSS"), QStringLiteral("KiB"), ofPanel, ofPeer);
}

} // namespace

void measurePeers(const Patience &patience)
{
    const SoundServer server;
    for (const Peer &peer : peers) {
        const QString program = QStandardPaths::findExecutable(peer.program);
        require(!program.isEmpty(), peer.program + QStringLiteral(" is not installed"));
        compareStart(peer, program, patience.effort);
        compareMemory(peer, program, patience.turns);
    }
}
