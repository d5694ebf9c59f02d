#include "mainwindow.h"
#include "shellfixture.h"
#include "windowview.h"

#include <QIcon>
#include <QLabel>
#include <QTest>
#include <QTimer>
#include <QTranslator>
#include <QVBoxLayout>

/// The window as it comes, before it has looked for a device.
class tst_MainWindow : public ShellFixture
{
    Q_OBJECT

private slots:
    void hasOnlyMinimizeAndCloseButtons();
    void isTitledStyledAndDeletedOnClose();
    void showsTheProgramsIcon();
    void itsCentralWidgetCentresItsContent();
    void showsOneUntranslatedLabelAtFirst();
    void searchesFromTheBeginningAndDoesNotPoll();
    void doesNothingBeforeItsFirstTick();
    void declaresNoSignalsOrSlots();
    void isNotShownByItself();
};

namespace {

/// Puts "translated" in place of every text.
class AnyTranslator : public QTranslator
{
public:
    QString translate(const char *, const char *, const char *, int) const override
    {
        return "translated";
    }
    bool isEmpty() const override { return false; }
};

} // namespace

void tst_MainWindow::hasOnlyMinimizeAndCloseButtons()
{
    constexpr Qt::WindowFlags buttons = Qt::WindowMinimizeButtonHint | Qt::WindowCloseButtonHint;
    // A window of these flags also has a title bar and its menu.
    QWidget plain;
    plain.setWindowFlags(buttons);
    const MainWindow window;
    QCOMPARE(window.windowFlags(), plain.windowFlags());
    QVERIFY(window.windowFlags().testFlags(buttons));
    QVERIFY(!window.windowFlags().testFlag(Qt::WindowMaximizeButtonHint));
}

void tst_MainWindow::isTitledStyledAndDeletedOnClose()
{
    const MainWindow window;
    QCOMPARE(window.windowTitle(), "Vesmora Driver");
    QCOMPARE(window.styleSheet(), "QMainWindow { background-color: #2c313c; }");
    QVERIFY(window.testAttribute(Qt::WA_DeleteOnClose));
}

void tst_MainWindow::showsTheProgramsIcon()
{
    const MainWindow window;
    const QPixmap icon(":/icon/icon.png");
    QVERIFY(!icon.isNull());
    QCOMPARE(window.windowIcon().availableSizes(), QList<QSize>{icon.size()});
    QCOMPARE(window.windowIcon().pixmap(icon.size()).toImage(), icon.toImage());
}

void tst_MainWindow::itsCentralWidgetCentresItsContent()
{
    const MainWindow window;
    QCOMPARE(window.centralWidget()->metaObject(), &QWidget::staticMetaObject);
    const auto *layout = qobject_cast<QVBoxLayout *>(window.centralWidget()->layout());
    QVERIFY(layout);
    QCOMPARE(layout->alignment(), Qt::AlignCenter);
}

void tst_MainWindow::showsOneUntranslatedLabelAtFirst()
{
    AnyTranslator translator;
    QVERIFY(QCoreApplication::installTranslator(&translator));
    MainWindow window;
    const WindowView view(window);
    QCOMPARE(view.content(), QStringList{"声卡未连接！"});
    QCOMPARE(view.widgetAt(0)->metaObject(), &QLabel::staticMetaObject);
    QCOMPARE(view.widgetAt(0)->styleSheet(), "font-size: 12px; color: white;");
}

void tst_MainWindow::searchesFromTheBeginningAndDoesNotPoll()
{
    MainWindow window;
    const WindowView view(window);
    QCOMPARE(view.detectTimer()->interval(), 1000);
    QVERIFY(view.detectTimer()->isActive());
    QVERIFY(!view.detectTimer()->isSingleShot());
    QCOMPARE(view.pollTimer()->interval(), 400);
    QVERIFY(!view.pollTimer()->isActive());
    QVERIFY(!view.pollTimer()->isSingleShot());
    QCOMPARE(window.findChildren<QTimer *>(QString(), Qt::FindDirectChildrenOnly).size(), 2);
}

void tst_MainWindow::doesNothingBeforeItsFirstTick()
{
    plug(VESMORA_PID_RX1);
    // No settings dialog is set: a look at the device would not survive that.
    const MainWindow window;
    QCOMPARE(takeTraffic(), QStringList());
    QCOMPARE(takeLog(), QStringList());
}

void tst_MainWindow::declaresNoSignalsOrSlots()
{
    const QMetaObject &meta = MainWindow::staticMetaObject;
    QCOMPARE(meta.methodCount(), meta.methodOffset());
    QCOMPARE(meta.superClass(), &QMainWindow::staticMetaObject);
}

void tst_MainWindow::isNotShownByItself()
{
    MainWindow window;
    window.settingsWindow = &settings();
    plug(VESMORA_PID_RX1);
    WindowView(window).detect();
    QVERIFY(!window.isVisible());
    QVERIFY(!settings().isVisible());
}

QTEST_MAIN(tst_MainWindow)
#include "tst_mainwindow.moc"
