#include "traymanager.h"

#include "comparison.h"

#include <QDeadlineTimer>

#include <xcb/xcb.h>

#include <algorithm>
#include <cstdlib>
#include <span>
#include <thread>

using namespace std::chrono_literals;

namespace {

constexpr auto interval = 100us;
constexpr quint16 trayWidth = 200;
constexpr quint16 iconSize = 24;

// Of the protocols of trays and of embedding.
constexpr quint32 requestDock = 0;
constexpr quint32 embeddedNotify = 0;

template <typename Reply> auto owned(Reply *reply)
{
    return std::unique_ptr<Reply, decltype(&std::free)>(reply, &std::free);
}

xcb_client_message_event_t message(quint32 window, quint32 type)
{
    xcb_client_message_event_t message{};
    message.response_type = XCB_CLIENT_MESSAGE;
    message.format = 32;
    message.window = window;
    message.type = type;
    message.data.data32[0] = XCB_CURRENT_TIME;
    return message;
}

} // namespace

TrayManager::TrayManager(const QByteArray &display)
    : m_connection(xcb_connect(display.constData(), nullptr), &xcb_disconnect)
{
    require(xcb_connection_has_error(m_connection.get()) == 0, QStringLiteral("No display"));
    m_root = xcb_setup_roots_iterator(xcb_get_setup(m_connection.get())).data->root;
    m_request = atom("_NET_SYSTEM_TRAY_OPCODE");
    createTray();
    announce();
}

quint32 TrayManager::atom(const QByteArray &name) const
{
    const auto cookie =
        xcb_intern_atom(m_connection.get(), 0, static_cast<quint16>(name.size()), name.constData());
    const auto reply = owned(xcb_intern_atom_reply(m_connection.get(), cookie, nullptr));
    return reply ? reply->atom : xcb_atom_t{XCB_ATOM_NONE};
}

void TrayManager::createTray()
{
    m_tray = xcb_generate_id(m_connection.get());
    // Black, and nothing for the window manager.
    const quint32 values[] = {0, 1};
    xcb_create_window(m_connection.get(), XCB_COPY_FROM_PARENT, m_tray, m_root, 0, 0, trayWidth,
                      iconSize, 0, XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT,
                      XCB_CW_BACK_PIXEL | XCB_CW_OVERRIDE_REDIRECT, values);
    xcb_map_window(m_connection.get(), m_tray);
}

void TrayManager::announce()
{
    const quint32 selection = atom("_NET_SYSTEM_TRAY_S0");
    xcb_set_selection_owner(m_connection.get(), m_tray, selection, XCB_CURRENT_TIME);
    xcb_client_message_event_t manager = message(m_root, atom("MANAGER"));
    manager.data.data32[1] = selection;
    manager.data.data32[2] = m_tray;
    send(m_root, manager, XCB_EVENT_MASK_STRUCTURE_NOTIFY);
}

void TrayManager::send(quint32 to, const xcb_client_message_event_t &message, quint32 mask)
{
    xcb_send_event(m_connection.get(), 0, to, mask, reinterpret_cast<const char *>(&message));
    xcb_flush(m_connection.get());
}

bool TrayManager::waitForPaintedIcon(std::chrono::milliseconds deadline)
{
    m_icon = XCB_NONE;
    const QDeadlineTimer timer(deadline);
    while (!timer.hasExpired()) {
        handleEvents();
        if (m_icon != XCB_NONE && isPainted())
            return true;
        std::this_thread::sleep_for(interval);
    }
    return false;
}

void TrayManager::handleEvents()
{
    while (const auto event = owned(xcb_poll_for_event(m_connection.get()))) {
        if ((event->response_type & 0x7f) != XCB_CLIENT_MESSAGE)
            continue;
        const auto *message = reinterpret_cast<xcb_client_message_event_t *>(event.get());
        if (message->type == m_request && message->data.data32[1] == requestDock)
            embed(message->data.data32[2]);
    }
}

void TrayManager::embed(quint32 icon)
{
    m_icon = icon;
    const quint32 size[] = {iconSize, iconSize};
    xcb_reparent_window(m_connection.get(), icon, m_tray, 0, 0);
    xcb_configure_window(m_connection.get(), icon,
                         XCB_CONFIG_WINDOW_WIDTH | XCB_CONFIG_WINDOW_HEIGHT, size);
    xcb_map_window(m_connection.get(), icon);
    xcb_client_message_event_t embedded = message(icon, atom("_XEMBED"));
    embedded.data.data32[1] = embeddedNotify;
    embedded.data.data32[3] = m_tray;
    send(icon, embedded, XCB_EVENT_MASK_NO_EVENT);
}

bool TrayManager::isPainted() const
{
    const auto cookie = xcb_get_image(m_connection.get(), XCB_IMAGE_FORMAT_Z_PIXMAP, m_icon, 0, 0,
                                      iconSize, iconSize, ~0u);
    const auto reply = owned(xcb_get_image_reply(m_connection.get(), cookie, nullptr));
    if (!reply)
        return false;
    // Screens of 24 bits send four bytes a pixel.
    const std::span pixels(reinterpret_cast<const quint32 *>(xcb_get_image_data(reply.get())),
                           static_cast<size_t>(xcb_get_image_data_length(reply.get())) / 4);
    return std::any_of(pixels.begin(), pixels.end(),
                       [&](quint32 pixel) { return pixel != pixels.front(); });
}
