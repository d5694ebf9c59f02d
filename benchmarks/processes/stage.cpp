#include "stage.h"

#include "comparison.h"
#include "pointer.h"
#include "tray.h"
#include "waiting.h"

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QThread>

#include <algorithm>

namespace {

QString told(const char *variable)
{
    QString path = qEnvironmentVariable(variable);
    require(!path.isEmpty(), QLatin1String(variable) + QStringLiteral(" is not set"));
    return path;
}

bool showsSomething(const QImage &picture)
{
    for (int y = 0; y < picture.height(); ++y) {
        for (int x = 0; x < picture.width(); ++x) {
            if (picture.pixel(x, y) != picture.pixel(0, 0))
                return true;
        }
    }
    return false;
}

bool isPainted(const WindowSystem &windows, const QString &title)
{
    const QList<WindowInfo> found = windows.visibleWindows(title);
    return std::any_of(found.begin(), found.end(), [&](const WindowInfo &window) {
        return !window.popup && !window.title.isEmpty()
            && showsSomething(windows.picture(window.area));
    });
}

} // namespace

QString panelProgram()
{
    return told("VESMORA_PANEL");
}

QString floorProgram(const QString &name)
{
    return told("VESMORA_FLOORS") + u'/' + name;
}

Stage::Stage()
{
    require(m_desktop.startPrivate(), m_desktop.errorString());
    const QString display = m_desktop.environment().value(QStringLiteral("DISPLAY"));
    m_tray = std::make_unique<TrayManager>(display.toLatin1());
}

std::unique_ptr<HostLane> Stage::surroundings(const QString &program) const
{
    const LanePrograms programs{.panel = program,
                                .simulator = told("VESMORA_SIMULATOR"),
                                .simctl = told("VESMORA_SIMCTL"),
                                .asio = {}};
    auto lane = std::make_unique<HostLane>(m_desktop, programs);
    require(lane->open(), lane->errorString());
    return lane;
}

void Stage::waitForIcon()
{
    require(m_tray->waitForPaintedIcon(usualDeadline), QStringLiteral("No icon in the tray"));
}

void Stage::waitForWindow(const QString &title)
{
    // Asked more often than by waitUntil(), for the time that it takes is a figure.
    const QDeadlineTimer deadline(usualDeadline);
    while (!isPainted(m_desktop.windows(), title)) {
        require(!deadline.hasExpired(), QStringLiteral("No window ") + title);
        QThread::msleep(1);
    }
}

void Stage::clickIcon()
{
    Pointer pointer(m_desktop.environment());
    require(Tray(m_desktop.windows(), pointer).click(), QStringLiteral("No icon to click"));
}

std::unique_ptr<PanelProgram> start(HostLane &lane)
{
    auto program = lane.launch();
    require(program != nullptr, lane.errorString());
    return program;
}

void letPass(std::chrono::milliseconds duration)
{
    waitUntil([] { return false; }, duration);
}
