#ifndef HOSTLANE_H
#define HOSTLANE_H

#include "lane.h"

/// The native program with the simulator process.
class HostLane : public Lane
{
public:
    HostLane(const Desktop &desktop, const LanePrograms &programs);
    ~HostLane() override;

    /// Keeps settings and the single-instance marker in @p folder, which outlives us.
    /// Without this they are in a temporary folder. To be called before open().
    void setFolder(const QString &folder) { m_folder = folder; }

    bool bringsOwnTray() const override { return false; }
    bool open() override;
    CommandResult asio(const QStringList &arguments) override;
    bool setScale(double scale) override;
    bool provideWindowsPrograms() override;
    bool hasRestartedShell() const override;
    std::unique_ptr<ChildProcess> startAsio(const QStringList &arguments) override;
    bool sortsSettings() const override { return true; }
    QString settingsFolder() const override;

protected:
    CommandResult simctl(const QStringList &arguments) override;
    ProgramLog::Encoding logEncoding() const override { return ProgramLog::Encoding::Utf8; }
    bool startPanel(ChildProcess &process, const QString &program, const QString &locale) override;
    void killPanel(ChildProcess &process) override;
    QString scratchFolder() const override { return m_temporary.path(); }

private:
    bool makeFolders();
    QString windowsFolder() const { return m_temporary.filePath(QStringLiteral("windows")); }
    void clearStaleMarkers() const;
    QString sub(const QString &name) const { return m_folder + u'/' + name; }
    QProcessEnvironment environment() const;
    QProcessEnvironment panelEnvironment(const QString &locale) const;

    QTemporaryDir m_temporary;
    QString m_folder;
    double m_scale = 1;
};

#endif
