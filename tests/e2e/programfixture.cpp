#include "programfixture.h"

#include "knownmessages.h"
#include "waiting.h"

#include <QDir>
#include <QRegularExpression>
#include <QTest>

#include <algorithm>
#include <utility>

namespace {

/// Without the meter reads, which come at their own time.
QList<RecordEntry> ofHandle(QList<RecordEntry> entries, int handle)
{
    entries.removeIf([handle](const RecordEntry &entry) {
        return entry.handle() != handle || entry.command() == "readMeterData";
    });
    return entries;
}

QStringList texts(const QList<RecordEntry> &entries)
{
    QStringList texts;
    for (const RecordEntry &entry : entries)
        texts << entry.text();
    return texts;
}

} // namespace

void ProgramFixture::initTestCase()
{
    QVERIFY2(m_desktop.startPrivate(screenSize()), qPrintable(m_desktop.errorString()));
    m_pointer = std::make_unique<Pointer>(m_desktop.environment());
    m_tray = std::make_unique<Tray>(m_desktop.windows(), *m_pointer);
    m_lane = Lane::fromEnvironment(m_desktop);
    QVERIFY2(m_lane->bringsOwnTray() || m_desktop.ensureTray(),
             qPrintable(m_desktop.errorString()));
    QVERIFY2(m_lane->open(), qPrintable(m_lane->errorString()));
}

void ProgramFixture::init()
{
    QVERIFY2(simulator().reset(), qPrintable(simulator().errorString()));
    QVERIFY(lane().clearSettings());
    m_expectedMessages.clear();
}

void ProgramFixture::cleanup()
{
    if (!m_panel)
        return;
    if (QTest::currentTestFailed())
        explainFailure();
    QStringList unknown = unknownMessages(log().lines());
    unknown.removeIf([this](const QString &line) { return m_expectedMessages.contains(line); });
    m_panel.reset();
    QVERIFY(waitUntil([this] { return m_tray->icons().isEmpty(); }));
    QVERIFY2(unknown.isEmpty(), qPrintable(unknown.join(u'\n')));
}

/// Says what could be seen when a test failed.
void ProgramFixture::explainFailure()
{
    QString name = QString::fromLatin1(QTest::currentTestFunction());
    if (QTest::currentDataTag())
        name += u'-' + QString::fromLatin1(QTest::currentDataTag());
    name.replace(QRegularExpression("[^A-Za-z0-9-]"), "_");
    const QString picture = QDir::current().filePath(name + ".png");
    qInfo().noquote() << "The screen:" << (m_desktop.saveScreen(picture) ? picture : QString());
    if (!simulator().errorString().isEmpty())
        qInfo().noquote() << "The simulator's last refusal:" << simulator().errorString();
    qInfo().noquote() << "The end of the log:\n"
                      << log().lines().mid(qMax(0, log().lines().size() - 60)).join(u'\n');
    QStringList record;
    const QList<RecordEntry> entries = simulator().record();
    for (const RecordEntry &entry : entries.mid(qMax(0, entries.size() - 60)))
        record << QString("%1: %2").arg(entry.handle()).arg(entry.text());
    qInfo().noquote() << "The end of the record:\n" << record.join(u'\n');
}

void ProgramFixture::cleanupTestCase()
{
    m_lane.reset();
}

bool ProgramFixture::start(const QString &locale)
{
    if (follow(lane().launch(locale)))
        return true;
    // Wine's tray now and then leaves an icon empty and deaf, and the next one is well. A program
    // that has ended gets no second chance.
    if (!lane().bringsOwnTray() || !m_panel || !m_panel->isRunning())
        return false;
    m_panel.reset();
    return waitUntil([this] { return m_tray->icons().isEmpty(); }) && follow(lane().launch(locale));
}

bool ProgramFixture::follow(std::unique_ptr<PanelProgram> panel)
{
    m_panel = std::move(panel);
    return m_panel && m_tray->waitForIcon();
}

bool ProgramFixture::plug(const QString &model, int bus)
{
    const QString found = "Device found with PID:";
    const QString ready = "设置初始化完成";
    const qsizetype foundBefore = log().count(found);
    const qsizetype readyBefore = log().count(ready);
    return simulator().plug(model, bus) && log().waitFor(found, foundBefore + 1)
        && log().waitFor(ready, readyBefore + 1);
}

bool ProgramFixture::unplug()
{
    const QString lost = "Cleared all widgets from base layout.";
    const qsizetype before = log().count(lost);
    return simulator().unplug() && log().waitFor(lost, before + 1);
}

bool ProgramFixture::openWindow()
{
    return m_tray->click() && waitUntil([this] { return window().has_value(); });
}

bool ProgramFixture::quit()
{
    return m_tray->choose(Tray::Quit) && m_panel->waitForExit();
}

PanelPicture ProgramFixture::pictureWith(int knobs, int buttons) const
{
    PanelPicture found;
    const bool isComplete = waitUntil([&] {
        found = picture();
        return found.knobs().size() == knobs && found.buttons().size() == buttons;
    });
    return isComplete ? found : PanelPicture();
}

QImage ProgramFixture::stillPicture(const QRect &area) const
{
    QImage before;
    QImage now;
    const bool isStill = waitUntil([&] {
        before = std::exchange(now, desktop().windows().picture(area));
        return !now.isNull() && now == before;
    });
    return isStill ? now : QImage();
}

bool ProgramFixture::waitForLevels()
{
    const auto reads = [this] {
        const QList<RecordEntry> entries = simulator().record();
        return std::count_if(entries.cbegin(), entries.cend(), [](const RecordEntry &entry) {
            return entry.command() == "readMeterData";
        });
    };
    // The first read from now may have begun before; the third comes after the second was shown.
    const auto first = reads();
    return waitUntil([&] { return reads() >= first + 3; });
}

QStringList ProgramFixture::sentBesides(const QString &command)
{
    return texts(entriesBesides(command));
}

QStringList ProgramFixture::sentThrough(int handle)
{
    return texts(entriesThrough(handle));
}

QList<RecordEntry> ProgramFixture::entriesBesides(const QString &command)
{
    const QList<RecordEntry> all = simulator().record();
    const auto last = std::find_if(all.crbegin(), all.crend(), [&](const RecordEntry &entry) {
        return entry.command() == command;
    });
    return last == all.crend() ? QList<RecordEntry>() : ofHandle(all, last->handle());
}

QList<RecordEntry> ProgramFixture::entriesThrough(int handle)
{
    return ofHandle(simulator().record(), handle);
}
