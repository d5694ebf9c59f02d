#ifndef GOLDENSTART_H
#define GOLDENSTART_H

#include <QByteArray>
#include <QMap>
#include <QStringList>

/// What a panel does when it starts, written out: it judges the panels and the family alike.
struct GoldenStart {
    QStringList requests;      ///< with the opening
    QList<QByteArray> packets; ///< those among them that are packets, whole
    QStringList log;
    QStringList saved; ///< then in the INI file, "Section/Key=Value" in the order of first writing

    /// What is saved, by "Section/Key".
    QMap<QString, QString> values() const;
};

/// A model's first start.
GoldenStart goldenFirstStart(const QString &model);
/// Its start with a saved state: what is saved in the end was stored before.
GoldenStart goldenReplay(const QString &model);

#endif
