#include "asioreset.h"

#include "vesmorapipes.h"

#include <QDebug>

#include <windows.h>

void sendAsioReset()
{
    const HANDLE pipe = CreateFileW(VESMORA_RESET_PIPE, GENERIC_READ | GENERIC_WRITE, 0, nullptr,
                                    OPEN_EXISTING, 0, nullptr);
    if (pipe == INVALID_HANDLE_VALUE) {
        const DWORD error = GetLastError();
        qDebug() << "Error: Could not open pipe. Error code:" << error;
        return;
    }
    qDebug() << "Pipe opened successfully.";

    const char signal = VESMORA_RESET_SIGNAL;
    DWORD written = 0;
    if (WriteFile(pipe, &signal, sizeof signal, &written, nullptr)) {
        qDebug() << "ASIO reset signal sent successfully.";
    } else {
        const DWORD error = GetLastError();
        qDebug() << "Error: Failed to send ASIO reset signal. Error code:" << error;
    }
    CloseHandle(pipe);
    qDebug() << "设置通知ASIO逻辑";
}
