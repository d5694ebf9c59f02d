#ifndef WAYSOUT_H
#define WAYSOUT_H

#include "singleinstance.h"

#include <QSharedMemory>
#include <QTest>

/// Rows of the ways out of claimSingleInstance().
inline void addWaysOut()
{
    QTest::addColumn<bool>("isTaken");
    QTest::addColumn<bool>("hasName");
    QTest::newRow("first copy") << false << true;
    QTest::newRow("second copy") << true << true;
    QTest::newRow("no marker") << false << false;
}

/// Lets a copy start that takes the way out of the current row.
inline void takeWayOut(QSystemSemaphore &semaphore, const QString &markerKey)
{
    QFETCH(bool, isTaken);
    QFETCH(bool, hasName);
    QSharedMemory running(markerKey);
    QVERIFY(!isTaken || running.create(1));
    QSharedMemory marker(hasName ? markerKey : QString());
    claimSingleInstance(semaphore, marker);
}

#endif
