#ifndef KNOWNMESSAGES_H
#define KNOWNMESSAGES_H

#include <QStringList>

/// @p lines without what the platform writes of its own accord.
QStringList panelMessages(QStringList lines);
/// Those of @p lines that are none of the panel's own messages.
QStringList unknownMessages(QStringList lines);

#endif
