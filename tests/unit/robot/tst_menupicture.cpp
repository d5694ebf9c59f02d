#include "menupicture.h"

#include <QMenu>
#include <QTest>

class tst_MenuPicture : public QObject
{
    Q_OBJECT

private slots:
    void entriesComeFromTheTopWithoutSeparators();
    void aDisabledEntryIsGreyed();
    void positionsCountFromTheOrigin();
    void nothingIsNoMenu();
};

namespace {

/// A menu with a disabled first entry and a separator, as it is drawn on the screen.
class DrawnMenu
{
public:
    DrawnMenu()
    {
        m_menu.addAction("V20250930")->setEnabled(false);
        m_menu.addAction("Quit");
        m_menu.addSeparator();
        m_menu.addAction("Main Window");
        m_menu.resize(m_menu.sizeHint());
    }

    QRect area(int action) const { return m_menu.actionGeometry(m_menu.actions().at(action)); }
    QImage image() { return m_menu.grab().toImage().convertToFormat(QImage::Format_RGB32); }

private:
    QMenu m_menu;
};

} // namespace

void tst_MenuPicture::entriesComeFromTheTopWithoutSeparators()
{
    DrawnMenu menu;
    const MenuPicture picture(menu.image());
    QCOMPARE(picture.entries().size(), 3);
    QVERIFY(menu.area(0).contains(picture.entries().at(0).centre));
    QVERIFY(menu.area(1).contains(picture.entries().at(1).centre));
    QVERIFY(menu.area(3).contains(picture.entries().at(2).centre));
}

void tst_MenuPicture::aDisabledEntryIsGreyed()
{
    DrawnMenu menu;
    const MenuPicture picture(menu.image());
    QCOMPARE(picture.entries().size(), 3);
    QVERIFY(picture.entries().at(0).greyed);
    QVERIFY(!picture.entries().at(1).greyed);
    QVERIFY(!picture.entries().at(2).greyed);
}

void tst_MenuPicture::positionsCountFromTheOrigin()
{
    DrawnMenu menu;
    const MenuPicture here(menu.image());
    const MenuPicture there(menu.image(), {700, 20});
    QCOMPARE(there.entries().at(2).centre, here.entries().at(2).centre + QPoint(700, 20));
}

void tst_MenuPicture::nothingIsNoMenu()
{
    QVERIFY(MenuPicture().entries().isEmpty());
    QVERIFY(MenuPicture(QImage()).entries().isEmpty());
}

QTEST_MAIN(tst_MenuPicture)
#include "tst_menupicture.moc"
