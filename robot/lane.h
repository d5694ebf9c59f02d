#ifndef LANE_H
#define LANE_H

#include "desktop.h"
#include "panelprogram.h"
#include "simulatorcontrol.h"

#include <QString>

#include <memory>

/// Where the programs of a lane are.
struct LanePrograms {
    QString panel;
    QString simulator; ///< says "ready", and simulates the interface until it is told to end
    QString simctl;
    QString asio;
};

/// One way to run the control panel with a simulated interface, in surroundings of its own: its
/// settings, its single-instance marker and its device are nobody else's.
class Lane
{
public:
    Lane(const Desktop &desktop, const LanePrograms &programs);
    virtual ~Lane();

    /// The lane and programs that VESMORA_LANE ("host" or "windows"), VESMORA_PANEL,
    /// VESMORA_SIMULATOR, VESMORA_SIMCTL and VESMORA_ASIO name.
    static std::unique_ptr<Lane> fromEnvironment(const Desktop &desktop);

    /// Whether icons have a place without a tray of the desktop, which is then better left out.
    virtual bool bringsOwnTray() const = 0;
    /// Makes the simulated interface ready, with nothing plugged.
    virtual bool open() = 0;
    QString errorString() const { return m_error; }

    /// The size of everything on the screen, 1 for 100 %, for panels started from then on.
    virtual bool setScale(double scale) = 0;

    /// Starts a copy of the panel; null (see errorString()) when it does not start.
    /// @p locale is for example "en_US".
    std::unique_ptr<PanelProgram> launch(const QString &locale = QStringLiteral("en_US"));
    /// As launch(), from a copy of the program's folder without translation files.
    std::unique_ptr<PanelProgram> launchWithoutTranslations(const QString &locale);

    SimulatorControl &simulator() { return m_simulator; }
    /// Runs the program that plays the ASIO driver to its end.
    virtual CommandResult asio(const QStringList &arguments) = 0;
    /// Starts that program beside us; null (see errorString()) when it does not start.
    virtual std::unique_ptr<ChildProcess> startAsio(const QStringList &arguments) = 0;

    /// Gives the panel the programs of Windows that its tray menu starts: stand-ins, where there
    /// are no real ones. To be called before launch().
    virtual bool provideWindowsPrograms() = 0;
    /// Whether Windows' shell was ended and started anew at the panel's request.
    virtual bool hasRestartedShell() const = 0;

    /// Where the panel keeps its INI files.
    virtual QString settingsFolder() const = 0;
    QString settingsFile(const QString &name) const;
    /// The value of a key in an INI file as it is on disk now; invalid when there is none.
    QVariant setting(const QString &file, const QString &key) const;
    /// Whether the panel of this lane writes its INI files sorted by section and key; otherwise
    /// they are in the order of their first writing, with the line ends of Windows.
    virtual bool sortsSettings() const = 0;
    /// Forgets all settings, as before the first start.
    bool clearSettings();

protected:
    /// Runs one of the simulator's commands to its end.
    virtual CommandResult simctl(const QStringList &arguments) = 0;
    virtual ProgramLog::Encoding logEncoding() const = 0;
    virtual bool startPanel(ChildProcess &process, const QString &program,
                            const QString &locale) = 0;
    virtual void killPanel(ChildProcess &process) = 0;
    /// A folder of ours for copies of programs.
    virtual QString scratchFolder() const = 0;

    /// Starts the simulator; false (see errorString()) when it does not become ready.
    bool startSimulator(const QProcessEnvironment &environment);
    /// Ends the simulator and, of what it started, everything.
    void stopSimulator();
    std::unique_ptr<ChildProcess> startBeside(const QString &program, const QStringList &arguments,
                                              const QProcessEnvironment &environment);
    const Desktop &desktop() const { return m_desktop; }
    const LanePrograms &programs() const { return m_programs; }
    bool fail(const QString &why);

private:
    std::unique_ptr<PanelProgram> launchProgram(const QString &program, const QString &locale);

    const Desktop &m_desktop;
    LanePrograms m_programs;
    ChildProcess m_simulatorProcess;
    SimulatorControl m_simulator;
    QString m_error;
};

#endif
