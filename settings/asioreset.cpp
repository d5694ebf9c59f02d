#include "asioreset.h"

#include <QDebug>

#include <windows.h>

namespace {

constexpr wchar_t pipeName[] = LR"(\\.\pipe\VesmoraPannelToASIO)";
constexpr char resetSignal = '1';

} // namespace

void sendAsioReset()
{
    const HANDLE pipe =
        CreateFileW(pipeName, GENERIC_READ | GENERIC_WRITE, 0, nullptr, OPEN_EXISTING, 0, nullptr);
    if (pipe == INVALID_HANDLE_VALUE) {
        const DWORD error = GetLastError();
        qDebug() << "Error: Could not open pipe. Error code:" << error;
        return;
    }
    qDebug() << "Pipe opened successfully.";

    DWORD written = 0;
    if (WriteFile(pipe, &resetSignal, sizeof resetSignal, &written, nullptr)) {
        qDebug() << "ASIO reset signal sent successfully.";
    } else {
        const DWORD error = GetLastError();
        qDebug() << "Error: Failed to send ASIO reset signal. Error code:" << error;
    }
    CloseHandle(pipe);
    qDebug() << "设置通知ASIO逻辑";
}
