#include "figures.h"

#include "bareplug.h"
#include "datafile.h"
#include "goldenstart.h"
#include "panelmodel.h"
#include "pluggedwindow.h"
#include "tracing.h"

#include <QFile>
#include <QSettings>

#include <optional>

namespace {

const QString engineFile = QStringLiteral("setting.ini");
const QString floorFile = QStringLiteral("floor.ini");

constexpr double pauses = 100000; // microseconds that the audio engine waits while it comes up

/// Has a panel find what a user may have left.
void saveState(const PanelModel &model)
{
    for (const QString &file : {engineFile, floorFile, model.file()})
        QFile::remove(dataFile(file));
    QSettings file(dataFile(model.file()), QSettings::IniFormat);
    const QStringList entries = goldenReplay(model.name).saved;
    for (const QString &entry : entries)
        file.setValue(entry.section(u'=', 0, 0), entry.section(u'=', 1));
}

struct Costs {
    QList<Cost> replayed; ///< from plugging in until the window has looked
    QList<Cost> painted;  ///< and until the panel has been painted
    QList<Cost> painting; ///< of all the window, once more
    QList<Cost> bare;
};

/// The window and its floor, which take turns with the device.
class Contest
{
public:
    explicit Contest(const PanelModel &model)
        : m_window(model.identifier())
    {
        // The audio engine is brought up but once.
        m_window.plug();
        m_window.detect();
        m_window.unplug();

        m_window.plug();
        const Trace product = traceOf(m_window.simulator(), [this] { m_window.detect(); });
        m_window.unplug();
        const QByteArray saved = contentsOf(model.file());
        require(QFile::copy(dataFile(model.file()), dataFile(floorFile)), dataFile(floorFile));
        m_bare.emplace(model, product, dataFile(engineFile), dataFile(floorFile));

        beginBare();
        const Trace floor = traceOf(m_window.simulator(), [this] { m_bare->run(); });
        endBare();
        requireSameTraces(QStringLiteral("plug of ") + model.name, product, floor);
        require(contentsOf(floorFile) == saved, dataFile(floorFile));
    }

    void measure(Costs &costs)
    {
        m_window.plug();
        costs.replayed.append(costOf([this] { m_window.detect(); }));
        costs.painted.append(costs.replayed.constLast()
                             + costOf([this] { m_window.awaitPainting(); }));
        costs.painting.append(costOf([this] { m_window.repaint(); }));
        m_window.unplug();

        beginBare();
        costs.bare.append(costOf([this] { m_bare->run(); }));
        endBare();
    }

private:
    void beginBare()
    {
        m_window.plug();
        m_bare->prepare();
        require(m_window.simulator().clearRecord(), m_window.simulator().errorString());
    }
    void endBare()
    {
        m_bare->release();
        require(m_window.simulator().unplug(), m_window.simulator().errorString());
    }

    PluggedWindow m_window;
    std::optional<BarePlug> m_bare;
};

QList<Cost> withoutPauses(QList<Cost> costs)
{
    for (Cost &cost : costs)
        cost.wall -= pauses;
    return costs;
}

void reportReplayed(const QString &name, const Costs &costs)
{
    Figure figure{.name = name + QStringLiteral(" until replayed"),
                  .floor = QStringLiteral("bare requests, log, files and pauses"),
                  .goal = 1.1};
    report(figure, costs.replayed, costs.bare);
    figure.floor = QStringLiteral("the same, pauses left out");
    report(figure, withoutPauses(costs.replayed), withoutPauses(costs.bare));
}

void reportPainted(const QString &name, const Costs &costs)
{
    QList<Cost> floor = withoutPauses(costs.bare);
    for (qsizetype i = 0; i < floor.size(); ++i)
        floor[i] = floor[i] * 1.3 + costs.painting[i];
    report({.name = name + QStringLiteral(" until painted"),
            .floor = QStringLiteral("1.3 × that and one painting"),
            .goal = 1.0},
           withoutPauses(costs.painted), floor);
}

} // namespace

void measurePlug(const Effort &effort)
{
    const Log log;
    for (const PanelModel &model : allPanelModels()) {
        saveState(model);
        Contest contest(model);
        Costs unused;
        contest.measure(unused);
        Costs costs;
        for (int pair = 0; pair < effort.pairs; ++pair)
            contest.measure(costs);
        const QString name = QStringLiteral("plug of ") + model.name.toUpper();
        reportReplayed(name, costs);
        reportPainted(name, costs);
    }
}
