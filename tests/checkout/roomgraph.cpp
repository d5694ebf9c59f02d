#include "roomgraph.h"

bool RoomGraph::leads(const QString &from, const QString &to) const
{
    QSet<QString> seen;
    QStringList ahead(arrows.value(from).values());
    while (!ahead.isEmpty()) {
        const QString room = ahead.takeLast();
        if (room == to)
            return true;
        if (seen.contains(room))
            continue;
        seen.insert(room);
        ahead.append(arrows.value(room).values());
    }
    return false;
}

QStringList RoomGraph::circle() const
{
    QStringList rooms;
    for (const QString &room : arrows.keys()) {
        if (leads(room, room))
            rooms.append(room);
    }
    return rooms;
}

RoomGraph RoomGraph::reduced() const
{
    RoomGraph result = *this;
    for (auto room = arrows.cbegin(); room != arrows.cend(); ++room) {
        for (const QString &target : room.value()) {
            for (const QString &between : room.value()) {
                if (leads(between, target))
                    result.arrows[room.key()].remove(target);
            }
        }
    }
    return result;
}

QStringList RoomGraph::arrowTexts() const
{
    QStringList texts;
    for (auto room = arrows.cbegin(); room != arrows.cend(); ++room) {
        for (const QString &target : room.value())
            texts.append(room.key() + " -> " + target);
    }
    texts.sort();
    return texts;
}

namespace {

void compare(const QString &what, const QStringList &found, const QStringList &expected,
             QStringList &result)
{
    for (const QString &text : expected) {
        if (!found.contains(text))
            result.append(what + " missing: " + text);
    }
    for (const QString &text : found) {
        if (!expected.contains(text))
            result.append(what + " too many: " + text);
    }
}

} // namespace

QStringList differences(const RoomGraph &picture, const RoomGraph &links)
{
    const QStringList circle = links.circle();
    if (!circle.isEmpty())
        return {"links in a circle: " + circle.join(u' ')};

    QStringList result;
    compare("room", picture.arrows.keys(), links.arrows.keys(), result);
    compare("arrow", picture.arrowTexts(), links.reduced().arrowTexts(), result);
    return result;
}
