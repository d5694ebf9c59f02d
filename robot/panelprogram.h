#ifndef PANELPROGRAM_H
#define PANELPROGRAM_H

#include "childprocess.h"
#include "programlog.h"

/// One copy of the control panel, started by a Lane. A copy that still runs is killed with it.
class PanelProgram
{
public:
    explicit PanelProgram(ProgramLog::Encoding encoding);
    ~PanelProgram();

    const ProgramLog &log() const { return m_log; }
    qint64 processId() const { return m_process.processId(); }
    bool isRunning() const { return m_process.state() != QProcess::NotRunning; }
    /// Waits for the program to end by itself.
    bool waitForExit(std::chrono::milliseconds deadline = usualDeadline) const;
    /// Only of a program that ended; -1 when it crashed.
    int exitCode() const;

private:
    friend class Lane;

    ProgramLog m_log;
    ChildProcess m_process;
    std::function<void()> m_kill;
};

#endif
