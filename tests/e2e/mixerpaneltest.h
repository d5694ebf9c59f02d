#ifndef MIXERPANELTEST_H
#define MIXERPANELTEST_H

#include "mixermodel.h"
#include "programfixture.h"

/// What every model's panel has to do in the running program: what the mouse does reaches the
/// interface, the file and the log.
class MixerPanelTest : public ProgramFixture
{
    Q_OBJECT

public:
    explicit MixerPanelTest(MixerModel model);

private slots:
    void theFirstStartSendsTheDefaultsInOrderAndSavesThem();
    void storedValuesAreClampedSentAndSavedBack();
    void everyKnobFollows_data();
    void everyKnobFollows();
    void everyButtonIsSentTwiceAndSaved();
    void theStateSetByHandComesBackWhenPluggedInAgain();
    void levelsChangeTheNumbersBesideTheirKnobs();
    void aMeterThatCannotBeReadIsOnlyLogged();

protected:
    /// Starts the panel with its model plugged and its window open; nothing is expected yet.
    bool showPanel();
    /// As showPanel(), with stored values that keep every control away from its ends.
    bool showStoredPanel();
    bool save(const QStringList &entries) { return iniFile(m_model.file()).write(entries); }
    bool waitForSaved(const QString &key, const QString &value);
    /// Compares everything that the panel has sent since it was shown, of which @p expected is the
    /// newest part; what it has logged likewise.
    void compareSent(const QStringList &expected);
    void compareLogged(const QStringList &expected);

    const MixerModel &model() const { return m_model; }
    /// The whole panel, as soon as it is there.
    PanelPicture wholePicture() const;
    QPoint knob(int place) const { return wholePicture().knobs().at(place).centre; }
    QPoint button(int place) const { return wholePicture().buttons().at(place).centre; }

private:
    /// Uses a knob that shows its stored value, and checks what comes of it.
    using Gesture = void (MixerPanelTest::*)(const KnobModel &, const PanelPicture::Knob &);

    void turnByWheel(const KnobModel &knob, const PanelPicture::Knob &shown);
    void drag(const KnobModel &knob, const PanelPicture::Knob &shown);
    void clickWithControl(const KnobModel &knob, const PanelPicture::Knob &shown);
    void doubleClick(const KnobModel &knob, const PanelPicture::Knob &shown);
    void type(const KnobModel &knob, const PanelPicture::Knob &shown);
    void press(const ButtonModel &button, bool on);
    bool expectValues(const KnobModel &knob, int from, const QList<int> &values);
    int valueByHand(const KnobModel &knob) const;
    bool turnedBecomes(int place, double least, double most);
    QList<int> knobsWithChangedNumbers(const QImage &before) const;

    const MixerModel m_model;
    int m_handle = 0;
    qsizetype m_logStart = 0;
    QStringList m_sent;
    QStringList m_logged;
};

#endif
