#include "roomheaders.h"

#include <QDir>
#include <QDirIterator>
#include <QRegularExpression>

RoomHeaders::RoomHeaders(const QString &checkout, const QStringList &rooms)
    : m_checkout(QDir::cleanPath(checkout) + u'/')
    , m_rooms(rooms)
{
    for (const QString &room : rooms) {
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
    while (!folder.isEmpty() && !m_rooms.contains(folder))
        folder.truncate(qMax(folder.lastIndexOf(u'/'), 0));
    return folder;
}

bool RoomHeaders::isIncludable(const QString &room) const
{
    return std::any_of(m_owners.begin(), m_owners.end(),
                       [&](const QSet<QString> &owners) { return owners.contains(room); });
}

QSet<QString> RoomHeaders::included(const QString &room, const QString &source) const
{
    static const QRegularExpression include("^\\s*#\\s*include\\s*[<\"](?:.*/)?([^>\"]+)[>\"]",
                                            QRegularExpression::MultilineOption);
    QSet<QString> rooms;
    for (const auto &match : include.globalMatch(source))
        rooms += m_owners.value(match.captured(1));
    rooms.remove(room);
    return rooms;
}

QStringList RoomHeaders::ambiguousNames() const
{
    QStringList names;
    for (auto header = m_owners.begin(); header != m_owners.end(); ++header) {
        if (header.value().size() > 1)
            names.append(header.key());
    }
    return names;
}
