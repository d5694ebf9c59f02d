#include "settingsfixture.h"

#include "listenerlog.h"
#include "otgtimers.h"

#include <QEventLoop>
#include <QSignalBlocker>
#include <QTimer>

void SettingsFixture::openDialog()
{
    m_dialog = std::make_unique<Settings>();
    QTRY_VERIFY_WITH_TIMEOUT(hasLogged(startLog().constLast()), patience);
}

void SettingsFixture::openConnectedDialog()
{
    plug();
    openDialog();
    QVERIFY(m_dialog->createDevice());
    takeLog();
    takeEvents();
}

QStringList SettingsFixture::startLog()
{
    return {"Settings dialog created.", "Pipe created successfully.",
            "ThreadSettingsPip initialized.", listenerlog::waiting};
}

QComboBox &SettingsFixture::box(const char *name)
{
    auto *found = m_dialog->findChild<QComboBox *>(QString::fromLatin1(name));
    if (!found)
        qFatal("There is no combo box %s.", name);
    return *found;
}

void SettingsFixture::choose(const char *name, const QString &text)
{
    QComboBox &chosen = box(name);
    if (chosen.currentText() == text)
        presetBox(name, chosen.itemText(chosen.currentIndex() == 0 ? 1 : 0));
    chosen.setCurrentText(text);
}

void SettingsFixture::presetBox(const char *name, const QString &text)
{
    const QSignalBlocker unnoticed(&box(name));
    box(name).setCurrentText(text);
    QCOMPARE(box(name).currentText(), text);
}

QStringList SettingsFixture::texts()
{
    QStringList all;
    for (const char *name : {"BufferSize", "UsbLatency", "SampleRate", "SafeMode"})
        all << box(name).currentText();
    return all;
}

void SettingsFixture::finishOtgCycles()
{
    QTRY_VERIFY_WITH_TIMEOUT(!isOtgPending(*m_dialog), patience);
}

void SettingsFixture::passTime(int milliseconds)
{
    QEventLoop loop;
    QTimer::singleShot(milliseconds, Qt::PreciseTimer, &loop, &QEventLoop::quit);
    loop.exec();
}

void SettingsFixture::init()
{
    observe();
}

void SettingsFixture::cleanup()
{
    m_dialog.reset();
    stopObserving();
    QTRY_COMPARE_WITH_TIMEOUT(openHandles(), 0u, patience);
}
