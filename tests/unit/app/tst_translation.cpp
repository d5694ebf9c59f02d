#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

namespace {

const QString englishFile = "VesmoraDriver_en_US.qm";
const QString chineseFile = "VesmoraDriver_zh_CN.qm";

const QStringList englishTexts{"Quit", "Sound card not connected!"};
const QStringList chineseTexts{"退出", "声卡未连接！"};
const QStringList sourceTexts{"Quit", "声卡未连接！"};

const QString noTranslation = "未找到任何翻译文件，使用原始文本";

QStringList linesOf(const QByteArray &output)
{
    return QString::fromUtf8(output).split('\n', Qt::SkipEmptyParts);
}

} // namespace

/// The choice of a translation file, made by a program of its own in a folder of its own.
class tst_Translation : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();

    void theLocaleChoosesTheFile_data();
    void theLocaleChoosesTheFile();
    void withoutTheChosenFileTheEnglishOneIsTheDefault();
    void aDamagedFileCountsAsMissing();
    void withoutAnyFileTheSourceTextsStay_data();
    void withoutAnyFileTheSourceTextsStay();
    void aFileOfAnotherLanguageIsNoDefault();

private:
    struct Said {
        QStringList log;
        QStringList texts;
    };

    void addFile(const QString &name);
    QString path(const QString &name) const { return m_folder->filePath(name); }
    /// The log of a search that begins in that locale, for that file.
    QStringList searchLog(const QString &locale, const QString &file) const;
    QString fileLog(const char *what, const QString &file) const;
    Said speak(const QString &locale);

    std::unique_ptr<QTemporaryDir> m_folder;
};

void tst_Translation::initTestCase()
{
    QVERIFY(QFileInfo::exists(qEnvironmentVariable("TRANSLATION_PROBE")));
    QVERIFY(QFileInfo::exists(qEnvironmentVariable("TRANSLATIONS")));
}

void tst_Translation::init()
{
    m_folder = std::make_unique<QTemporaryDir>();
    QVERIFY(QFile::copy(qEnvironmentVariable("TRANSLATION_PROBE"), path("probe")));
}

void tst_Translation::addFile(const QString &name)
{
    QVERIFY(QFile::copy(qEnvironmentVariable("TRANSLATIONS") + '/' + name, path(name)));
}

QString tst_Translation::fileLog(const char *what, const QString &file) const
{
    return QString("%1 \"%2\"").arg(QString::fromUtf8(what), path(file));
}

QStringList tst_Translation::searchLog(const QString &locale, const QString &file) const
{
    return {QString("系统返回的语言代码： \"%1\"").arg(locale), fileLog("拼接后的路径：", file)};
}

tst_Translation::Said tst_Translation::speak(const QString &locale)
{
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    for (const char *name : {"LC_ALL", "LC_NUMERIC", "LC_MESSAGES", "LANGUAGE"})
        environment.remove(name);
    environment.insert("LC_CTYPE", "C.UTF-8");
    environment.insert("LANG", locale + ".UTF-8");
    environment.insert("QT_FORCE_STDERR_LOGGING", "1");
    QProcess probe;
    probe.setProcessEnvironment(environment);
    probe.start(path("probe"), QStringList());
    if (!probe.waitForFinished() || probe.exitStatus() != QProcess::NormalExit)
        qFatal("The probe did not run: %s", qPrintable(probe.errorString()));
    return {linesOf(probe.readAllStandardError()), linesOf(probe.readAllStandardOutput())};
}

void tst_Translation::theLocaleChoosesTheFile_data()
{
    QTest::addColumn<QString>("file");
    QTest::addColumn<QStringList>("texts");
    for (const char *locale :
         {"en_001", "en_US", "en_GB", "en_AU", "fr_FR", "de_DE", "zh_HK", "zh_SG", "ja_JP"})
        QTest::newRow(locale) << englishFile << englishTexts;
    for (const char *locale : {"zh_CN", "zh_TW"})
        QTest::newRow(locale) << chineseFile << chineseTexts;
}

void tst_Translation::theLocaleChoosesTheFile()
{
    QFETCH(QString, file);
    QFETCH(QStringList, texts);
    addFile(englishFile);
    addFile(chineseFile);
    const QString locale = QString::fromLatin1(QTest::currentDataTag());
    const Said said = speak(locale);
    QCOMPARE(said.log, searchLog(locale, file) + QStringList{fileLog("成功加载翻译文件：", file)});
    QCOMPARE(said.texts, texts);
}

void tst_Translation::withoutTheChosenFileTheEnglishOneIsTheDefault()
{
    addFile(englishFile);
    const Said said = speak("zh_CN");
    QCOMPARE(said.log,
             searchLog("zh_CN", chineseFile)
                 + QStringList{fileLog("加载默认翻译文件：", englishFile)});
    QCOMPARE(said.texts, englishTexts);
}

void tst_Translation::aDamagedFileCountsAsMissing()
{
    addFile(englishFile);
    QFile damaged(path(chineseFile));
    QVERIFY(damaged.open(QIODevice::WriteOnly));
    damaged.write("no translation at all");
    damaged.close();
    const Said said = speak("zh_TW");
    QCOMPARE(said.log,
             searchLog("zh_TW", chineseFile)
                 + QStringList{fileLog("加载默认翻译文件：", englishFile)});
    QCOMPARE(said.texts, englishTexts);
}

void tst_Translation::withoutAnyFileTheSourceTextsStay_data()
{
    QTest::addColumn<QString>("file");
    QTest::newRow("en_US") << englishFile;
    QTest::newRow("zh_CN") << chineseFile;
    QTest::newRow("fr_FR") << englishFile;
}

void tst_Translation::withoutAnyFileTheSourceTextsStay()
{
    QFETCH(QString, file);
    const QString locale = QString::fromLatin1(QTest::currentDataTag());
    const Said said = speak(locale);
    QCOMPARE(said.log, searchLog(locale, file) + QStringList{noTranslation});
    QCOMPARE(said.texts, sourceTexts);
}

void tst_Translation::aFileOfAnotherLanguageIsNoDefault()
{
    addFile(chineseFile);
    const Said said = speak("en_US");
    QCOMPARE(said.log, searchLog("en_US", englishFile) + QStringList{noTranslation});
    QCOMPARE(said.texts, sourceTexts);
}

QTEST_GUILESS_MAIN(tst_Translation)
#include "tst_translation.moc"
