#ifndef ROOMHEADERS_H
#define ROOMHEADERS_H

#include "roomgraph.h"

/// Which room has which header, and who includes it.
class RoomHeaders
{
public:
    /// @p checkout is the folder that holds the rooms.
    RoomHeaders(const QString &checkout, const QStringList &rooms);

    /// The room in which a path of the checkout lies; empty for none.
    QString roomOf(const QString &path) const;
    /// All sources and headers of a room, absolute.
    QStringList files(const QString &room) const { return m_files.value(room); }
    /// Whether the room has a header at all.
    bool isIncludable(const QString &room) const;
    /// The other rooms whose headers a source of @p room includes.
    QSet<QString> included(const QString &room, const QString &source) const;
    /// The names of headers that more than one room has.
    QStringList ambiguousNames() const;

private:
    QString m_checkout;
    QStringList m_rooms;
    QMap<QString, QStringList> m_files;
    QMap<QString, QSet<QString>> m_owners; ///< the rooms that have a header of this name
};

#endif
