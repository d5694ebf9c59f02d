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

/// The picture of the rooms says who may know whom. The links keep to it, the include paths and the
/// includes keep to the links, and the comparison would notice if they did not.
class tst_Rooms : public QObject
{
    Q_OBJECT

private slots:
    void thePictureShowsTheLinks();
    void aRoomFindsTheHeadersOfNoOther_data();
    void aRoomFindsTheHeadersOfNoOther();
    void aRoomLinksWhatItIncludesAndNoMore_data();
    void aRoomLinksWhatItIncludesAndNoMore();
    void noTwoRoomsHaveAHeaderOfTheSameName();

    void aWrongPictureIsNoticed_data();
    void aWrongPictureIsNoticed();
    void aWrongLinkIsNoticed_data();
    void aWrongLinkIsNoticed();
    void aLinkThatIsGoneIsNoticed();
    void aWrongFolderIsNoticed_data();
    void aWrongFolderIsNoticed();
    void includesAreReadAsACompilerReadsThem_data();
    void includesAreReadAsACompilerReadsThem();

private:
    void addRooms();
    QStringList strayFolders(const QString &room, const QStringList &folders) const;

    const QString m_checkout = CHECKOUT;
    const QString m_svg = contentsOf(m_checkout + "/docs/rooms.svg");
    const RoomPicture m_picture = readPicture(m_svg, ROOM_BUILD);
    const LinkGraph m_links = readLinks(contentsOf(ROOM_LINKS).toUtf8());
    const RoomHeaders m_headers{m_checkout, m_links.rooms.arrows.keys()};
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

/// The folders of the checkout whose headers are not the room's business.
QStringList tst_Rooms::strayFolders(const QString &room, const QStringList &folders) const
{
    QStringList strays;
    for (const QString &folder : folders) {
        const QString owner = m_headers.roomOf(folder);
        if (owner != room && !m_picture.rooms.leads(room, owner))
            strays.append(folder);
    }
    return strays;
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
    const QStringList strays = strayFolders(room, folders);
    QVERIFY2(strays.isEmpty(), qPrintable(strays.join(u'\n')));
}

void tst_Rooms::aRoomLinksWhatItIncludesAndNoMore_data()
{
    addRooms();
}

void tst_Rooms::aRoomLinksWhatItIncludesAndNoMore()
{
    QFETCH(QString, room);
    QSet<QString> included;
    for (const QString &file : m_headers.files(room))
        included += m_headers.included(room, contentsOf(file));
    QSet<QString> linked = m_links.rooms.arrows.value(room);
    linked.removeIf([this](const QString &other) { return !m_headers.isIncludable(other); });

    const QStringList unlinked = (included - linked).values();
    QVERIFY2(unlinked.isEmpty(), qPrintable("not linked: " + unlinked.join(u' ')));
    const QStringList unused = (linked - included).values();
    QVERIFY2(unused.isEmpty(), qPrintable("not included: " + unused.join(u' ')));
}

/// Which of them an include finds would depend on the order of the links.
void tst_Rooms::noTwoRoomsHaveAHeaderOfTheSameName()
{
    QCOMPARE(m_headers.ambiguousNames().join(u' '), QString());
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
        << ">controls<"
        << ">attic<"
        << QStringList({"room missing: controls", "room too many: attic",
                        "arrow missing: panels -> controls", "arrow too many: panels -> attic"});
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
    const auto add = [](const char *name, const char *from, const char *to, const char *expected) {
        QTest::newRow(name) << QString(from) << QString(to) << QString(expected);
    };
    add("controls know driver", "controls", "driver", "arrow missing: controls -> driver");
    add("panels know settings", "panels", "settings", "arrow missing: panels -> settings");
    add("app knows the simulator", "app", "simulator/client",
        "arrow missing: app -> simulator/client");
    add("driver knows panels", "driver", "panels", "links in a circle: driver panels");
    add("model knows record", "simulator/model", "simulator/record",
        "links in a circle: simulator/model simulator/record");
    add("a new room", "app", "attic", "room missing: attic");
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
    const auto add = [](const char *name, const char *room, const char *folder) {
        QTest::newRow(name) << QString(room) << QString(folder);
    };
    add("beside", "panels", "settings");
    add("above", "driver", "shell");
    add("the simulator's", "app", "simulator/protocol");
    add("the product's", "simulator/model", "driver");
    add("the tests'", "shell", "tests/support");
    add("everybody's", "controls", ".");
}

void tst_Rooms::aWrongFolderIsNoticed()
{
    QFETCH(QString, room);
    QFETCH(QString, folder);
    const QString path = m_checkout + u'/' + folder;
    QCOMPARE(strayFolders(room, {m_checkout + u'/' + room, path}), QStringList(path));
}

void tst_Rooms::includesAreReadAsACompilerReadsThem_data()
{
    QTest::addColumn<QString>("source");
    QTest::addColumn<QStringList>("rooms");
    const QStringList none;
    QTest::newRow("own") << "#include \"devicepanel.h\"\n" << none;
    QTest::newRow("Qt's") << "#include <QPainter>\n" << none;
    QTest::newRow("two") << "#include \"knob.h\"\n#include \"settings.h\"\n"
                         << QStringList({"controls", "settings"});
    QTest::newRow("room in a room") << "#include \"vesmoracontract.h\"\n"
                                    << QStringList("driver/contract");
    QTest::newRow("by way of folders") << "#include \"../driver/vesmoraiocontrol.h\"\n"
                                       << QStringList("driver");
    QTest::newRow("with spaces") << "int i;\n  #  include  <simmodel.h>\n"
                                 << QStringList("simulator/model");
    QTest::newRow("in a comment") << "// #include \"mainwindow.h\"\n" << none;
}

void tst_Rooms::includesAreReadAsACompilerReadsThem()
{
    QFETCH(QString, source);
    QFETCH(QStringList, rooms);
    QStringList found = m_headers.included("panels", source).values();
    found.sort();
    QCOMPARE(found, rooms);
}

QTEST_APPLESS_MAIN(tst_Rooms)
#include "tst_rooms.moc"
