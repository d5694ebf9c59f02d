#ifndef ROOMHEADERS_H
#define ROOMHEADERS_H

#include "roomgraph.h"

/// Who may include what: a room its own headers, and those of the rooms to which its arrows lead.
class RoomHeaders
{
public:
    /// @p checkout is the folder that holds the rooms.
    RoomHeaders(const QString &checkout, const RoomGraph &rooms);

    /// All sources and headers of a room, absolute.
    QStringList files(const QString &room) const { return m_files.value(room); }
    /// Those of the folders, all in the checkout, whose headers are not the room's business.
    QStringList strayFolders(const QString &room, const QStringList &folders) const;
    /// The headers of other rooms that the text includes and that are not the room's business.
    QStringList strayIncludes(const QString &room, const QString &text) const;

private:
    /// The room in which a path of the checkout lies; empty for none.
    QString roomOf(const QString &path) const;
    bool mayKnow(const QString &room, const QString &other) const;

    QString m_checkout;
    RoomGraph m_rooms;
    QMap<QString, QStringList> m_files;
    QMap<QString, QSet<QString>> m_owners; ///< the rooms that have a header of this name
};

#endif
