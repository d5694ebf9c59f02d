#include "roomheaders.h"

#include <QDir>
#include <QDirIterator>
#include <QRegularExpression>

RoomHeaders::RoomHeaders(const QString &checkout, const RoomGraph &rooms)
    : m_checkout(QDir::cleanPath(checkout) + u'/')
    , m_rooms(rooms)
{
    for (const QString &room : rooms.arrows.keys()) {
        QDirIterator files(m_checkout + room, {"*.h", "*.c", "*.cpp"}, QDir::Files,
                           QDirIterator::Subdirectories);
        while (files.hasNext()) {
            const QString path = files.next();
            if (roomOf(path) != room)
                continue;
            m_files[room].append(path);
            if (path.endsWith(".h"))
                m_owners[files.fileName()].insert(room);
        }
    }
}

QString RoomHeaders::roomOf(const QString &path) const
{
    QString folder = QDir::cleanPath(path);
    if (!folder.startsWith(m_checkout))
        return {};
    folder.remove(0, m_checkout.size());
    while (!folder.isEmpty() && !m_rooms.arrows.contains(folder))
        folder.truncate(qMax(folder.lastIndexOf(u'/'), 0));
    return folder;
}

bool RoomHeaders::mayKnow(const QString &room, const QString &other) const
{
    return room == other || m_rooms.leads(room, other);
}

QStringList RoomHeaders::strayFolders(const QString &room, const QStringList &folders) const
{
    QStringList strays;
    for (const QString &folder : folders) {
        if (!mayKnow(room, roomOf(folder)))
            strays.append(folder);
    }
    return strays;
}

QStringList RoomHeaders::strayIncludes(const QString &room, const QString &text) const
{
    static const QRegularExpression include("^\\s*#\\s*include\\s*[<\"](?:.*/)?([^>\"]+)[>\"]",
                                            QRegularExpression::MultilineOption);
    QStringList strays;
    for (const auto &match : include.globalMatch(text)) {
        const QString header = match.captured(1);
        const QSet<QString> owners = m_owners.value(header);
        const bool isKnown = std::any_of(owners.begin(), owners.end(), [&](const QString &owner) {
            return mayKnow(room, owner);
        });
        if (!owners.isEmpty() && !isKnown)
            strays.append(header);
    }
    return strays;
}
