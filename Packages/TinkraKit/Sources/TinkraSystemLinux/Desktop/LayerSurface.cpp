#include "TinkraSystemLinux/Desktop/LayerSurface.h"

#include "TinkraSystemLinux/Desktop/LayerShellProtocol.h"

#include <QGuiApplication>
#include <QScreen>
#include <QWindow>
#include <qpa/qplatformnativeinterface.h>

#include <string_view>

#include <wayland-client.h>

namespace Tinkra::System {

namespace {

using namespace LayerShellProtocol;

void bindLayerShell(
    void* shell, wl_registry* registry, std::uint32_t name, const char* interface, std::uint32_t)
{
    if (std::string_view(interface) == layerShell.name)
        *static_cast<wl_proxy**>(shell) =
            static_cast<wl_proxy*>(wl_registry_bind(registry, name, &layerShell, 1));
}

void ignoreRemoval(void*, wl_registry*, std::uint32_t) { }

wl_display* waylandDisplay()
{
    return static_cast<wl_display*>(
        QGuiApplication::platformNativeInterface()->nativeResourceForIntegration("wl_display"));
}

/// Events that are handled without handling any of Qt's.
class EventQueue {
public:
    EventQueue() = default;
    EventQueue(const EventQueue&) = delete;
    EventQueue& operator=(const EventQueue&) = delete;
    ~EventQueue() { wl_event_queue_destroy(m_queue); }

    wl_event_queue* get() const { return m_queue; }

private:
    wl_event_queue* m_queue = wl_display_create_queue(waylandDisplay());
};

/// The compositor's layer shell, asked for once; null where there is none.
wl_proxy* compositorsLayerShell()
{
    static wl_proxy* const found = [] {
        wl_proxy* shell = nullptr;
        const EventQueue queue;
        auto* display = static_cast<wl_display*>(wl_proxy_create_wrapper(waylandDisplay()));
        wl_proxy_set_queue(reinterpret_cast<wl_proxy*>(display), queue.get());
        auto* registry = wl_display_get_registry(display);
        wl_proxy_wrapper_destroy(display);
        constexpr wl_registry_listener listener{.global = bindLayerShell, .global_remove = ignoreRemoval};
        wl_registry_add_listener(registry, &listener, &shell);
        wl_display_roundtrip_queue(waylandDisplay(), queue.get());
        if (shell != nullptr)
            wl_proxy_set_queue(shell, nullptr);
        wl_registry_destroy(registry);
        return shell;
    }();
    return found;
}

}

LayerSurface::LayerSurface(QWindow& window)
    : OverlaySurface(window)
{
}

LayerSurface::~LayerSurface()
{
    if (m_layerSurface == nullptr)
        return;
    wl_proxy_marshal(m_layerSurface, SurfaceDestroy);
    wl_proxy_destroy(m_layerSurface);
}

void LayerSurface::setGeometry(QRect geometry)
{
    m_geometry = geometry;
    if (!m_isDragged) {
        const auto* screen = window().screen();
        m_margin = {0, geometry.y() - (screen != nullptr ? screen->geometry().y() : 0)};
    }
    OverlaySurface::setGeometry(geometry);
    if (m_layerSurface != nullptr)
        sendPlace();
}

void LayerSurface::show()
{
    OverlaySurface::show();
    auto* native = QGuiApplication::platformNativeInterface();
    auto* surface = static_cast<wl_surface*>(native->nativeResourceForWindow("surface", &window()));
    if (surface != nullptr && m_layerSurface == nullptr && compositorsLayerShell() != nullptr)
        giveRole(surface);
}

/// Nothing may be drawn before the compositor has configured the surface, and Qt draws as soon as it is back
/// in its main loop: so its answer is waited for here, in a queue of its own.
void LayerSurface::giveRole(wl_surface* surface)
{
    const EventQueue queue;
    auto* shell = static_cast<wl_proxy*>(wl_proxy_create_wrapper(compositorsLayerShell()));
    wl_proxy_set_queue(shell, queue.get());
    m_layerSurface = wl_proxy_marshal_constructor(
        shell, ShellGetLayerSurface, &layerSurface, nullptr, surface, nullptr, kOverlayLayer, "alarm");
    wl_proxy_wrapper_destroy(shell);
    static Listener listener{configured, closed};
    wl_proxy_add_listener(m_layerSurface, reinterpret_cast<void (**)()>(&listener), this);
    wl_proxy_marshal(m_layerSurface, SurfaceSetKeyboardInteractivity, 0U);
    sendPlace();
    wl_display_roundtrip_queue(waylandDisplay(), queue.get());
    wl_proxy_set_queue(m_layerSurface, nullptr);
}

void LayerSurface::sendPlace()
{
    wl_proxy_marshal(m_layerSurface, SurfaceSetSize, static_cast<unsigned>(m_geometry.width()),
        static_cast<unsigned>(m_geometry.height()));
    wl_proxy_marshal(m_layerSurface, SurfaceSetAnchor, m_isDragged ? kAnchorTop | kAnchorLeft : kAnchorTop);
    wl_proxy_marshal(m_layerSurface, SurfaceSetMargin, m_margin.y(), 0, 0, m_margin.x());
    commit();
}

void LayerSurface::commit() const
{
    auto* native = QGuiApplication::platformNativeInterface();
    auto* surface =
        static_cast<wl_surface*>(native->nativeResourceForWindow("surface", const_cast<QWindow*>(&window())));
    if (surface != nullptr)
        wl_surface_commit(surface);
}

QPoint LayerSurface::drag(QPoint pressed, QPoint now)
{
    if (!m_isDragged) {
        m_isDragged = true;
        const int width = window().screen() != nullptr ? window().screen()->geometry().width() : 0;
        m_margin.setX((width - m_geometry.width()) / 2);
    }
    m_margin += now - pressed;
    if (m_layerSurface != nullptr)
        sendPlace();
    return now - pressed;
}

void LayerSurface::configured(void*, wl_proxy* surface, unsigned serial, unsigned, unsigned)
{
    wl_proxy_marshal(surface, SurfaceAckConfigure, serial);
}

void LayerSurface::closed(void* self, wl_proxy*)
{
    static_cast<LayerSurface*>(self)->window().hide();
}

}
