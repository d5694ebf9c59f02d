#include "boxwatcher.h"

#include <QAbstractButton>
#include <QApplication>
#include <QTest>

using namespace std::chrono_literals;

BoxWatcher::BoxWatcher()
{
    m_timer.callOnTimeout(this, &BoxWatcher::look);
    m_timer.start(5ms);
}

void BoxWatcher::look()
{
    auto *box = qobject_cast<QMessageBox *>(QApplication::activeModalWidget());
    if (!box)
        return;
    m_boxes.append({box->windowTitle(), box->text(), box->icon(), box->standardButtons(),
                    box->parent() != nullptr});
    box->buttons().constFirst()->click();
}

void verifyOneWarning(const BoxWatcher &watcher, const QString &title, const QString &text)
{
    QCOMPARE(watcher.boxes().size(), 1);
    const BoxWatcher::Seen &box = watcher.boxes().constFirst();
    QCOMPARE(box.title, title);
    QCOMPARE(box.text, text);
    QCOMPARE(box.icon, QMessageBox::Warning);
    QCOMPARE(box.buttons, QMessageBox::StandardButtons(QMessageBox::Ok));
    QVERIFY(!box.hasParent);
}
