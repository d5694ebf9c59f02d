#include "settingstest.h"

#include <QDir>
#include <QEventLoop>
#include <QFile>
#include <QRegularExpression>
#include <QSignalBlocker>
#include <QTimer>

#include <algorithm>

namespace {

/// What Qt says of the offscreen platform, and of Wine.
bool isPlatformRemark(const QString &line)
{
    return line.startsWith(u"This plugin does not support "_qs)
        || line.startsWith(u"EnableNonClientDpiScaling() failed "_qs);
}

} // namespace

SettingsTest::SettingsTest(Device device)
{
    // The native lane looks there for pipes, as the simulator has it do otherwise.
    if (device == Device::None)
        qputenv("VESMORA_HOST_DIR", m_pipeFolder.path().toLocal8Bit());
    else
        m_simulator = std::make_unique<TestSimulator>();
}

void SettingsTest::plug()
{
    QVERIFY2(m_simulator->plug(VESMORA_PID_RX1), qPrintable(m_simulator->errorString()));
    QVERIFY(m_simulator->clearRecord());
}

void SettingsTest::openDialog()
{
    m_dialog = std::make_unique<Settings>();
    QTRY_VERIFY_WITH_TIMEOUT(hasLogged(startLog().constLast()), patience);
}

void SettingsTest::openConnectedDialog()
{
    plug();
    openDialog();
    QVERIFY(m_dialog->createDevice());
    takeLog();
    takeEvents();
}

QStringList SettingsTest::startLog()
{
    return {"Settings dialog created.", "Pipe created successfully.",
            "ThreadSettingsPip initialized.", "ThreadSettingsPip is running waiting Asio Info..."};
}

QComboBox &SettingsTest::box(const char *name)
{
    auto *found = m_dialog->findChild<QComboBox *>(QString::fromLatin1(name));
    if (!found)
        qFatal("There is no combo box %s.", name);
    return *found;
}

void SettingsTest::choose(const char *name, const QString &text)
{
    QComboBox &chosen = box(name);
    if (chosen.currentText() == text)
        presetBox(name, chosen.itemText(chosen.currentIndex() == 0 ? 1 : 0));
    chosen.setCurrentText(text);
}

void SettingsTest::presetBox(const char *name, const QString &text)
{
    const QSignalBlocker unnoticed(&box(name));
    box(name).setCurrentText(text);
    QCOMPARE(box(name).currentText(), text);
}

QStringList SettingsTest::texts()
{
    QStringList all;
    for (const char *name : {"BufferSize", "UsbLatency", "SampleRate", "SafeMode"})
        all << box(name).currentText();
    return all;
}

QStringList SettingsTest::takeLog()
{
    static const QRegularExpression address(QStringLiteral("^(Buffer size:) 0x[0-9a-f]+$"));
    QStringList lines;
    const QStringList all = m_log->take();
    for (QString line : all) {
        if (!isPlatformRemark(line))
            lines << line.replace(address, QStringLiteral("\\1 (address)"));
    }
    return lines;
}

QStringList SettingsTest::takeSent()
{
    const QStringList requests = m_simulator->requests();
    m_simulator->clearRecord();
    return requests;
}

QStringList SettingsTest::takeEvents()
{
    // A round trip after the closing of a connection finds that closing recorded.
    m_simulator->state();
    const QStringList events = m_simulator->events();
    m_simulator->clearRecord();
    return events;
}

QString SettingsTest::settingsFile() const
{
    return m_folder + QStringLiteral("/setting.ini");
}

QStringList SettingsTest::saved() const
{
    QStringList entries;
    QString section;
    const QStringList lines = iniLines(settingsFile());
    for (const QString &line : lines) {
        if (line.startsWith(u'['))
            section = line.mid(1, line.size() - 2);
        else
            entries << section + u'/' + line;
    }
    entries.sort();
    return entries;
}

void SettingsTest::writeSettings(const QStringList &entries)
{
    QByteArray text;
    for (const QString &entry : entries) {
        const QString section = entry.section(u'/', 0, 0);
        text += u"[%1]\n%2\n"_qs.arg(section, entry.section(u'/', 1)).toUtf8();
    }
    QFile file(settingsFile());
    QVERIFY(file.open(QIODevice::WriteOnly));
    QCOMPARE(file.write(text), text.size());
}

void SettingsTest::finishOtgCycles()
{
    // Each half starts the next before its own timer is seen to rest.
    const auto isPending = [this] {
        const auto timers = m_dialog->findChildren<QTimer *>(QString(), Qt::FindDirectChildrenOnly);
        return std::any_of(timers.begin(), timers.end(),
                           [](const QTimer *timer) { return timer->isActive(); });
    };
    QTRY_VERIFY_WITH_TIMEOUT(!isPending(), patience);
}

void SettingsTest::passTime(int milliseconds)
{
    QEventLoop loop;
    QTimer::singleShot(milliseconds, Qt::PreciseTimer, &loop, &QEventLoop::quit);
    loop.exec();
}

void SettingsTest::init()
{
    if (m_simulator)
        QVERIFY2(m_simulator->reset(), qPrintable(m_simulator->errorString()));
    m_folder = freshDataFolder();
    m_log = std::make_unique<LogCapture>();
}

void SettingsTest::cleanup()
{
    m_dialog.reset();
    m_log.reset();
    if (m_simulator)
        QTRY_COMPARE_WITH_TIMEOUT(m_simulator->state().openHandles, 0u, patience);
}
