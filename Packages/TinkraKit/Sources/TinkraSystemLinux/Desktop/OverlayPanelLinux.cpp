#include "TinkraSystemLinux/Desktop/OverlayPanelLinux.h"

#include "TinkraSystemLinux/Desktop/OverlayWindow.h"
#include "TinkraSystemLinux/Desktop/QtGeometry.h"

#include <QGuiApplication>
#include <QScreen>
#include <QTimer>
#include <QVariantAnimation>

#include <cassert>
#include <utility>

namespace Tinkra::System {

namespace {

QEasingCurve curve(AnimationTiming timing)
{
    QEasingCurve bezier(QEasingCurve::BezierSpline);
    if (timing == AnimationTiming::EaseIn)
        bezier.addCubicBezierSegment({0.42, 0}, {1, 1}, {1, 1});
    else
        bezier.addCubicBezierSegment({0, 0}, {0.58, 1}, {1, 1});
    return bezier;
}

struct DeleteLater {
    void operator()(OverlayWindow* window) const
    {
        window->close();
        window->deleteLater(); // it may be handling an event
    }
};

class OverlayPanelLinux final : public OverlayPanel {
public:
    OverlayPanelLinux(std::unique_ptr<QuickPanelContent> content, const OverlayPanelProperties& properties)
        : m_window(new OverlayWindow(std::move(content), properties.movableByBackground))
    {
        m_window->setPanelFrame(qtRect(properties.contentRect));
        m_shows.setSingleShot(true);
        m_shows.setInterval(0);
        QObject::connect(&m_shows, &QTimer::timeout, &m_shows, [this] { show(); });
        QObject::connect(&m_motion, &QVariantAnimation::valueChanged, m_window.get(),
            [window = m_window.get()](const QVariant& frame) { window->setPanelFrame(frame.toRect()); });
        QObject::connect(&m_motion, &QVariantAnimation::finished, &m_motion, [this] { finish(); });
    }

    Rect frame() override { return productRect(m_window->panelFrame()); }

    std::optional<Screen> screen() override
    {
        const auto* screen = screenOf(m_window->panelFrame());
        if (screen == nullptr)
            return std::nullopt;
        return Screen{productRect(screen->geometry()), productRect(screen->availableGeometry())};
    }

    void setFrame(Rect frame) override
    {
        const auto place = qtRect(frame);
        m_motion.stop();
        m_window->cover(place, screenOf(place));
        m_window->setPanelFrame(place);
    }

    /// A window that is to slide in shows where it will rest, which is known when the motion begins.
    void orderFrontRegardless() override { m_shows.start(); }

    void animateFrame(
        Rect frame, double duration, AnimationTiming timing, std::function<void()> completed) override
    {
        m_motion.stop();
        m_completed = std::move(completed);
        const auto from = m_window->panelFrame();
        const auto to = qtRect(frame);
        auto* screen = screenOf(to);
        m_window->cover(from | to, screen != nullptr ? screen : screenOf(from));
        if (m_shows.isActive())
            show();
        m_motion.setStartValue(from);
        m_motion.setEndValue(to);
        m_motion.setDuration(qRound(duration * 1000));
        m_motion.setEasingCurve(curve(timing));
        m_motion.start();
    }

    void close() override
    {
        m_shows.stop();
        m_motion.stop();
        m_window->close();
    }

private:
    static QScreen* screenOf(QRect frame)
    {
        for (auto* screen : QGuiApplication::screens()) {
            if (screen->geometry().contains(frame.center()))
                return screen;
        }
        for (auto* screen : QGuiApplication::screens()) {
            if (screen->geometry().intersects(frame))
                return screen;
        }
        return nullptr;
    }

    void show()
    {
        m_shows.stop();
        m_window->showOnTop();
    }

    /// Whoever is told may let go of the panel, which must not happen within its animation.
    void finish()
    {
        if (auto completed = std::exchange(m_completed, nullptr))
            QMetaObject::invokeMethod(qGuiApp, std::move(completed), Qt::QueuedConnection);
    }

    std::unique_ptr<OverlayWindow, DeleteLater> m_window;
    QTimer m_shows; ///< within this turn of the main loop
    QVariantAnimation m_motion;
    std::function<void()> m_completed;
};

}

std::shared_ptr<OverlayPanel> OverlayPanelsLinux::makePanel(
    const OverlayPanelProperties& properties, std::unique_ptr<PanelContent> content)
{
    auto* quick = dynamic_cast<QuickPanelContent*>(content.release());
    assert(quick != nullptr);
    return std::make_shared<OverlayPanelLinux>(std::unique_ptr<QuickPanelContent>(quick), properties);
}

}
