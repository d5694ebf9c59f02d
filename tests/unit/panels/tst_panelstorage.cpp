#include "expectedpanel.h"
#include "panelfixture.h"

#include <QDir>
#include <QFile>
#include <QRandomGenerator>
#include <QStandardPaths>

#include <functional>

namespace {

/// The values of a first start of the RX1.
QMap<QString, QString> defaults()
{
    return {{"Button/HeadphoneDimIsChecked", "false"},
            {"Button/HeadphoneMuteIsChecked", "false"},
            {"Button/Mic20dBIsChecked", "false"},
            {"Button/Mic48VIsChecked", "false"},
            {"Button/MicInstrIsChecked", "false"},
            {"Button/MonitorMicIsChecked", "false"},
            {"Dial/HeadphoneValue", "-80"},
            {"Dial/MicValue", "0"},
            {"Dial/OtgToHpValue", "0"}};
}

QString dataFolder()
{
    return QStandardPaths::writableLocation(QStandardPaths::AppDataLocation);
}

QByteArray noise(int size)
{
    QRandomGenerator random(20);
    QByteArray bytes(size, '\0');
    for (char &byte : bytes)
        byte = static_cast<char>(random.bounded(256));
    return bytes;
}

/// Keeps what a look finds new at each line of the log; the lines themselves are lost.
class LogObserver
{
public:
    explicit LogObserver(const std::function<QStringList()> &look)
        : m_look(look)
    {
        s_current = this;
        m_previous = qInstallMessageHandler(&LogObserver::handle);
    }
    ~LogObserver() { qInstallMessageHandler(m_previous); }

    /// In the order of appearance; things that appear together come joined by +.
    QStringList found() const { return m_found; }

private:
    static void handle(QtMsgType, const QMessageLogContext &, const QString &)
    {
        QStringList fresh;
        const QStringList seen = s_current->m_look();
        for (const QString &thing : seen) {
            if (!s_current->m_seen.contains(thing))
                fresh << thing;
        }
        s_current->m_seen += fresh;
        if (!fresh.isEmpty())
            s_current->m_found << fresh.join('+');
    }

    static inline LogObserver *s_current = nullptr;
    const std::function<QStringList()> m_look;
    QtMessageHandler m_previous;
    QStringList m_seen;
    QStringList m_found;
};

} // namespace

/// The panels' settings files when they are damaged or cannot be had. What is said of the RX1 holds
/// for all, which share the code.
class PanelStorageTest : public PanelFixture
{
    Q_OBJECT

public:
    PanelStorageTest()
        : PanelFixture(PanelModel::Rx1)
    { }

private slots:
    void keysAreSavedInTheOrderOfReplay_data() { addModelRows(); }
    void keysAreSavedInTheOrderOfReplay();
    void anUnreadableFileYieldsTheDefaults_data();
    void anUnreadableFileYieldsTheDefaults();
    void aPartOfTheKeysIsEnough();
    void aKnobWithoutANumberIsZeroWithinItsRange_data();
    void aKnobWithoutANumberIsZeroWithinItsRange();
    void buttonsReadTheseWords_data();
    void buttonsReadTheseWords();
    void foreignKeysAreKept();
    void aMissingFolderIsMade_data() { addModelRows(); }
    void aMissingFolderIsMade();
    void aFileInPlaceOfTheFolderCostsOnlyTheSaving_data() { addModelRows(); }
    void aFileInPlaceOfTheFolderCostsOnlyTheSaving();
    void aFolderInPlaceOfTheFileCostsOnlyTheSaving();
    void eachModelHasAFileOfItsOwn();
};

void PanelStorageTest::keysAreSavedInTheOrderOfReplay()
{
    QFETCH(PanelModel, model);
    begin(model);
    // So that each step logs something before it saves.
    QVERIFY(simulator().fail("sendMixerBlock", 1, ERROR_GEN_FAILURE, 0));
    QStringList expected;
    const ExpectedPanel rules(model);
    for (const ExpectedPanel::Control &control : rules.controls())
        expected << control.key();
    const LogObserver observer([this] { return QStringList(saved().keys()); });
    build();
    QCOMPARE(observer.found(), expected);
}

void PanelStorageTest::anUnreadableFileYieldsTheDefaults_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::newRow("empty") << QByteArray();
    QTest::newRow("blank lines") << QByteArray("\n\n\n");
    QTest::newRow("one zero") << QByteArray(1, '\0');
    QTest::newRow("zeros") << QByteArray(4096, '\0');
    QTest::newRow("noise") << noise(4096);
    QTest::newRow("only section names") << QByteArray("[Dial]\n[Button]\n[Dial]\n");
    QTest::newRow("an open section name") << QByteArray("[Dial\nMicValue\n");
    QTest::newRow("no section") << QByteArray("MicValue=20\nMicInstrIsChecked=true\n");
    QTest::newRow("another section") << QByteArray("[Knob]\nMicValue=20\n");
    QTest::newRow("UTF-16") << QByteArray("\xff\xfe[\0D\0i\0a\0l\0]\0\n\0", 16);
}

void PanelStorageTest::anUnreadableFileYieldsTheDefaults()
{
    QFETCH(QByteArray, text);
    writeSettings(text);
    build();
    const QStringList sent = takeSent();
    const QStringList log = takeLog();
    const QMap<QString, QString> found = saved();
    const QMap<QString, QString> expected = defaults();
    for (auto it = expected.cbegin(); it != expected.cend(); ++it)
        QCOMPARE(found.value(it.key()), it.value());

    begin(PanelModel::Rx1);
    build();
    QCOMPARE(sent, takeSent());
    QCOMPARE(log, takeLog());
}

void PanelStorageTest::aPartOfTheKeysIsEnough()
{
    writeSettings("[Dial]\nHeadphoneValue=-12\n");
    build();
    QMap<QString, QString> expected = defaults();
    expected["Dial/HeadphoneValue"] = "-12";
    QCOMPARE(saved(), expected);
}

void PanelStorageTest::aKnobWithoutANumberIsZeroWithinItsRange_data()
{
    QTest::addColumn<QByteArray>("value");
    QTest::newRow("a word") << QByteArray("loud");
    QTest::newRow("nothing") << QByteArray("");
    QTest::newRow("a number and a unit") << QByteArray("12dB");
    QTest::newRow("a list") << QByteArray("1, 2, 3");
    QTest::newRow("a number beyond 32 bits") << QByteArray("4294967296");
    QTest::newRow("a number beyond 64 bits") << QByteArray("99999999999999999999999");
    QTest::newRow("a switch") << QByteArray("true");
    QTest::newRow("bytes") << QByteArray("@ByteArray(\\0\\1)");
    QTest::newRow("an unknown object") << QByteArray("@Variant(\\0\\0\\0\\x7f)");
}

void PanelStorageTest::aKnobWithoutANumberIsZeroWithinItsRange()
{
    QFETCH(QByteArray, value);
    writeSettings("[Dial]\nMicValue=" + value + "\nOtgToHpValue=" + value + '\n');
    build();
    QCOMPARE(knob("Mic").value, 0);
    QCOMPARE(knob("OtgToHp").value, 0);
    QCOMPARE(saved(), defaults());
}

void PanelStorageTest::buttonsReadTheseWords_data()
{
    QTest::addColumn<QByteArray>("value");
    QTest::addColumn<bool>("on");
    QTest::newRow("true") << QByteArray("true") << true;
    QTest::newRow("1") << QByteArray("1") << true;
    QTest::newRow("false") << QByteArray("false") << false;
    QTest::newRow("0") << QByteArray("0") << false;
    QTest::newRow("nothing") << QByteArray("") << false;
    QTest::newRow("a list") << QByteArray("true, true") << false;
}

void PanelStorageTest::buttonsReadTheseWords()
{
    QFETCH(QByteArray, value);
    QFETCH(bool, on);
    writeSettings("[Button]\nMic48VIsChecked=" + value + '\n');
    build();
    QCOMPARE(button("Mic48V").isSelected, on);
    QCOMPARE(takeSent().filter("setMic48V"), QStringList(on ? "setMic48V 1 1" : "setMic48V 1 0"));
    QCOMPARE(saved().value("Button/Mic48VIsChecked"), on ? "true" : "false");
}

void PanelStorageTest::foreignKeysAreKept()
{
    writeSettings("[Dial]\nOtherValue=5\n[Else]\nName=value\n");
    build();
    knob("Mic").setValue(1);
    QCOMPARE(saved().value("Dial/OtherValue"), "5");
    QCOMPARE(saved().value("Else/Name"), "value");
}

void PanelStorageTest::aMissingFolderIsMade()
{
    QFETCH(PanelModel, model);
    begin(model);
    QVERIFY(QDir(dataFolder()).removeRecursively());
    build();
    QVERIFY(QFile::exists(settingsFile()));
    QCOMPARE(takeLog().last(), "已从配置文件加载控件状态");
}

void PanelStorageTest::aFileInPlaceOfTheFolderCostsOnlyTheSaving()
{
    QFETCH(PanelModel, model);
    begin(model);
    build();
    const QStringList sent = takeSent();
    const QStringList log = takeLog();

    begin(model);
    QVERIFY(QDir(dataFolder()).removeRecursively());
    QFile obstacle(dataFolder());
    QVERIFY(obstacle.open(QIODevice::WriteOnly));
    obstacle.close();
    build();
    QCOMPARE(takeSent(), sent);
    QCOMPARE(takeLog(), log);
    knob("Headphone").setValue(0);
    QCOMPARE(takeSent().size(), 1);
    deletePanel();
    QCOMPARE(obstacle.size(), 0);
    QVERIFY(obstacle.remove());
}

void PanelStorageTest::aFolderInPlaceOfTheFileCostsOnlyTheSaving()
{
    build();
    const QStringList sent = takeSent();
    const QStringList log = takeLog();

    begin(PanelModel::Rx1);
    QVERIFY(QDir().mkpath(settingsFile()));
    build();
    QCOMPARE(takeSent(), sent);
    QCOMPARE(takeLog(), log);
    click("Mic48V");
    QCOMPARE(takeSent(), twice("setMic48V 1 1"));
    QVERIFY(QDir(settingsFile()).isEmpty());
}

void PanelStorageTest::eachModelHasAFileOfItsOwn()
{
    for (const PanelModel model : allPanelModels) {
        begin(model);
        build();
        QCOMPARE(QDir(dataFolder()).entryList(QDir::Files), QStringList(nameOf(model) + ".ini"));
    }
}

QTEST_MAIN(PanelStorageTest)
#include "tst_panelstorage.moc"
