#include "livepanel.h"

#include "datafile.h"
#include "models.h"

#include <QCoreApplication>
#include <QDebug>
#include <QFile>
#include <QStorageInfo>

#include <cstring>

namespace {

const QString panelFile = QStringLiteral("rx1.ini");
const QString floorFile = QStringLiteral("floor.ini");

template <typename Control> Control &found(const QWidget &panel, const char *name)
{
    auto *control = panel.findChild<Control *>(QLatin1String(name));
    require(control, QStringLiteral("The panel has no ") + QLatin1String(name));
    return *control;
}

} // namespace

LivePanel::LivePanel()
{
    require(m_simulator.open() && m_simulator.reset() && m_simulator.plug(VESMORA_PID_RX1),
            m_simulator.errorString());
    QFile::remove(dataFile(panelFile));
    QFile::remove(dataFile(floorFile));
    m_panel.reset(findModel(VESMORA_PID_RX1)->createPanel());
    m_panel->show();
    knob("Headphone").setValue(volume);
    knob("Mic").setValue(gain);
    require(QFile::copy(dataFile(panelFile), dataFile(floorFile)), dataFile(floorFile));
    m_bare.emplace(floorFile);
}

Knob &LivePanel::knob(const char *name)
{
    return found<Knob>(*m_panel, name);
}

Button &LivePanel::button(const char *name)
{
    return found<Button>(*m_panel, name);
}

MixerBlock LivePanel::deviceBlock()
{
    const QList<double> values = m_simulator.mixerBlock();
    MixerBlock block{};
    require(values.size() * sizeof(double) == sizeof block, m_simulator.errorString());
    std::memcpy(&block, values.constData(), sizeof block);
    return block;
}

void LivePanel::compareEvent(const QString &name, const Effort &effort, const Work &event,
                             const std::function<void(bool logs)> &floor, const Work &look)
{
    const Work rest = [this] { comeToRest(); };
    const Work floorWithLog = [&] { floor(true); };
    requireSame(name, event, floorWithLog);
    const QString fileSystem =
        QString::fromLatin1(QStorageInfo(dataFile(panelFile)).fileSystemType());
    Figure figure{.name = QStringLiteral("%1, saved on %2").arg(name, fileSystem),
                  .floor = QStringLiteral("bare requests, log and saving"),
                  .goal = 1.05};
    compareRepeated(figure, effort, event, floorWithLog, rest);
    if (look) {
        figure.floor = QStringLiteral("the same and one style sheet");
        const Work floorWithLook = [&] {
            look();
            floor(true);
        };
        compareRepeated(figure, effort, event, floorWithLook, rest);
    }
    figure.floor = QStringLiteral("bare requests and saving");
    figure.goal = 0;
    compareRepeated(
        figure, effort, event, [&] { floor(false); }, rest);
}

void LivePanel::requireSame(const QString &name, const Work &event, const Work &floor)
{
    const auto done = [this](const Work &work, const QString &file) {
        comeToRest();
        return traceOf(m_simulator, [&] {
            for (int i = 0; i < 2; ++i) {
                work();
                qDebug() << contentsOf(file); // as one more line to compare
            }
        });
    };
    requireSameTraces(name, done(event, panelFile), done(floor, floorFile));
}

/// Lets the window paint, outside of what is measured.
void LivePanel::comeToRest()
{
    QCoreApplication::processEvents();
    require(m_simulator.clearRecord(), m_simulator.errorString());
}
