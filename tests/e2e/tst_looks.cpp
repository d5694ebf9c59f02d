#include "panelmodel.h"
#include "programfixture.h"
#include "waiting.h"

#include <QDir>
#include <QTest>

namespace {

/// A model's panel at full size, whatever the platform; fonts differ a little.
struct Look {
    const char *model;
    QSize size;
    /// Of the knobs' centres, in the order of PanelPicture.
    QList<QPoint> knobs;
    /// What it starts with, so that the pictures show more than defaults.
    QStringList settings;
};

// From the smallest to the largest: a window that has grown does not shrink again.
const QList<Look> looks{
    {"rm",
     {377, 248},
     {{79, 101}, {275, 99}},
     {"Dial/MicValue=36", "Dial/HeadphoneValue=-18", "Button/MonitorMicIsChecked=true"}},
    {"rx1",
     {391, 322},
     {{79, 106}, {282, 99}, {227, 266}},
     {"Dial/MicValue=28", "Dial/HeadphoneValue=-18", "Dial/OtgToHpValue=-12",
      "Button/Mic48VIsChecked=true", "Button/MonitorMicIsChecked=true",
      "Button/HeadphoneDimIsChecked=true"}},
    {"rx2",
     {762, 322},
     {{79, 99}, {235, 99}, {437, 99}, {383, 266}, {653, 99}, {598, 266}},
     {"Dial/Mic1Value=28", "Dial/Mic2Value=14", "Dial/SpeakerValue=-24", "Dial/HeadphoneValue=-18",
      "Dial/OtgToHpValue=-12", "Dial/OtgToSPValue=-20", "Button/Mic148VIsChecked=true",
      "Button/MonitorMic2IsChecked=true", "Button/SpeakerMuteIsChecked=true"}},
};

// Pixels, summed over both directions.
constexpr int fontTolerance = 30;

constexpr int meters = 64;

constexpr QSize largestScreen(1920, 1200);

bool areClose(int one, int other, int tolerance)
{
    return qAbs(one - other) <= tolerance;
}

} // namespace

/// How every window looks in both languages and on screens of every resolution. The pictures stay,
/// in the folder that VESMORA_PICTURES names.
class tst_Looks : public ProgramFixture
{
    Q_OBJECT

private slots:
    void everyWindow_data();
    void everyWindow();

protected:
    QSize screenSize() const override { return largestScreen; }

private:
    void keepPicture(const WindowInfo &window, const QString &name);
    void verifyPanel(const Look &look, double scale);

    QString m_folder;
};

void tst_Looks::everyWindow_data()
{
    QTest::addColumn<QString>("locale");
    QTest::addColumn<int>("percent");
    for (const auto &locale : {"en_US", "zh_CN"}) {
        for (const int percent : {100, 150, 200})
            QTest::addRow("%s at %d %%", qPrintable(locale), percent) << locale << percent;
    }
}

void tst_Looks::everyWindow()
{
    QFETCH(QString, locale);
    QFETCH(int, percent);
    QCOMPARE(looks.size(), allPanelModels().size());
    m_folder =
        QString("%1/%2-%3").arg(qEnvironmentVariable("VESMORA_PICTURES"), locale).arg(percent);
    QVERIFY(QDir().mkpath(m_folder));
    QVERIFY(lane().setScale(percent / 100.0));
    QVERIFY(start(locale));
    QVERIFY(tray().openMenu());
    keepPicture(*tray().menu(), "tray-menu");
    QVERIFY(pointer().key("Escape"));
    QVERIFY(waitUntil([this] { return !tray().menu(); }));
    QVERIFY(openWindow());
    keepPicture(*window(), "not-connected");

    for (const Look &look : looks) {
        const QString model = QString::fromLatin1(look.model);
        QVERIFY(iniFile(model + ".ini").write(look.settings));
        QVERIFY(simulator().setLevels(QList<qint32>(meters, minus20Db)));
        QVERIFY(plug(model));
        verifyPanel(look, percent / 100.0);
        if (QTest::currentTestFailed())
            return;
        QVERIFY(waitForLevels());
        keepPicture(*window(), model);
        QVERIFY(unplug());
    }

    QVERIFY(tray().choose(Tray::Setup));
    QVERIFY(waitUntil([this] { return settingsDialog().has_value(); }));
    keepPicture(*settingsDialog(), "settings");
}

void tst_Looks::keepPicture(const WindowInfo &window, const QString &name)
{
    const QString path = m_folder + u'/' + name + ".png";
    QVERIFY2(stillPicture(window.area).save(path), qPrintable(path));
}

void tst_Looks::verifyPanel(const Look &look, double scale)
{
    const QSize expected = look.size * scale;
    const auto isRightSize = [&] {
        const QSize size = window()->area.size();
        return areClose(size.width(), expected.width(), expected.width() / 12)
            && areClose(size.height(), expected.height(), expected.height() / 12);
    };
    QVERIFY2(waitUntil(isRightSize), look.model);
    if (scale != 1)
        return;
    const PanelPicture found =
        pictureWith(int(look.knobs.size()), int(panelModel(look.model).buttons().size()));
    QCOMPARE(found.knobs().size(), look.knobs.size());
    for (qsizetype i = 0; i < look.knobs.size(); ++i) {
        const QPoint way = found.knobs().at(i).centre - window()->area.topLeft() - look.knobs.at(i);
        QVERIFY2(way.manhattanLength() <= fontTolerance, qPrintable(QString::number(i)));
    }
}

QTEST_GUILESS_MAIN(tst_Looks)
#include "tst_looks.moc"
