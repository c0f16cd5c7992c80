#pragma once

#include <QPoint>
#include <QRect>
#include <QRegion>

#include <memory>

class QWindow;

namespace Tinkra::System {

/// How a window gets, and stays, above everything else on the display that the program is on. In Qt's
/// coordinates. The window must outlive it.
class OverlaySurface {
public:
    explicit OverlaySurface(QWindow& window)
        : m_window(window)
    {
    }
    OverlaySurface(const OverlaySurface&) = delete;
    OverlaySurface& operator=(const OverlaySurface&) = delete;
    virtual ~OverlaySurface() = default;

    /// Whether what is half transparent can be seen.
    virtual bool isComposited() const { return true; }

    /// Where the window is, or will be when it shows.
    virtual void setGeometry(QRect geometry);

    /// Shows the window, without the keyboard.
    virtual void show();

    /// The part of the window that takes clicks, and, where nothing is composited, that shows at all.
    virtual void setSolid(const QRegion& region);

    /// The user drags the window from `pressed` in it to `now` in it. Gives how far the window goes.
    virtual QPoint drag(QPoint pressed, QPoint now);

    /// Something may have come above it.
    virtual void raise() { }

protected:
    QWindow& window() const { return m_window; }

private:
    QWindow& m_window;
};

/// For the display that Qt runs on. Sets the window's flags, so it comes before the window shows.
std::unique_ptr<OverlaySurface> makeOverlaySurface(QWindow& window);

}
