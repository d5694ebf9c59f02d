#include "listenerlog.h"
#include "pipeclient.h"
#include "settingsfixture.h"
#include "threadsettingspip.h"
#include "vaincancel.h"
#include "watchdog.h"

/// The listener must end, or the program cannot: also where the cancelling of what waits for its
/// pipe is in vain.
class tst_VainCancel : public SettingsFixture
{
    Q_OBJECT

public:
    tst_VainCancel()
        : SettingsFixture(Device::None)
    { }

private slots:
    void theListenerStops_data();
    void theListenerStops();
    void theDialogGoes();
};

void tst_VainCancel::theListenerStops_data()
{
    QTest::addColumn<bool>("hasClient");
    QTest::addColumn<QString>("error");
    QTest::newRow("waiting for a client") << false << "Error connecting to pipe. Error code: 995";
    QTest::newRow("waiting for a message") << true << "Error reading from pipe. Error code: 995";
}

void tst_VainCancel::theListenerStops()
{
    QFETCH(bool, hasClient);
    QFETCH(QString, error);
    auto listener = std::make_unique<ThreadSettingsPip>(nullptr);
    PipeClient client;
    if (hasClient)
        QCOMPARE(client.open(), DWORD(ERROR_SUCCESS));
    listener->start(QThread::InheritPriority);
    QTRY_VERIFY_WITH_TIMEOUT(hasLogged(startLog().constLast()), patience);
    takeLog();
    const int before = vaincancel::count();
    {
        const Watchdog watchdog("Stopping the listener");
        listener.reset();
    }
    QVERIFY(vaincancel::count() > before);
    QCOMPARE(takeLog(), (QStringList{error, listenerlog::nothingReceived, "Pipe closed."}));
}

void tst_VainCancel::theDialogGoes()
{
    openDialog();
    const Watchdog watchdog("Deleting the dialog");
    closeDialog();
    QCOMPARE(takeLog().constLast(), "Pipe closed.");
}

QTEST_MAIN(tst_VainCancel)
#include "tst_vaincancel.moc"
