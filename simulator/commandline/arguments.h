#ifndef ARGUMENTS_H
#define ARGUMENTS_H

#include <QString>
#include <QStringList>

#include <optional>

/// The words of a command line, taken away one by one. Everything left at the end is too much.
/// The first mistake is kept in error(); nothing is found any more after it.
class Arguments
{
public:
    explicit Arguments(const QStringList &words)
        : m_words(words)
    { }

    /// The next word; its absence is a mistake. @p what names it to the user.
    QString word(const QString &what);
    /// The next word, if there is one.
    std::optional<QString> optionalWord();
    /// A whole number, decimal or 0x..., within the range.
    qint64 number(const QString &what, qint64 minimum, qint64 maximum);
    /// The word after the option @p name, wherever the option stands.
    std::optional<QString> textOption(const QString &name);
    /// The number after the option @p name, wherever the option stands.
    std::optional<qint64> option(const QString &name, qint64 minimum, qint64 maximum);
    /// Whether the option @p name stands anywhere.
    bool flag(const QString &name);

    bool isEmpty() const { return m_words.isEmpty(); }
    /// Makes what is left a mistake.
    void finish();
    void reject(const QString &mistake);
    /// Empty while there was no mistake.
    QString error() const { return m_error; }

    /// A whole number, decimal or 0x..., within the range, of a text.
    static std::optional<qint64> parse(const QString &text, qint64 minimum, qint64 maximum);

private:
    QStringList m_words;
    QString m_error;
};

#endif
