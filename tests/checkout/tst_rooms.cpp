#include "linkgraph.h"
#include "roomheaders.h"
#include "roompicture.h"

#include <QFile>
#include <QTest>

namespace {

QString contentsOf(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        qFatal("%s: %s", qPrintable(path), qPrintable(file.errorString()));
    return QString::fromUtf8(file.readAll());
}

/// With the first @p before changed into @p after.
QString replaced(QString text, const QString &before, const QString &after)
{
    const qsizetype place = text.indexOf(before);
    if (place < 0)
        qFatal("There is no \"%s\" to replace.", qPrintable(before));
    return text.replace(place, before.size(), after);
}

/// A box far outside of the picture, which counts nevertheless.
QString box(const QString &room, int y)
{
    return QString("<rect class=\"room\" x=\"9000\" y=\"%1\" width=\"100\" height=\"40\"/>"
                   "<text class=\"name\">%2</text>")
        .arg(y)
        .arg(room);
}

/// Two such boxes and an arrow from the one to the other.
QString arrow(const QString &from, const QString &to)
{
    return box(from, 0) + box(to, 100)
        + "<path class=\"arrow\" d=\"M9050,40 L9050,100 m-6,-10 l6,10 l6,-10\"/>";
}

} // namespace

/// The picture of the rooms says who may know whom. The links, the include paths and the includes
/// keep to it, and the comparison would notice if they did not.
class tst_Rooms : public QObject
{
    Q_OBJECT

private slots:
    void thePictureShowsTheLinks();
    void aRoomFindsTheHeadersOfNoOther_data();
    void aRoomFindsTheHeadersOfNoOther();
    void aRoomIncludesTheHeadersOfNoOther_data();
    void aRoomIncludesTheHeadersOfNoOther();

    void aWrongPictureIsNoticed_data();
    void aWrongPictureIsNoticed();
    void aWrongLinkIsNoticed_data();
    void aWrongLinkIsNoticed();
    void aLinkThatIsGoneIsNoticed();
    void aWrongFolderIsNoticed_data();
    void aWrongFolderIsNoticed();
    void aWrongIncludeIsNoticed_data();
    void aWrongIncludeIsNoticed();

private:
    void addRooms();

    const QString m_checkout = CHECKOUT;
    const QString m_svg = contentsOf(m_checkout + "/docs/rooms.svg");
    const RoomPicture m_picture = readPicture(m_svg, ROOM_BUILD);
    const LinkGraph m_links = readLinks(contentsOf(ROOM_LINKS).toUtf8());
    const RoomHeaders m_headers{m_checkout, m_picture.rooms};
};

void tst_Rooms::thePictureShowsTheLinks()
{
    const QStringList found = m_picture.mistakes + differences(m_picture.rooms, m_links.rooms);
    QVERIFY2(found.isEmpty(), qPrintable(found.join(u'\n')));
}

void tst_Rooms::addRooms()
{
    QTest::addColumn<QString>("room");
    for (const QString &room : m_picture.rooms.arrows.keys())
        QTest::newRow(qPrintable(room)) << room;
}

void tst_Rooms::aRoomFindsTheHeadersOfNoOther_data()
{
    addRooms();
}

/// Unless its arrows lead there.
void tst_Rooms::aRoomFindsTheHeadersOfNoOther()
{
    QFETCH(QString, room);
    QStringList folders = m_links.folders.value(room);
    folders.removeIf([this](const QString &folder) {
        return !folder.startsWith(m_checkout + u'/') || folder.startsWith(m_checkout + "/build/");
    });
    const QStringList strays = m_headers.strayFolders(room, folders);
    QVERIFY2(strays.isEmpty(), qPrintable(strays.join(u'\n')));
}

void tst_Rooms::aRoomIncludesTheHeadersOfNoOther_data()
{
    addRooms();
}

/// Unless its arrows lead there.
void tst_Rooms::aRoomIncludesTheHeadersOfNoOther()
{
    QFETCH(QString, room);
    for (const QString &file : m_headers.files(room)) {
        const QStringList strays = m_headers.strayIncludes(room, contentsOf(file));
        QVERIFY2(strays.isEmpty(), qPrintable(file + " includes " + strays.join(u' ')));
    }
}

void tst_Rooms::aWrongPictureIsNoticed_data()
{
    QTest::addColumn<QString>("before");
    QTest::addColumn<QString>("after");
    QTest::addColumn<QStringList>("expected");
    const QString end = "</svg>";
    QTest::newRow("arrow missing")
        << "<path class=\"arrow\""
        << "<path class=\"line\"" << QStringList("arrow missing: app -> shell");
    QTest::newRow("arrow too many") << end << arrow("controls", "driver") + end
                                    << QStringList("arrow too many: controls -> driver");
    QTest::newRow("arrow said already")
        << end << arrow("shell", "driver") + end << QStringList("arrow too many: shell -> driver");
    QTest::newRow("arrow turned round") << end << arrow("driver", "panels") + end
                                        << QStringList("arrow too many: driver -> panels");
    QTest::newRow("arrow without a head")
        << " m-6,-10 l6,10 l6,-10" << QString()
        << QStringList({"an arrow has no head: ", "arrow missing: app -> shell"});
    QTest::newRow("arrow from nowhere")
        << "<path class=\"arrow\" d=\"M"
        << "<path class=\"arrow\" d=\"M8"
        << QStringList({"an arrow touches no box: ", "arrow missing: app -> shell"});
    QTest::newRow("room too many")
        << end << box("attic", 0) + end << QStringList("room too many: attic");
    QTest::newRow("room without a name")
        << end << box(QString(), 0) + end << QStringList("a box has no name");
    QTest::newRow("room of another name")
        << ">resources<"
        << ">attic<"
        << QStringList({"room missing: resources", "room too many: attic",
                        "arrow missing: app -> resources", "arrow too many: app -> attic"});
}

void tst_Rooms::aWrongPictureIsNoticed()
{
    QFETCH(QString, before);
    QFETCH(QString, after);
    QFETCH(QStringList, expected);
    const RoomPicture picture = readPicture(replaced(m_svg, before, after), ROOM_BUILD);
    const QStringList found = picture.mistakes + differences(picture.rooms, m_picture.rooms);
    QCOMPARE(found.size(), expected.size());
    for (qsizetype i = 0; i < found.size(); ++i)
        QVERIFY2(found[i].startsWith(expected[i]), qPrintable(found[i]));
}

void tst_Rooms::aWrongLinkIsNoticed_data()
{
    QTest::addColumn<QString>("from");
    QTest::addColumn<QString>("to");
    QTest::addColumn<QString>("expected");
    QTest::newRow("controls know driver") << "controls"
                                          << "driver"
                                          << "arrow missing: controls -> driver";
    QTest::newRow("panels know settings") << "panels"
                                          << "settings"
                                          << "arrow missing: panels -> settings";
    QTest::newRow("app knows the simulator") << "app"
                                             << "simulator/client"
                                             << "arrow missing: app -> simulator/client";
    QTest::newRow("driver knows panels") << "driver"
                                         << "panels"
                                         << "links in a circle: driver panels";
    QTest::newRow("model knows record") << "simulator/model"
                                        << "simulator/record"
                                        << "links in a circle: simulator/model simulator/record";
    QTest::newRow("a new room") << "app"
                                << "attic"
                                << "room missing: attic";
}

void tst_Rooms::aWrongLinkIsNoticed()
{
    QFETCH(QString, from);
    QFETCH(QString, to);
    QFETCH(QString, expected);
    RoomGraph links = m_picture.rooms;
    links.arrows[from].insert(to);
    links.arrows[to];
    const QStringList found = differences(m_picture.rooms, links);
    QVERIFY2(found.contains(expected), qPrintable(found.join(u'\n')));
}

void tst_Rooms::aLinkThatIsGoneIsNoticed()
{
    RoomGraph links = m_picture.rooms;
    links.arrows["shell"].remove("settings");
    QCOMPARE(differences(m_picture.rooms, links), QStringList("arrow too many: shell -> settings"));
}

void tst_Rooms::aWrongFolderIsNoticed_data()
{
    QTest::addColumn<QString>("room");
    QTest::addColumn<QString>("folder");
    QTest::newRow("beside") << "panels"
                            << "settings";
    QTest::newRow("above") << "driver"
                           << "shell";
    QTest::newRow("the simulator's") << "app"
                                     << "simulator/protocol";
    QTest::newRow("the product's") << "simulator/model"
                                   << "driver";
    QTest::newRow("the tests'") << "shell"
                                << "tests/support";
    QTest::newRow("everybody's") << "controls"
                                 << ".";
}

void tst_Rooms::aWrongFolderIsNoticed()
{
    QFETCH(QString, room);
    QFETCH(QString, folder);
    const QString path = m_checkout + u'/' + folder;
    QCOMPARE(m_headers.strayFolders(room, {m_checkout + u'/' + room, path}), QStringList(path));
}

void tst_Rooms::aWrongIncludeIsNoticed_data()
{
    QTest::addColumn<QString>("room");
    QTest::addColumn<QString>("include");
    QTest::addColumn<QStringList>("expected");
    const QStringList none;
    QTest::newRow("own") << "panels"
                         << "#include \"devicepanel.h\"" << none;
    QTest::newRow("below") << "panels"
                           << "#include \"knob.h\"" << none;
    QTest::newRow("far below") << "app"
                               << "#include \"vesmoracontract.h\"" << none;
    QTest::newRow("Qt's") << "controls"
                          << "#include <QPainter>" << none;
    QTest::newRow("beside") << "panels"
                            << "#include \"settings.h\"" << QStringList("settings.h");
    QTest::newRow("above") << "driver"
                           << "#include \"mainwindow.h\"" << QStringList("mainwindow.h");
    QTest::newRow("by another way")
        << "controls"
        << "#include \"../driver/vesmoraiocontrol.h\"" << QStringList("vesmoraiocontrol.h");
    QTest::newRow("with spaces") << "settings"
                                 << "int i;\n  #  include <simmodel.h>"
                                 << QStringList("simmodel.h");
}

void tst_Rooms::aWrongIncludeIsNoticed()
{
    QFETCH(QString, room);
    QFETCH(QString, include);
    QFETCH(QStringList, expected);
    QCOMPARE(m_headers.strayIncludes(room, include), expected);
}

QTEST_APPLESS_MAIN(tst_Rooms)
#include "tst_rooms.moc"
