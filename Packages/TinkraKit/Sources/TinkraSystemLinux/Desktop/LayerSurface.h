#pragma once

#include "TinkraSystemLinux/Desktop/OverlaySurface.h"

struct wl_output;
struct wl_proxy;
struct wl_surface;

namespace Tinkra::System {

/// A surface on the overlay layer of wlr-layer-shell, at the top of the screen that the compositor chooses.
/// Where the compositor has no such layers, an ordinary window.
class LayerSurface final : public OverlaySurface {
public:
    explicit LayerSurface(QWindow& window);
    ~LayerSurface() override;

    void setGeometry(QRect geometry) override;
    void show() override;
    QPoint drag(QPoint pressed, QPoint now) override;

private:
    void giveRole(wl_surface* surface);
    void sendPlace();
    void commit() const;
    static void configured(void* self, wl_proxy* surface, unsigned serial, unsigned width, unsigned height);
    static void closed(void* self, wl_proxy* surface);

    wl_proxy* m_layerSurface = nullptr;
    QRect m_geometry;
    QPoint m_margin; ///< from the screen's upper left corner, or from the middle of its upper edge
    bool m_isDragged = false;
};

}
