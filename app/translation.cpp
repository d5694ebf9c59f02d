#include "translation.h"

#include <QCoreApplication>
#include <QDebug>
#include <QLocale>
#include <QMap>
#include <QTranslator>

namespace {

constexpr QLatin1String defaultLanguage("en_US");

/// Traditional Chinese of Taiwan gets the one Chinese file, too; what is not listed gets English.
QString languageOf(const QString &locale)
{
    const QMap<QString, QString> languages = {
        {QStringLiteral("en_001"), QStringLiteral("en_US")},
        {QStringLiteral("en_US"), QStringLiteral("en_US")},
        {QStringLiteral("en_GB"), QStringLiteral("en_US")},
        {QStringLiteral("zh_CN"), QStringLiteral("zh_CN")},
        {QStringLiteral("zh_TW"), QStringLiteral("zh_CN")},
    };
    return languages.value(locale, defaultLanguage);
}

QString translationFile(const QString &language)
{
    return QCoreApplication::applicationDirPath()
        + QStringLiteral("/VesmoraDriver_%1.qm").arg(language);
}

bool install(QTranslator &translator, const QString &path, const char *success)
{
    if (!translator.load(path))
        return false;
    QCoreApplication::installTranslator(&translator);
    qDebug() << success << path;
    return true;
}

} // namespace

void installTranslation(QTranslator &translator)
{
    const QString locale = QLocale::system().name();
    qDebug() << "系统返回的语言代码：" << locale;

    // One so far; a language could have a second choice behind it, before the default.
    const QStringList candidates = {languageOf(locale)};
    for (const QString &language : candidates) {
        const QString path = translationFile(language);
        qDebug() << "拼接后的路径：" << path;
        if (install(translator, path, "成功加载翻译文件："))
            return;
    }
    if (!install(translator, translationFile(defaultLanguage), "加载默认翻译文件："))
        qWarning() << "未找到任何翻译文件，使用原始文本";
}
