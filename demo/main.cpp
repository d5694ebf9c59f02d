#include "desktopdemo.h"
#include "interruption.h"
#include "modelnames.h"
#include "story.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QDir>

#include <algorithm>
#include <iostream>

namespace {

enum ExitCode { Done = 0, Failed = 1, Misused = 2, Interrupted = 130 };

const QCommandLineOption programOption(QStringLiteral("program"),
                                       QStringLiteral("The control panel."),
                                       QStringLiteral("file"));
const QCommandLineOption simulatorOption(QStringLiteral("simulator"),
                                         QStringLiteral("The simulated interface."),
                                         QStringLiteral("file"));
const QCommandLineOption simctlOption(QStringLiteral("simctl"),
                                      QStringLiteral("The program that drives the simulator."),
                                      QStringLiteral("file"));
const QCommandLineOption asioOption(
    QStringLiteral("asio"),
    QStringLiteral("The program that plays the ASIO driver; without it, that part is left out."),
    QStringLiteral("file"));
const QCommandLineOption folderOption(QStringLiteral("folder"),
                                      QStringLiteral("Where pictures, record and settings go."),
                                      QStringLiteral("folder"), QStringLiteral("demo"));

/// The user's own language, where @p fallback is not wanted instead.
QString userLocale(const QString &fallback)
{
    for (const char *name : {"LC_ALL", "LC_MESSAGES", "LANG"}) {
        QString value = qEnvironmentVariable(name).section(u'.', 0, 0);
        if (!value.isEmpty())
            return value;
    }
    return fallback;
}

int report(const QString &error)
{
    if (interruption::requested())
        return Interrupted;
    std::cerr << "vesmora-demo: " << error.toLocal8Bit().constData() << std::endl;
    return Failed;
}

int run(const PanelModel &model, const LanePrograms &programs, const QString &folder)
{
    const QString english = QStringLiteral("en_US");
    const QString locale = userLocale(english);
    if (Desktop::userHasOne()) {
        QString error;
        if (!runOnDesktop(model.name, programs, folder, locale, &error))
            return report(error);
        return Done;
    }
    Story story(model, programs, folder);
    // Only texts that exist are worth a picture.
    if (!story.play(locale.startsWith(QStringLiteral("zh")) ? locale : english))
        return report(story.errorString());
    std::cout << "The pictures are in " << folder.toLocal8Bit().constData() << std::endl;
    return Done;
}

/// Null when there is no such model.
const PanelModel *found(const QString &name)
{
    const QList<PanelModel> &models = allPanelModels();
    const auto model = std::find_if(models.cbegin(), models.cend(),
                                    [&](const PanelModel &one) { return one.name == name; });
    return model == models.cend() ? nullptr : &*model;
}

} // namespace

int main(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    interruption::watch();

    QCommandLineParser parser;
    parser.setApplicationDescription(QStringLiteral(
        "Shows the control panel with a simulated interface: on this desktop until it quits, or, "
        "where there is no display, as a story in pictures."));
    parser.addHelpOption();
    parser.addOptions({programOption, simulatorOption, simctlOption, asioOption, folderOption});
    parser.addPositionalArgument(QStringLiteral("model"), modelChoice(), QStringLiteral("[model]"));
    parser.process(application);

    const QStringList words = parser.positionalArguments();
    const PanelModel *model = words.isEmpty() ? &allPanelModels().first() : found(words.first());
    const LanePrograms programs{parser.value(programOption), parser.value(simulatorOption),
                                parser.value(simctlOption), parser.value(asioOption)};
    const bool complete =
        !programs.panel.isEmpty() && !programs.simulator.isEmpty() && !programs.simctl.isEmpty();
    if (!model || words.size() > 1 || !complete) {
        std::cerr << parser.helpText().toLocal8Bit().constData();
        return Misused;
    }
    return run(*model, programs, QDir(parser.value(folderOption)).absolutePath());
}
