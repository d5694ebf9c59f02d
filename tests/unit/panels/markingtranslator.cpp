#include "markingtranslator.h"

#include <QCoreApplication>

MarkingTranslator::MarkingTranslator()
{
    QCoreApplication::installTranslator(this);
}

MarkingTranslator::~MarkingTranslator()
{
    QCoreApplication::removeTranslator(this);
}

QString MarkingTranslator::translate(const char *context, const char *sourceText, const char *,
                                     int) const
{
    const QString asker = QString::fromUtf8(context);
    if (asker.startsWith('Q'))
        return QString();
    const QString text = QString::fromUtf8(sourceText);
    const QString line = asker + ": " + text;
    if (!m_asked.contains(line))
        m_asked << line;
    return QChar(0xab) + text + QChar(0xbb);
}
