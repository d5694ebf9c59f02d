#ifndef ROOMGRAPH_H
#define ROOMGRAPH_H

#include <QMap>
#include <QSet>
#include <QStringList>

/// The rooms, which are folders like "simulator/model", and the arrows between them.
struct RoomGraph {
    QMap<QString, QSet<QString>> arrows; ///< every room is a key

    /// Whether arrows lead from one room to the other, by way of any number of rooms.
    bool leads(const QString &from, const QString &to) const;
    /// The rooms from which arrows lead back to them.
    QStringList circle() const;
    /// Without the arrows that a longer way says already; there is to be no circle.
    RoomGraph reduced() const;
    /// "from -> to" for every arrow.
    QStringList arrowTexts() const;
};

/// What has to be changed in the picture for it to show the links, and each arrow once: rooms and
/// arrows that are missing or too many. No picture shows links that go in a circle. Empty when it
/// shows them.
QStringList differences(const RoomGraph &picture, const RoomGraph &links);

#endif
