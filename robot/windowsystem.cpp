#include "windowsystem.h"

#include <xcb/xcb.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>

namespace {

struct Free {
    void operator()(void *reply) const { std::free(reply); }
};

template <typename Reply> std::unique_ptr<Reply, Free> owned(Reply *reply)
{
    return std::unique_ptr<Reply, Free>(reply);
}

// Property lengths are counted in four bytes; no title is longer than this.
constexpr quint32 longestProperty = 1024;

} // namespace

WindowSystem::WindowSystem(const QString &displayName)
    : m_connection(nullptr, &xcb_disconnect)
{
    int screenNumber = 0;
    m_connection.reset(xcb_connect(displayName.toLocal8Bit().constData(), &screenNumber));
    if (!isConnected())
        return;
    xcb_screen_iterator_t screens = xcb_setup_roots_iterator(xcb_get_setup(m_connection.get()));
    while (screenNumber-- > 0)
        xcb_screen_next(&screens);
    m_root = screens.data->root;
    m_screen = QRect(0, 0, screens.data->width_in_pixels, screens.data->height_in_pixels);
}

WindowSystem::~WindowSystem() = default;

bool WindowSystem::isConnected() const
{
    return xcb_connection_has_error(m_connection.get()) == 0;
}

QRect WindowSystem::screen() const
{
    return m_screen;
}

QList<WindowInfo> WindowSystem::windows() const
{
    QList<WindowInfo> found;
    if (isConnected())
        collect(m_root, 0, found);
    return found;
}

QList<WindowInfo> WindowSystem::visibleWindows(const QString &title) const
{
    QList<WindowInfo> found = windows();
    found.removeIf([&](const WindowInfo &window) {
        return !window.visible || !window.title.startsWith(title);
    });
    return found;
}

std::optional<WindowInfo> WindowSystem::visibleWindow(const QString &title) const
{
    const QList<WindowInfo> found = visibleWindows(title);
    return found.isEmpty() ? std::nullopt : std::optional(found.first());
}

void WindowSystem::close(WindowId window) const
{
    xcb_client_message_event_t message{};
    message.response_type = XCB_CLIENT_MESSAGE;
    message.format = 32;
    message.window = window;
    message.type = atom("WM_PROTOCOLS");
    message.data.data32[0] = atom("WM_DELETE_WINDOW");
    message.data.data32[1] = XCB_CURRENT_TIME;
    xcb_send_event(m_connection.get(), 0, window, XCB_EVENT_MASK_NO_EVENT,
                   reinterpret_cast<const char *>(&message));
    xcb_flush(m_connection.get());
}

void WindowSystem::minimise(WindowId window) const
{
    constexpr quint32 iconicState = 3;
    xcb_client_message_event_t message{};
    message.response_type = XCB_CLIENT_MESSAGE;
    message.format = 32;
    message.window = window;
    message.type = atom("WM_CHANGE_STATE");
    message.data.data32[0] = iconicState;
    xcb_send_event(m_connection.get(), 0, m_root,
                   XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY | XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT,
                   reinterpret_cast<const char *>(&message));
    xcb_flush(m_connection.get());
}

bool WindowSystem::isAbove(WindowId upper, WindowId lower) const
{
    // A window comes after everything that is inside the ones below it.
    const QList<WindowInfo> all = windows();
    const auto place = [&](WindowId id) {
        return std::find_if(all.cbegin(), all.cend(),
                            [id](const WindowInfo &window) { return window.id == id; });
    };
    return place(upper) != all.cend() && place(lower) < place(upper);
}

QImage WindowSystem::picture(const QRect &area) const
{
    const QRect inside = area & m_screen;
    if (inside.isEmpty() || !isConnected())
        return {};
    const auto cookie = xcb_get_image(
        m_connection.get(), XCB_IMAGE_FORMAT_Z_PIXMAP, m_root, static_cast<qint16>(inside.x()),
        static_cast<qint16>(inside.y()), static_cast<quint16>(inside.width()),
        static_cast<quint16>(inside.height()), ~0u);
    const auto reply = owned(xcb_get_image_reply(m_connection.get(), cookie, nullptr));
    // 24-bit screens send four bytes a pixel, which is QImage's own layout.
    if (!reply || xcb_get_image_data_length(reply.get()) < inside.width() * inside.height() * 4)
        return {};
    const QImage shared(xcb_get_image_data(reply.get()), inside.width(), inside.height(),
                        qsizetype(inside.width()) * 4, QImage::Format_RGB32);
    return shared.copy();
}

bool WindowSystem::hasProperty(WindowId window, const QByteArray &name) const
{
    return !property(window, atom(name)).isEmpty();
}

bool WindowSystem::hasSelectionOwner(const QByteArray &name) const
{
    const auto cookie = xcb_get_selection_owner(m_connection.get(), atom(name));
    const auto reply = owned(xcb_get_selection_owner_reply(m_connection.get(), cookie, nullptr));
    return reply && reply->owner != XCB_NONE;
}

bool WindowSystem::hasWindowManager() const
{
    return hasProperty(m_root, "_NET_SUPPORTING_WM_CHECK");
}

bool WindowSystem::hasTrayManager() const
{
    return hasSelectionOwner("_NET_SYSTEM_TRAY_S0");
}

void WindowSystem::collect(WindowId window, WindowId parent, QList<WindowInfo> &found) const
{
    // A window may vanish between two questions about it.
    const std::optional<WindowInfo> info = describe(window, parent);
    if (!info)
        return;
    found << *info;
    const auto cookie = xcb_query_tree(m_connection.get(), window);
    const auto tree = owned(xcb_query_tree_reply(m_connection.get(), cookie, nullptr));
    if (!tree)
        return;
    const WindowId *children = xcb_query_tree_children(tree.get());
    for (int i = 0; i < xcb_query_tree_children_length(tree.get()); ++i)
        collect(children[i], window, found);
}

std::optional<WindowInfo> WindowSystem::describe(WindowId window, WindowId parent) const
{
    xcb_connection_t *const c = m_connection.get();
    const auto attributesCookie = xcb_get_window_attributes(c, window);
    const auto geometryCookie = xcb_get_geometry(c, window);
    const auto originCookie = xcb_translate_coordinates(c, window, m_root, 0, 0);
    const auto attributes = owned(xcb_get_window_attributes_reply(c, attributesCookie, nullptr));
    const auto geometry = owned(xcb_get_geometry_reply(c, geometryCookie, nullptr));
    const auto origin = owned(xcb_translate_coordinates_reply(c, originCookie, nullptr));
    if (!attributes || !geometry || !origin)
        return std::nullopt;
    WindowInfo info;
    info.id = window;
    info.parent = parent;
    info.title = title(window);
    info.area = QRect(origin->dst_x, origin->dst_y, geometry->width, geometry->height);
    info.visible = attributes->map_state == XCB_MAP_STATE_VIEWABLE
        && attributes->_class == XCB_WINDOW_CLASS_INPUT_OUTPUT;
    info.popup = attributes->override_redirect != 0;
    return info;
}

QString WindowSystem::title(WindowId window) const
{
    const QByteArray modern = property(window, atom("_NET_WM_NAME"));
    return modern.isEmpty() ? QString::fromLatin1(property(window, XCB_ATOM_WM_NAME))
                            : QString::fromUtf8(modern);
}

QByteArray WindowSystem::property(WindowId window, quint32 atomName) const
{
    const auto cookie = xcb_get_property(m_connection.get(), 0, window, atomName,
                                         XCB_GET_PROPERTY_TYPE_ANY, 0, longestProperty);
    const auto reply = owned(xcb_get_property_reply(m_connection.get(), cookie, nullptr));
    if (!reply)
        return {};
    return QByteArray(static_cast<const char *>(xcb_get_property_value(reply.get())),
                      xcb_get_property_value_length(reply.get()));
}

quint32 WindowSystem::atom(const QByteArray &name) const
{
    const auto cookie =
        xcb_intern_atom(m_connection.get(), 0, static_cast<quint16>(name.size()), name.constData());
    const auto reply = owned(xcb_intern_atom_reply(m_connection.get(), cookie, nullptr));
    return reply ? reply->atom : xcb_atom_t{XCB_ATOM_NONE};
}
