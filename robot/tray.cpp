#include "tray.h"

#include "waiting.h"

namespace {

// A tool tip is a popup, too, but never as large as a menu.
constexpr QSize smallestMenu(60, 80);

} // namespace

Tray::Tray(const WindowSystem &windows, Pointer &pointer)
    : m_windows(windows)
    , m_pointer(pointer)
{ }

/// Every window of a toolkit may say that it can be embedded; one that the window manager does not
/// manage really is.
bool Tray::isDocked(const WindowInfo &window) const
{
    return m_windows.hasProperty(window.id, "_XEMBED_INFO")
        && !m_windows.hasProperty(window.id, "WM_STATE");
}

QList<WindowInfo> Tray::icons() const
{
    QList<WindowInfo> found;
    const QList<WindowInfo> all = m_windows.windows();
    for (WindowInfo window : all) {
        if (!window.visible)
            continue;
        if (window.title == QStringLiteral("Wine System Tray")) {
            // One window for all icons; the first is a square at its left end.
            window.area.setWidth(window.area.height());
            found << window;
        } else if (isDocked(window)) {
            found << window;
        }
    }
    return found;
}

bool Tray::waitForIcon() const
{
    QList<WindowInfo> before;
    return waitUntil([&] {
        const QList<WindowInfo> now = icons();
        // An icon on its way into the tray changes its parent and its place.
        const bool isSettled = now.size() == 1 && before.size() == 1
            && now.first().parent == before.first().parent
            && now.first().area == before.first().area && hasPicture(now.first());
        before = now;
        return isSettled;
    });
}

/// An icon that has drawn itself also listens.
bool Tray::hasPicture(const WindowInfo &icon) const
{
    const QImage picture = m_windows.picture(icon.area);
    const QRgb corner = picture.isNull() ? QRgb{} : picture.pixel(0, 0);
    for (int y = 0; y < picture.height(); ++y) {
        for (int x = 0; x < picture.width(); ++x) {
            if (picture.pixel(x, y) != corner)
                return true;
        }
    }
    return false;
}

bool Tray::click(Pointer::Button button)
{
    const QList<WindowInfo> found = icons();
    return !found.isEmpty() && m_pointer.click(found.first().area.center(), button);
}

bool Tray::doubleClick()
{
    const QList<WindowInfo> found = icons();
    return !found.isEmpty() && m_pointer.doubleClick(found.first().area.center());
}

std::optional<WindowInfo> Tray::menu() const
{
    const QList<WindowInfo> all = m_windows.windows();
    for (const WindowInfo &window : all) {
        const bool large = window.area.width() >= smallestMenu.width()
            && window.area.height() >= smallestMenu.height();
        if (window.visible && window.popup && large)
            return window;
    }
    return std::nullopt;
}

MenuPicture Tray::menuPicture() const
{
    const std::optional<WindowInfo> window = menu();
    return window ? MenuPicture(m_windows.picture(window->area), window->area.topLeft())
                  : MenuPicture();
}

bool Tray::openMenu()
{
    return click(Pointer::Right)
        && waitUntil([this] { return menuPicture().entries().size() == EntryCount; });
}

bool Tray::choose(Entry entry)
{
    return openMenu() && m_pointer.click(menuPicture().entries().at(entry).centre);
}
