#ifndef MARKINGTRANSLATOR_H
#define MARKINGTRANSLATOR_H

#include <QStringList>
#include <QTranslator>

/// Installed while it lives: translates every text of ours into itself between « and » and keeps
/// what it was asked for.
class MarkingTranslator : public QTranslator
{
public:
    MarkingTranslator();
    ~MarkingTranslator() override;

    bool isEmpty() const override { return false; }
    QString translate(const char *context, const char *sourceText, const char *disambiguation,
                      int n) const override;

    /// "context: text" in the order of asking, each once; Qt's own texts left out.
    QStringList asked() const { return m_asked; }

private:
    mutable QStringList m_asked;
};

#endif
