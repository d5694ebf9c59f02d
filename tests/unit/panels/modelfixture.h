#ifndef MODELFIXTURE_H
#define MODELFIXTURE_H

#include "goldenstart.h"
#include "panelfixture.h"

#include <optional>

/// What every model's panel does: what reaches the device, the log and the settings file. Starts
/// are compared with the golden ones, everything else with what the family has to do.
class ModelFixture : public PanelFixture
{
    Q_OBJECT

protected:
    using PanelFixture::PanelFixture;

    /// Builds the panel with these values stored, by "Section/Key", and compares what comes of it
    /// with the result.
    ExpectedPanel start(const QMap<QString, QString> &stored = {});
    /// The same with every output at -20 dB.
    ExpectedPanel startAudible();
    /// Sets a control by its own operation, with one emission, here and there.
    void set(const QString &name, int value, ExpectedPanel &expected);
    /// Clicks a button, which is emitted twice, here and there.
    void press(const QString &name, ExpectedPanel &expected);

private slots:
    void theFirstStartSendsLogsAndSavesTheDefaultsInOrder();
    void aSavedStateIsSentLoggedShownAndKept();
    void savedKnobsAreClamped_data();
    void savedKnobsAreClamped();

    void eachControlSendsLogsAndSavesAtOnce_data() { addControlRows(); }
    void eachControlSendsLogsAndSavesAtOnce();

    void switchingDirectOnAndOffLeavesTheBlockAsBuilt_data() { addControlRows(Kind::Monitor); }
    void switchingDirectOnAndOffLeavesTheBlockAsBuilt();

    void theVolumeFollowsMuteAndDim_data();
    void theVolumeFollowsMuteAndDim();
    void aMutedVolumeKeepsTheKnobsValueAndComesBackDimmed_data() { addControlRows(Kind::Volume); }
    void aMutedVolumeKeepsTheKnobsValueAndComesBackDimmed();

private:
    using Kind = PanelControl::Kind;

    /// Adds a column "name" and a row for each control, or for each of that kind.
    void addControlRows(std::optional<Kind> kind = {});
    void compareWith(const GoldenStart &golden);
    /// Its left gain, as the device has it.
    double volume(const QString &output);
};

#endif
