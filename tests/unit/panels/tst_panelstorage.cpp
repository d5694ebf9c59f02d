#include "goldenstart.h"
#include "panelfixture.h"

#include <QDir>
#include <QFile>
#include <QRandomGenerator>
#include <QSettings>

#include <algorithm>
#include <functional>

namespace {

/// That with the fewest controls.
const PanelModel &leastModel()
{
    const auto hasLess = [](const PanelModel &a, const PanelModel &b) {
        return a.controls.size() < b.controls.size();
    };
    return *std::min_element(allPanelModels().cbegin(), allPanelModels().cend(), hasLess);
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
class tst_PanelStorage : public PanelFixture
{
    Q_OBJECT

public:
    tst_PanelStorage()
        : PanelFixture("rx1")
    { }

private slots:
    void keysAreSavedInTheOrderOfReplay_data() { addModelRows(); }
    void keysAreSavedInTheOrderOfReplay();
    void anUnreadableFileYieldsTheDefaults_data();
    void anUnreadableFileYieldsTheDefaults();
    void aPartOfTheKeysIsEnough();
    void aKnobWithoutAWholeNumberStartsAsForTheFirstTime_data();
    void aKnobWithoutAWholeNumberStartsAsForTheFirstTime();
    void aWholeNumberBeyondTheRangeIsItsNearestBound_data();
    void aWholeNumberBeyondTheRangeIsItsNearestBound();
    void aWholeNumberMayHaveSpaceAroundItAndASign_data();
    void aWholeNumberMayHaveSpaceAroundItAndASign();
    void aNumberSavedByThisProcessIsTakenAsItIs();
    void buttonsReadTheseWords_data();
    void buttonsReadTheseWords();
    void foreignKeysAreKept();
    void aMissingFolderIsMade_data() { addModelRows(); }
    void aMissingFolderIsMade();
    void aFileInPlaceOfTheFolderCostsOnlyTheSaving_data() { addModelRows(); }
    void aFileInPlaceOfTheFolderCostsOnlyTheSaving();
    void aFolderInPlaceOfTheFileCostsOnlyTheSaving();
    void eachModelHasAFileOfItsOwn();

private:
    /// What a panel's knobs come to when it starts.
    struct KnobStart {
        QMap<QString, int> values; ///< by object name
        QStringList sent;
        QMap<QString, QString> saved;
    };
    KnobStart startWith(const PanelModel &model, const QMap<QString, QByteArray> &texts);
    void compareStarts(const KnobStart &actual, const KnobStart &expected);
};

/// Builds the panel of @p model with @p texts in its file for the knobs of these names.
tst_PanelStorage::KnobStart tst_PanelStorage::startWith(const PanelModel &model,
                                                        const QMap<QString, QByteArray> &texts)
{
    begin(model);
    QByteArray file("[Dial]\n");
    for (auto it = texts.cbegin(); it != texts.cend(); ++it)
        file += it.key().toLatin1() + "Value=" + it.value() + '\n';
    writeSettings(file);
    build();
    KnobStart start{.values = {}, .sent = takeSent(), .saved = saved()};
    const auto knobs = panel().findChildren<Knob *>();
    for (const Knob *knob : knobs)
        start.values.insert(knob->objectName(), knob->value);
    return start;
}

void tst_PanelStorage::compareStarts(const KnobStart &actual, const KnobStart &expected)
{
    QCOMPARE(actual.values, expected.values);
    QCOMPARE(actual.sent, expected.sent);
    QCOMPARE(actual.saved, expected.saved);
}

void tst_PanelStorage::keysAreSavedInTheOrderOfReplay()
{
    QFETCH(PanelModel, model);
    begin(model);
    // So that each step logs something before it saves.
    QVERIFY(simulator().fail("sendMixerBlock", 1, ERROR_GEN_FAILURE, 0));
    QStringList expected;
    for (const PanelControl &control : model.controls)
        expected << control.key();
    const LogObserver observer([this] { return QStringList(saved().keys()); });
    build();
    QCOMPARE(observer.found(), expected);
}

void tst_PanelStorage::anUnreadableFileYieldsTheDefaults_data()
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

void tst_PanelStorage::anUnreadableFileYieldsTheDefaults()
{
    QFETCH(QByteArray, text);
    writeSettings(text);
    build();
    const QStringList sent = takeSent();
    const QStringList log = takeLog();
    const QMap<QString, QString> found = saved();
    const QMap<QString, QString> expected = goldenFirstStart("rx1").values();
    for (auto it = expected.cbegin(); it != expected.cend(); ++it)
        QCOMPARE(found.value(it.key()), it.value());

    begin(model());
    build();
    QCOMPARE(sent, takeSent());
    QCOMPARE(log, takeLog());
}

void tst_PanelStorage::aPartOfTheKeysIsEnough()
{
    writeSettings("[Dial]\nHeadphoneValue=-12\n");
    build();
    QMap<QString, QString> expected = goldenFirstStart("rx1").values();
    expected["Dial/HeadphoneValue"] = "-12";
    QCOMPARE(saved(), expected);
}

void tst_PanelStorage::aKnobWithoutAWholeNumberStartsAsForTheFirstTime_data()
{
    const QMap<QString, QByteArray> texts{
        {"a word", "loud"},
        {"nothing", ""},
        {"quoted nothing", "\"\""},
        {"a sign", "-"},
        {"two signs", "+-5"},
        {"a sign apart", "\"- 5\""},
        {"a number and a unit", "12dB"},
        {"a fraction", "-20.5"},
        {"a fraction of zeros", "5.0"},
        {"an exponent", "1e1"},
        {"hexadecimal", "0x5"},
        {"full-width digits", "\"\\xff15\""},
        {"a list", "1, 2"},
        {"a longer list", "1, 2, 3"},
        {"a switch", "true"},
        {"bytes", R"(@ByteArray(5))"},
        {"binary bytes", R"(@ByteArray(\0\1))"},
        {"a size", "@Size(5 5)"},
        {"no value", "@Invalid()"},
        {"a fraction as an object", R"(@Variant(\0\0\0\x6@\x14\0\0\0\0\0\0))"},
        {"a broken object", "@Variant(5)"},
        {"an unknown object", R"(@Variant(\0\0\0\x7f))"}};
    QTest::addColumn<PanelModel>("model");
    QTest::addColumn<QByteArray>("text");
    for (const PanelModel &model : allPanelModels()) {
        for (auto it = texts.cbegin(); it != texts.cend(); ++it) {
            // Each start writes the file once a control: the shortest panel has all the rows.
            if (model.name == leastModel().name || it.key() == "a word" || it.key() == "a fraction")
                QTest::addRow("%s, %s", qPrintable(model.name), qPrintable(it.key()))
                    << model << it.value();
        }
    }
}

void tst_PanelStorage::aKnobWithoutAWholeNumberStartsAsForTheFirstTime()
{
    QFETCH(PanelModel, model);
    QFETCH(QByteArray, text);
    const KnobStart first = startWith(model, {});
    QCOMPARE(first.values.value("Mic", 0), 0);
    QCOMPARE(first.values.value("Headphone"), -80);
    QCOMPARE(first.saved.value("Dial/HeadphoneValue"), "-80");
    QMap<QString, QByteArray> texts;
    const QStringList names = first.values.keys();
    for (const QString &name : names)
        texts.insert(name, text);
    compareStarts(startWith(model, texts), first);
}

void tst_PanelStorage::aWholeNumberBeyondTheRangeIsItsNearestBound_data()
{
    const QList<QByteArray> above{"57",
                                  "2147483648",
                                  "4294967296",
                                  "4294967297",
                                  "9223372036854775808",
                                  "18446744073709551617",
                                  "+99999999999999999999",
                                  "99999999999999999999"};
    const QList<QByteArray> below{"-81",
                                  "-2147483649",
                                  "-4294967295",
                                  "-9223372036854775809",
                                  "-18446744073709551615",
                                  "-99999999999999999999"};
    QTest::addColumn<PanelModel>("model");
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<bool>("isAbove");
    for (const PanelModel &model : allPanelModels()) {
        for (const QByteArray &text : above + below) {
            if (model.name == leastModel().name || text == above.last() || text == below.last())
                QTest::addRow("%s, %s", qPrintable(model.name), text.constData())
                    << model << text << above.contains(text);
        }
    }
}

void tst_PanelStorage::aWholeNumberBeyondTheRangeIsItsNearestBound()
{
    QFETCH(PanelModel, model);
    QFETCH(QByteArray, text);
    QFETCH(bool, isAbove);
    QMap<QString, QByteArray> texts;
    QMap<QString, QByteArray> bounds;
    const QList<PanelControl> knobs = model.knobs();
    for (const PanelControl &knob : knobs) {
        texts.insert(knob.name, text);
        bounds.insert(knob.name, QByteArray::number(isAbove ? knob.maximum : knob.minimum));
    }
    const KnobStart expected = startWith(model, bounds);
    for (auto it = bounds.cbegin(); it != bounds.cend(); ++it)
        QCOMPARE(expected.values.value(it.key()), it.value().toInt());
    compareStarts(startWith(model, texts), expected);
    QCOMPARE(saved().value("Dial/HeadphoneValue"), isAbove ? "6" : "-80");
}

void tst_PanelStorage::aWholeNumberMayHaveSpaceAroundItAndASign_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::newRow("alone") << QByteArray("12");
    QTest::newRow("plus") << QByteArray("+12");
    QTest::newRow("space") << QByteArray("  12  ");
    QTest::newRow("quoted space") << QByteArray("\" \\t12 \\r\\n\"");
    QTest::newRow("space and plus") << QByteArray("\" +12 \"");
    QTest::newRow("zeros") << QByteArray("0000000000000000000000000000000012");
}

void tst_PanelStorage::aWholeNumberMayHaveSpaceAroundItAndASign()
{
    QFETCH(QByteArray, text);
    const KnobStart start = startWith(panelModel("rx1"), {{"Mic", text}});
    QCOMPARE(start.values.value("Mic"), 12);
    QCOMPARE(start.sent.filter("setMicVolume"), QStringList("setMicVolume 1 24"));
    QCOMPARE(start.saved.value("Dial/MicValue"), "12");
}

void tst_PanelStorage::aNumberSavedByThisProcessIsTakenAsItIs()
{
    QSettings settings(settingsFile(), QSettings::IniFormat);
    settings.setValue("Dial/MicValue", 12);
    settings.sync();
    build();
    QCOMPARE(knob("Mic").value, 12);
    QCOMPARE(takeSent().filter("setMicVolume"), QStringList("setMicVolume 1 24"));
}

void tst_PanelStorage::buttonsReadTheseWords_data()
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

void tst_PanelStorage::buttonsReadTheseWords()
{
    QFETCH(QByteArray, value);
    QFETCH(bool, on);
    writeSettings("[Button]\nMic48VIsChecked=" + value + '\n');
    build();
    QCOMPARE(button("Mic48V").isSelected, on);
    QCOMPARE(takeSent().filter("setMic48V"), QStringList(on ? "setMic48V 1 1" : "setMic48V 1 0"));
    QCOMPARE(saved().value("Button/Mic48VIsChecked"), on ? "true" : "false");
}

void tst_PanelStorage::foreignKeysAreKept()
{
    writeSettings("[Dial]\nOtherValue=5\n[Else]\nName=value\n");
    build();
    knob("Mic").setValue(1);
    QCOMPARE(saved().value("Dial/OtherValue"), "5");
    QCOMPARE(saved().value("Else/Name"), "value");
}

void tst_PanelStorage::aMissingFolderIsMade()
{
    QFETCH(PanelModel, model);
    begin(model);
    QVERIFY(QDir(dataFolder()).removeRecursively());
    build();
    QVERIFY(QFile::exists(settingsFile()));
    QCOMPARE(takeLog().last(), "已从配置文件加载控件状态");
}

void tst_PanelStorage::aFileInPlaceOfTheFolderCostsOnlyTheSaving()
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

void tst_PanelStorage::aFolderInPlaceOfTheFileCostsOnlyTheSaving()
{
    build();
    const QStringList sent = takeSent();
    const QStringList log = takeLog();

    begin(model());
    QVERIFY(QDir().mkpath(settingsFile()));
    build();
    QCOMPARE(takeSent(), sent);
    QCOMPARE(takeLog(), log);
    click("Mic48V");
    QCOMPARE(takeSent(), twice("setMic48V 1 1"));
    QVERIFY(QDir(settingsFile()).isEmpty());
}

void tst_PanelStorage::eachModelHasAFileOfItsOwn()
{
    for (const PanelModel &model : allPanelModels()) {
        begin(model);
        build();
        QCOMPARE(QDir(dataFolder()).entryList(QDir::Files), QStringList(model.file()));
    }
}

QTEST_MAIN(tst_PanelStorage)
#include "tst_panelstorage.moc"
