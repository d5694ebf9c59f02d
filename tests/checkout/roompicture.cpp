#include "roompicture.h"

#include <QRectF>
#include <QRegularExpression>
#include <QXmlStreamReader>

namespace {

struct Box {
    QRectF place;
    QString name;
    bool isBuilt = false;
};

QString attribute(const QXmlStreamReader &xml, const char *name)
{
    return xml.attributes().value(QLatin1String(name)).toString();
}

/// A name is the first text after its box.
QList<Box> readBoxes(const QString &svg, const QString &build)
{
    QList<Box> boxes;
    QXmlStreamReader xml(svg);
    while (!xml.atEnd()) {
        if (xml.readNext() != QXmlStreamReader::StartElement)
            continue;
        const QStringList classes = attribute(xml, "class").split(u' ');
        if (xml.name() == u"rect" && classes.contains("room")) {
            const QRectF place(attribute(xml, "x").toDouble(), attribute(xml, "y").toDouble(),
                               attribute(xml, "width").toDouble(),
                               attribute(xml, "height").toDouble());
            const bool isOfOneBuild = classes.contains("native") || classes.contains("windows");
            boxes.append({place, {}, !isOfOneBuild || classes.contains(build)});
        } else if (classes.contains("name") && !boxes.isEmpty() && boxes.last().name.isEmpty()) {
            boxes.last().name = xml.readElementText();
        }
    }
    if (xml.hasError())
        qFatal("The picture cannot be read: %s", qPrintable(xml.errorString()));
    return boxes;
}

/// The box whose upper or lower edge the point is on.
const Box *boxAt(const QList<Box> &boxes, const QPointF &point)
{
    for (const Box &box : boxes) {
        const double distance =
            qMin(qAbs(point.y() - box.place.top()), qAbs(point.y() - box.place.bottom()));
        if (distance <= 3 && point.x() > box.place.left() && point.x() < box.place.right())
            return &box;
    }
    return nullptr;
}

QPointF point(const QRegularExpressionMatch &match, int group)
{
    return {match.captured(group).toDouble(), match.captured(group + 1).toDouble()};
}

} // namespace

RoomPicture readPicture(const QString &svg, const QString &build)
{
    RoomPicture picture;
    const QList<Box> boxes = readBoxes(svg, build);
    for (const Box &box : boxes) {
        if (box.name.isEmpty())
            picture.mistakes.append("a box has no name");
        else if (box.isBuilt)
            picture.rooms.arrows.insert(box.name, {});
    }

    static const QRegularExpression arrow("<path class=\"arrow\" d=\"([^\"]*)\"");
    // It ends with the two strokes of its head, which points down.
    static const QRegularExpression way(
        "^M([\\d.]+),([\\d.]+) .*?([\\d.]+),([\\d.]+) m-6,-10 l6,10 l6,-10$");
    for (const auto &found : arrow.globalMatch(svg)) {
        const QString line = found.captured(1);
        const QRegularExpressionMatch match = way.match(line);
        if (!match.hasMatch()) {
            picture.mistakes.append("an arrow has no head: " + line);
            continue;
        }
        const Box *from = boxAt(boxes, point(match, 1));
        const Box *to = boxAt(boxes, point(match, 3));
        if (!from || !to)
            picture.mistakes.append("an arrow touches no box: " + line);
        else if (from->isBuilt && to->isBuilt)
            picture.rooms.arrows[from->name].insert(to->name);
    }
    return picture;
}
