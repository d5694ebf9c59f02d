#ifndef MIXERFIXTURE_H
#define MIXERFIXTURE_H

#include "expectedpanel.h"
#include "programfixture.h"

#include <optional>

/// What every model's panel has to do in the running program: what the mouse does reaches the
/// interface, the file and the log.
class MixerFixture : public ProgramFixture
{
    Q_OBJECT

public:
    explicit MixerFixture(const QString &model);

private slots:
    void theFirstStartSendsTheDefaultsInOrderAndSavesThem();
    void theFirstStartSendsThesePackets();
    void storedValuesAreClampedSentAndSavedBack();
    void everyKnobFollows_data();
    void everyKnobFollows();
    void everyButtonIsSentTwiceAndSaved();
    void muteWinsOverDimAndLeavesOtherOutputsAlone();
    void theStateSetByHandComesBackWhenPluggedInAgain();
    void levelsChangeTheNumbersBesideTheirKnobs();
    void aMeterThatCannotBeReadIsOnlyLogged();

protected:
    const PanelModel &model() const { return m_model; }
    /// Starts the panel with its model plugged and its window open, and these values stored, by
    /// "Section/Key"; what it does meanwhile is forgotten.
    bool showPanel(const QMap<QString, QString> &stored = {});
    /// The same with stored values that keep every control away from its ends.
    bool showStoredPanel();
    /// What the panel has to do; compare() looks whether it does it.
    ExpectedPanel &expected() { return *m_expected; }
    /// Compares all that the panel has sent and logged since it was shown.
    void compare();
    bool waitForSaved(const PanelControl &control, int value);

    /// The whole panel, as soon as it is there.
    PanelPicture wholePicture() const;
    /// The middle of a knob or button.
    QPoint place(const PanelControl &control) const;

private:
    /// Uses a knob that shows its stored value, and checks what comes of it.
    using Gesture = void (MixerFixture::*)(const PanelControl &, const PanelPicture::Knob &);

    void turnByWheel(const PanelControl &knob, const PanelPicture::Knob &shown);
    void drag(const PanelControl &knob, const PanelPicture::Knob &shown);
    void clickWithControl(const PanelControl &knob, const PanelPicture::Knob &shown);
    void doubleClick(const PanelControl &knob, const PanelPicture::Knob &shown);
    void type(const PanelControl &knob, const PanelPicture::Knob &shown);
    void press(const PanelControl &button, bool on);
    bool expectValues(const PanelControl &knob, const QList<int> &values);
    bool turnedBecomes(const PanelControl &knob, double least, double most);
    void compareShown(const ExpectedPanel &panel);
    QList<int> knobsWithChangedNumbers(const QImage &before) const;

    const PanelModel m_model;
    std::optional<ExpectedPanel> m_expected;
    int m_handle = 0;
    qsizetype m_logStart = 0;
    QStringList m_sent;
    QStringList m_logged;
};

#endif
