#ifndef BOXWATCHER_H
#define BOXWATCHER_H

#include <QMessageBox>
#include <QTimer>

/// Confirms each message box that appears while it lives, and keeps what the boxes said.
class BoxWatcher : public QObject
{
public:
    struct Seen {
        QString title;
        QString text;
        QMessageBox::Icon icon;
        QMessageBox::StandardButtons buttons;
        bool hasParent;
    };

    BoxWatcher();

    const QList<Seen> &boxes() const { return m_boxes; }

private:
    void look();

    QTimer m_timer;
    QList<Seen> m_boxes;
};

/// Fails the test unless exactly one box was shown, a warning of this title and text.
void verifyOneWarning(const BoxWatcher &watcher, const QString &title, const QString &text);

#endif
