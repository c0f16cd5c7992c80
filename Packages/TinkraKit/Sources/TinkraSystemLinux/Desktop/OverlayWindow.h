#pragma once

#include "TinkraSystem/Desktop/QuickPanelContent.h"
#include "TinkraSystemLinux/Desktop/OverlaySurface.h"

#include <QQuickWindow>
#include <QTimer>

#include <memory>
#include <optional>

namespace Tinkra::System {

/// The window of a panel. It covers the part of one screen that the panel needs while it moves, and stands
/// still: only what it shows moves inside it. The user may drag it.
class OverlayWindow final : public QQuickWindow {
    Q_OBJECT

public:
    OverlayWindow(std::unique_ptr<QuickPanelContent> content, bool isMovable);
    ~OverlayWindow() override;

    /// Where the panel is, in Qt's coordinates.
    QRect panelFrame() const;
    /// Puts the panel somewhere within the window.
    void setPanelFrame(QRect frame);
    /// Makes the window cover what of `region` lies on `screen`.
    void cover(QRect region, QScreen* screen);

    void showOnTop();

protected:
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;

private:
    void updateSolid();
    void screenWentAway();

    std::unique_ptr<QuickPanelContent> m_content;
    std::unique_ptr<OverlaySurface> m_surface;
    bool m_isMovable;
    QPoint m_origin; ///< of the window, by our own account: Wayland tells nobody
    std::optional<QPoint> m_pressedAt; ///< in the window
    QTimer m_staysOnTop;
};

}
