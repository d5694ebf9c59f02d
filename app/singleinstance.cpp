#include "singleinstance.h"

#include <QCoreApplication>
#include <QDebug>
#include <QSharedMemory>
#include <QSystemSemaphore>

namespace {

constexpr int markerSize = 1; // byte; only its existence counts
constexpr int cannotMark = -1;

} // namespace

std::optional<int> claimSingleInstance(QSystemSemaphore &semaphore, QSharedMemory &marker)
{
    semaphore.acquire();
    if (marker.attach(QSharedMemory::ReadWrite)) {
        semaphore.release(1);
        qDebug() << "Vesmora Mixer 已经在运行中。";
        QCoreApplication::quit();
        return 0;
    }
    const bool marked = marker.create(markerSize, QSharedMemory::ReadWrite);
    semaphore.release(1);
    if (marked)
        return std::nullopt;
    qDebug() << "无法创建共享内存，程序退出。";
    return cannotMark;
}
