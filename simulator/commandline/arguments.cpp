#include "arguments.h"

QString Arguments::word(const QString &what)
{
    const auto next = optionalWord();
    if (!next)
        reject(what + QStringLiteral(" is missing"));
    return next.value_or(QString());
}

std::optional<QString> Arguments::optionalWord()
{
    if (m_words.isEmpty())
        return std::nullopt;
    return m_words.takeFirst();
}

qint64 Arguments::number(const QString &what, qint64 minimum, qint64 maximum)
{
    const QString text = word(what);
    if (!m_error.isEmpty())
        return minimum;
    const auto number = parse(text, minimum, maximum);
    if (!number)
        reject(QStringLiteral("%1 is to be a number from %2 to %3, not \"%4\"")
                   .arg(what)
                   .arg(minimum)
                   .arg(maximum)
                   .arg(text));
    return number.value_or(minimum);
}

std::optional<QString> Arguments::textOption(const QString &name)
{
    const qsizetype index = m_words.indexOf(name);
    if (index < 0)
        return std::nullopt;
    m_words.removeAt(index);
    if (index < m_words.size())
        return m_words.takeAt(index);
    reject(QStringLiteral("the value of %1 is missing").arg(name));
    return std::nullopt;
}

std::optional<qint64> Arguments::option(const QString &name, qint64 minimum, qint64 maximum)
{
    const auto text = textOption(name);
    if (!text)
        return std::nullopt;
    Arguments value({*text});
    const qint64 number = value.number(name, minimum, maximum);
    if (value.error().isEmpty())
        return number;
    reject(value.error());
    return std::nullopt;
}

bool Arguments::flag(const QString &name)
{
    return m_words.removeAll(name) > 0;
}

void Arguments::finish()
{
    if (!m_words.isEmpty())
        reject(QStringLiteral("\"%1\" is not understood").arg(m_words.constFirst()));
}

void Arguments::reject(const QString &mistake)
{
    if (m_error.isEmpty())
        m_error = mistake;
}

std::optional<qint64> Arguments::parse(const QString &text, qint64 minimum, qint64 maximum)
{
    const bool isHex = text.startsWith(QLatin1String("0x"), Qt::CaseInsensitive);
    bool isNumber = false;
    const qint64 number = text.toLongLong(&isNumber, isHex ? 16 : 10);
    if (!isNumber || number < minimum || number > maximum)
        return std::nullopt;
    return number;
}
