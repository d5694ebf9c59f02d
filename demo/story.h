#ifndef STORY_H
#define STORY_H

#include "expectedpanel.h"
#include "hostlane.h"
#include "panelwindows.h"
#include "tray.h"

#include <QTextStream>

/// Plays the panel's story on a display of its own, looks after each step whether it really
/// happened, and keeps pictures.
class Story
{
public:
    /// @p folder receives the pictures and "record.jsonl".
    Story(const PanelModel &model, const LanePrograms &programs, const QString &folder);

    /// Plays the whole story; false at the first step that did not happen, see errorString().
    bool play(const QString &locale);
    QString errorString() const { return m_error; }

private:
    // The steps, in their order.
    bool dockIcon(const QString &locale);
    bool openWindow();
    bool plug();
    bool useControls();
    bool unplug();
    bool plugAgain();
    bool openSettings();
    bool changeSampleRate();
    bool quit();

    bool prepare();
    QList<PanelControl> used() const;
    bool use(const PanelControl &control);
    bool showsUse(const PanelControl &control) const;
    bool hasReceived(const QStringList &texts, qsizetype since);
    bool showsPanel() const;
    bool showsNoPanel() const;
    std::optional<WindowInfo> window() const { return panelWindow(m_desktop.windows()); }
    PanelPicture picture() const { return shownPanel(m_desktop.windows()); }

    /// Waits for @p condition; says what did not happen when it stays away.
    bool expect(const QString &what, const std::function<bool()> &condition);
    /// Reports a finished step and takes its picture.
    bool saw(const QString &what, const QString &pictureName);
    bool saveRecord();
    bool fail(const QString &why);

    const PanelModel m_model;
    ExpectedPanel m_expected; ///< what has come of the plugged panel so far
    QString m_folder;
    LanePrograms m_programs;
    Desktop m_desktop;
    // In this order: the panel ends before its interface, and that before the display.
    std::unique_ptr<HostLane> m_lane;
    std::unique_ptr<PanelProgram> m_panel;
    std::unique_ptr<Pointer> m_pointer;
    std::unique_ptr<Tray> m_tray;
    int m_pictures = 0;
    QString m_error;
    QTextStream m_out;
};

#endif
