#pragma once

#include "TinkraSystemLinux/Desktop/OverlaySurface.h"

namespace Tinkra::System {

/// An override-redirect window: no window manager moves, covers, hides or focuses it. A program that raises
/// itself can come above it, until it is raised again.
class X11Surface final : public OverlaySurface {
public:
    using OverlaySurface::OverlaySurface;

    bool isComposited() const override;
    void show() override;
    void setSolid(const QRegion& region) override;
    QPoint drag(QPoint pressed, QPoint now) override;
    void raise() override;

private:
    void applyInputRegion() const;

    QRegion m_solid;
};

}
