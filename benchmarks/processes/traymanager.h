#ifndef TRAYMANAGER_H
#define TRAYMANAGER_H

#include <QByteArray>

#include <chrono>
#include <memory>

struct xcb_client_message_event_t;
struct xcb_connection_t;

/// The system tray of a display that has no other. It sees to a tenth of a millisecond when an icon
/// shows its picture.
class TrayManager
{
public:
    /// @p display as in $DISPLAY. Fatal without a display.
    explicit TrayManager(const QByteArray &display);

    /// Gives the next icon that asks for one a place and waits until it shows more than one colour;
    /// false when that has not come in time.
    bool waitForPaintedIcon(std::chrono::milliseconds deadline);

private:
    using Connection = std::unique_ptr<xcb_connection_t, void (*)(xcb_connection_t *)>;

    quint32 atom(const QByteArray &name) const;
    void createTray();
    void announce();
    void handleEvents();
    void embed(quint32 icon);
    bool isPainted() const;
    void send(quint32 to, const xcb_client_message_event_t &message, quint32 mask);

    Connection m_connection;
    quint32 m_root = 0;
    quint32 m_tray = 0;
    quint32 m_icon = 0; ///< the one waited for, once it has asked
    quint32 m_request;  ///< the message by which an icon asks
};

#endif
