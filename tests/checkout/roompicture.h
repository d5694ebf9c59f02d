#ifndef ROOMPICTURE_H
#define ROOMPICTURE_H

#include "roomgraph.h"

/// The picture of the rooms, read as people read it: a box is a room with its name in it, and an
/// arrow leads from the box at which it starts to the box at which its head is.
struct RoomPicture {
    RoomGraph rooms;
    QStringList mistakes; ///< boxes without a name, arrows without a head or that touch no box
};

/// Reads the text of an SVG. A room of the class "native" or "windows" is one that only this build
/// has; those of the other than @p build are left out, and so are their arrows.
RoomPicture readPicture(const QString &svg, const QString &build);

#endif
