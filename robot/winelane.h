#ifndef WINELANE_H
#define WINELANE_H

#include "lane.h"

/// The Windows program under Wine with the simulated kernel driver.
///
/// To be run by tools/wine/with-prefix, which gives it a Wine prefix and all else that Wine needs.
class WineLane : public Lane
{
public:
    WineLane(const Desktop &desktop, const LanePrograms &programs);
    ~WineLane() override;

    // Wine's icons sometimes stay empty and deaf in another tray, never in its own.
    bool bringsOwnTray() const override { return true; }
    bool open() override;
    CommandResult asio(const QStringList &arguments) override;
    bool setScale(double scale) override;
    bool provideWindowsPrograms() override { return true; }
    bool hasRestartedShell() const override;
    std::unique_ptr<ChildProcess> startAsio(const QStringList &arguments) override;
    bool sortsSettings() const override { return false; }
    QString settingsFolder() const override;

protected:
    CommandResult simctl(const QStringList &arguments) override;
    ProgramLog::Encoding logEncoding() const override { return ProgramLog::Encoding::Gbk; }
    bool startPanel(ChildProcess &process, const QString &program, const QString &locale) override;
    void killPanel(ChildProcess &process) override;
    QString scratchFolder() const override { return m_temporary.path(); }

private:
    bool makeLocale(const QString &locale);
    CommandResult wine(const QStringList &arguments) const;
    QProcessEnvironment environment(const QString &locale = QStringLiteral("en_US")) const;

    QTemporaryDir m_temporary;
    QString m_prefix;
    bool m_isScaled = false;
};

#endif
