#ifndef LINKGRAPH_H
#define LINKGRAPH_H

#include "roomgraph.h"

#include <QByteArray>

/// What CMake knows of the rooms.
struct LinkGraph {
    RoomGraph rooms;                    ///< an arrow for what a target of the room links
    QMap<QString, QStringList> folders; ///< where a room's sources find headers, absolute
};

/// Reads the JSON that rooms.cmake writes: an array with an object for each target.
LinkGraph readLinks(const QByteArray &json);

#endif
