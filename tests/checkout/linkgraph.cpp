#include "linkgraph.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

LinkGraph readLinks(const QByteArray &json)
{
    const QJsonDocument document = QJsonDocument::fromJson(json);
    if (!document.isArray())
        qFatal("The links of the rooms cannot be read.");
    LinkGraph graph;
    for (const QJsonValue target : document.array()) {
        const QString room = target["room"].toString();
        QSet<QString> &arrows = graph.rooms.arrows[room];
        for (const QJsonValue link : target["links"].toArray())
            arrows.insert(link.toString());
        arrows -= {QString(), room};
        for (const QJsonValue folder : target["folders"].toArray())
            graph.folders[room].append(folder.toString());
    }
    return graph;
}
