// An icon in the tray and a window with as many widgets of Qt as an RX1's panel has parts, dressed
// alike.

#include <QApplication>
#include <QDial>
#include <QFrame>
#include <QGraphicsDropShadowEffect>
#include <QLabel>
#include <QLineEdit>
#include <QMainWindow>
#include <QPushButton>
#include <QSystemTrayIcon>
#include <QVBoxLayout>

namespace {

void addLabels(QWidget &parent, int count, const char *style)
{
    for (int i = 0; i < count; ++i) {
        auto *label = new QLabel(QStringLiteral("HEADPHONE"), &parent);
        label->setAlignment(Qt::AlignCenter);
        label->setStyleSheet(QLatin1String(style));
        parent.layout()->addWidget(label);
    }
}

void addDial(QWidget &parent, int size)
{
    auto *dial = new QDial(&parent);
    dial->setFixedSize(size, size);
    parent.layout()->addWidget(dial);
    // For typing a number.
    auto *editor = new QLineEdit(dial);
    editor->hide();
}

void addSwitches(QWidget &parent, int count)
{
    for (int i = 0; i < count; ++i) {
        auto *button = new QPushButton(QStringLiteral("DIRECT"), &parent);
        button->setFixedWidth(80);
        button->setStyleSheet(QStringLiteral("QPushButton {"
                                             "   color: #8a95aa;"
                                             "   background-color: #1b1e23;"
                                             "   border-radius: 3px;"
                                             "}"
                                             "QPushButton:pressed {"
                                             "   background-color: #1b1e23;"
                                             "}"));
        auto *glow = new QGraphicsDropShadowEffect(button);
        button->setGraphicsEffect(glow);
        glow->setEnabled(false);
        parent.layout()->addWidget(button);
    }
}

void fill(QWidget &panel)
{
    panel.setLayout(new QVBoxLayout);
    addLabels(panel, 2, "font-weight: bold; font-size: 12px; color: white;");
    addLabels(panel, 2, "font-size: 12px; color: white;");
    addLabels(panel, 1, "font-size: 10px; color: white;");
    addLabels(panel, 2, "color: #888888; font-size: 8px;");
    addDial(panel, 120);
    addDial(panel, 120);
    addDial(panel, 70);
    addSwitches(panel, 6);
    auto *separator = new QFrame(&panel);
    separator->setStyleSheet(QStringLiteral("background-color: #555555;"));
    panel.layout()->addWidget(separator);
}

} // namespace

int main(int argc, char *argv[])
{
    QApplication application(argc, argv);
    QMainWindow window;
    window.setWindowTitle(QStringLiteral("Vesmora widgets"));
    window.setStyleSheet(QStringLiteral("QMainWindow { background-color: #2c313c; }"));
    auto *panel = new QWidget(&window);
    fill(*panel);
    window.setCentralWidget(panel);

    QSystemTrayIcon tray(QIcon(QStringLiteral(":/icon/icon.png")));
    tray.setVisible(true);
    window.show();
    return QApplication::exec();
}
