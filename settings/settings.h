#ifndef SETTINGS_H
#define SETTINGS_H

#include "audioengine.h"

#include <QDialog>
#include <QList>

class QComboBox;
class QSettings;
class QVBoxLayout;

/// The dialog that sets up the driver's audio engine. A choice takes effect at once, through the
/// sequences of AudioEngine, and is kept in "setting.ini" when the driver accepted all of it.
/// Outcomes go to the debug log alone.
class Settings : public QDialog
{
    Q_OBJECT

public:
    /// Builds the dialog, hidden, and starts listening to the ASIO driver.
    Settings();
    ~Settings() override;

    /// Opens the dialog's own connection to the driver, in place of an earlier one. Until there is
    /// one, choices in the dialog reach no driver and are not kept; the first one finds the boxes
    /// on their first items again, whatever was chosen, as the engine knows nothing of it.
    bool createDevice();
    /// Loads the saved choices and brings the engine to them. Needs a device: see createDevice().
    void initSettings();
    /// Loads the saved choices into the combo boxes; each that changes runs its sequence at once.
    void loadSettings();
    /// Brings the dialog to the front, and has it stay there.
    void showFromPipe();
    /// Hides the dialog and tells the ASIO driver to pick up the choices.
    void notifyAsioReset();

    // Each takes the current text of its combo box to the engine and keeps what that accepts.
    void onBufferSizeChanged();
    void onUsbLatencyChanged();
    void onSampleRateChanged();
    void onSafeModeChanged();

    /// A device is yet to be brought to the saved choices.
    bool pendingInit = true;

private:
    /// An item of a combo box. A number is its own text.
    struct Item {
        Item(quint32 number)
            : text(QString::number(number))
            , value(number)
        { }
        Item(const QString &name, quint32 number)
            : text(name)
            , value(number)
        { }

        QString text;
        quint32 value; ///< what the engine understands
    };

    /// All that is to be known of a choice.
    struct Field {
        const char *title;           ///< above the box; translated
        const char *name;            ///< the box's object name
        const char *key;             ///< in the file
        QString absent;              ///< the item that counts when the file lacks the key
        QList<Item> items;           ///< in the box's order
        void (Settings::*changed)(); ///< what the box calls
        bool (AudioEngine::*apply)(const AudioEngine::Choice &choice); ///< its sequence
        const char *saved; ///< what the log says, with the item, when it was kept
        QComboBox *box = nullptr;
    };
    /// From top to bottom.
    enum FieldId { BufferSize, UsbLatency, SampleRate, SafeMode, FieldCount };

    static QList<Field> describedFields();
    void openSettings();
    void addHeading();
    void addField(Field &field);
    void addOkButton();
    void listenToAsio();

    AudioEngine::Choice chosen(FieldId id) const;
    void apply(FieldId id);
    void choose(FieldId id, const QString &item);
    void showFirstItems();

    QVBoxLayout *m_layout = nullptr;
    QList<Field> m_fields = describedFields();
    QSettings *m_settings = nullptr;
    AudioEngine *m_engine = nullptr;
    bool m_wasConnected = false;
};

#endif
