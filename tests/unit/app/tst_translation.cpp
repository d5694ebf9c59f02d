#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

namespace {

const QString englishFile = QStringLiteral("VesmoraDriver_en_US.qm");
const QString chineseFile = QStringLiteral("VesmoraDriver_zh_CN.qm");

const QStringList englishTexts{"Quit", "Sound card not connected!"};
const QStringList chineseTexts{"退出", "声卡未连接！"};
const QStringList sourceTexts{"Quit", "声卡未连接！"};

const QString noTranslation = QStringLiteral("未找到任何翻译文件，使用原始文本");

QStringList linesOf(const QByteArray &output)
{
    return QString::fromUtf8(output).split(QLatin1Char('\n'), Qt::SkipEmptyParts);
}

} // namespace

/// The choice of a translation file, made by a program of its own in a folder of its own.
class TranslationTest : public QObject
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

void TranslationTest::initTestCase()
{
    QVERIFY(QFileInfo::exists(qEnvironmentVariable("TRANSLATION_PROBE")));
    QVERIFY(QFileInfo::exists(qEnvironmentVariable("TRANSLATIONS")));
}

void TranslationTest::init()
{
    m_folder = std::make_unique<QTemporaryDir>();
    QVERIFY(QFile::copy(qEnvironmentVariable("TRANSLATION_PROBE"), path("probe")));
}

void TranslationTest::addFile(const QString &name)
{
    QVERIFY(
        QFile::copy(qEnvironmentVariable("TRANSLATIONS") + QLatin1Char('/') + name, path(name)));
}

QString TranslationTest::fileLog(const char *what, const QString &file) const
{
    return QStringLiteral("%1 \"%2\"").arg(QString::fromUtf8(what), path(file));
}

QStringList TranslationTest::searchLog(const QString &locale, const QString &file) const
{
    return {QStringLiteral("系统返回的语言代码： \"%1\"").arg(locale),
            fileLog("拼接后的路径：", file)};
}

TranslationTest::Said TranslationTest::speak(const QString &locale)
{
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    for (const char *name : {"LC_ALL", "LC_NUMERIC", "LC_MESSAGES", "LANGUAGE"})
        environment.remove(QLatin1String(name));
    environment.insert(QStringLiteral("LC_CTYPE"), QStringLiteral("C.UTF-8"));
    environment.insert(QStringLiteral("LANG"), locale + QStringLiteral(".UTF-8"));
    environment.insert(QStringLiteral("QT_FORCE_STDERR_LOGGING"), QStringLiteral("1"));
    QProcess probe;
    probe.setProcessEnvironment(environment);
    probe.start(path("probe"), QStringList());
    if (!probe.waitForFinished() || probe.exitStatus() != QProcess::NormalExit)
        qFatal("The probe did not run: %s", qPrintable(probe.errorString()));
    return {linesOf(probe.readAllStandardError()), linesOf(probe.readAllStandardOutput())};
}

void TranslationTest::theLocaleChoosesTheFile_data()
{
    QTest::addColumn<QString>("file");
    QTest::addColumn<QStringList>("texts");
    for (const char *locale :
         {"en_001", "en_US", "en_GB", "en_AU", "fr_FR", "de_DE", "zh_HK", "zh_SG", "ja_JP"})
        QTest::newRow(locale) << englishFile << englishTexts;
    for (const char *locale : {"zh_CN", "zh_TW"})
        QTest::newRow(locale) << chineseFile << chineseTexts;
}

void TranslationTest::theLocaleChoosesTheFile()
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

void TranslationTest::withoutTheChosenFileTheEnglishOneIsTheDefault()
{
    addFile(englishFile);
    const Said said = speak(QStringLiteral("zh_CN"));
    QCOMPARE(said.log,
             searchLog("zh_CN", chineseFile)
                 + QStringList{fileLog("加载默认翻译文件：", englishFile)});
    QCOMPARE(said.texts, englishTexts);
}

void TranslationTest::aDamagedFileCountsAsMissing()
{
    addFile(englishFile);
    QFile damaged(path(chineseFile));
    QVERIFY(damaged.open(QIODevice::WriteOnly));
    damaged.write("no translation at all");
    damaged.close();
    const Said said = speak(QStringLiteral("zh_TW"));
    QCOMPARE(said.log,
             searchLog("zh_TW", chineseFile)
                 + QStringList{fileLog("加载默认翻译文件：", englishFile)});
    QCOMPARE(said.texts, englishTexts);
}

void TranslationTest::withoutAnyFileTheSourceTextsStay_data()
{
    QTest::addColumn<QString>("file");
    QTest::newRow("en_US") << englishFile;
    QTest::newRow("zh_CN") << chineseFile;
    QTest::newRow("fr_FR") << englishFile;
}

void TranslationTest::withoutAnyFileTheSourceTextsStay()
{
    QFETCH(QString, file);
    const QString locale = QString::fromLatin1(QTest::currentDataTag());
    const Said said = speak(locale);
    QCOMPARE(said.log, searchLog(locale, file) + QStringList{noTranslation});
    QCOMPARE(said.texts, sourceTexts);
}

void TranslationTest::aFileOfAnotherLanguageIsNoDefault()
{
    addFile(chineseFile);
    const Said said = speak(QStringLiteral("en_US"));
    QCOMPARE(said.log, searchLog("en_US", englishFile) + QStringList{noTranslation});
    QCOMPARE(said.texts, sourceTexts);
}

QTEST_GUILESS_MAIN(TranslationTest)
#include "tst_translation.moc"
