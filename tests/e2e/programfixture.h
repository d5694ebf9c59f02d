#ifndef PROGRAMFIXTURE_H
#define PROGRAMFIXTURE_H

#include "inifile.h"
#include "lane.h"
#include "panelwindows.h"
#include "tray.h"

#include <QObject>

// Peaks of the meter record, of which the largest is 0 dB.
inline constexpr qint32 minus20Db = 214748365;
inline constexpr qint32 minus6Db = 1073741824;

/// What the end-to-end tests share: a desktop and a lane for the whole program; for each test
/// function a sane interface with nothing plugged and no settings. A message that no part of the
/// panel is known to write fails the test that caused it.
class ProgramFixture : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanup();
    void cleanupTestCase();

protected:
    /// Of the display, in pixels.
    virtual QSize screenSize() const { return {1280, 800}; }

    /// Starts the panel and waits for its tray icon.
    bool start(const QString &locale = "en_US");
    /// Waits for a copy that was started otherwise.
    bool follow(std::unique_ptr<PanelProgram> panel);
    /// Plugs a model in and waits until the panel has found it and brought its engine up.
    bool plug(const QString &model, int bus = 0);
    bool unplug();
    /// Clicks the tray icon and waits for the window.
    bool openWindow();
    bool quit();

    Lane &lane() { return *m_lane; }
    SimulatorControl &simulator() { return m_lane->simulator(); }
    const Desktop &desktop() const { return m_desktop; }
    Tray &tray() { return *m_tray; }
    Pointer &pointer() { return *m_pointer; }
    const PanelProgram &panel() const { return *m_panel; }
    const ProgramLog &log() const { return m_panel->log(); }

    std::optional<WindowInfo> window() const { return panelWindow(m_desktop.windows()); }
    std::optional<WindowInfo> settingsDialog() const { return settingsWindow(m_desktop.windows()); }
    PanelPicture picture() const { return shownPanel(m_desktop.windows()); }
    /// Waits until the window shows that many controls; an empty picture if it never does.
    PanelPicture pictureWith(int knobs, int buttons) const;
    /// The picture of a part of the screen once it no longer changes; null if it never does.
    QImage stillPicture(const QRect &area) const;
    /// Waits until the panel shows the levels that the interface has now.
    bool waitForLevels();

    /// What the handle that sent @p command last did, as texts, without meter reads.
    QStringList sentBesides(const QString &command);
    QList<RecordEntry> entriesBesides(const QString &command);
    /// What one handle of the driver did, as sentBesides().
    QStringList sentThrough(int handle);

    /// One of the panel's INI files, called with its extension.
    IniFile iniFile(const QString &name) const { return IniFile(m_lane->settingsFile(name)); }
    /// How the panel lays them out.
    IniLayout iniLayout() const
    {
        return m_lane->sortsSettings() ? IniLayout::Sorted : IniLayout::OrderOfWriting;
    }

    /// Lets @p lines pass in this test, however often: messages that tell of a fault.
    void expectMessages(const QStringList &lines) { m_expectedMessages << lines; }

private:
    void explainFailure();
    QList<RecordEntry> entriesThrough(int handle);

    Desktop m_desktop;
    QStringList m_expectedMessages;
    // In this order: the panel ends before its lane, and that before the display.
    std::unique_ptr<Lane> m_lane;
    std::unique_ptr<PanelProgram> m_panel;
    std::unique_ptr<Pointer> m_pointer;
    std::unique_ptr<Tray> m_tray;
};

#endif
