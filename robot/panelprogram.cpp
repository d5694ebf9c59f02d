#include "panelprogram.h"

PanelProgram::PanelProgram(ProgramLog::Encoding encoding)
    : m_log(encoding)
{
    m_log.follow(&m_process);
}

PanelProgram::~PanelProgram()
{
    if (isRunning() && m_kill)
        m_kill();
}

bool PanelProgram::waitForExit(std::chrono::milliseconds deadline) const
{
    return waitUntil([this] { return !isRunning(); }, deadline);
}

int PanelProgram::exitCode() const
{
    return m_process.exitStatus() == QProcess::NormalExit ? m_process.exitCode() : -1;
}
