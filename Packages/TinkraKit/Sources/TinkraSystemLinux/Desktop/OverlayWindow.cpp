#include "TinkraSystemLinux/Desktop/OverlayWindow.h"

#include <QGuiApplication>
#include <QMouseEvent>
#include <QPainterPath>
#include <QScreen>

namespace Tinkra::System {

namespace {

constexpr int kRaiseAgainMilliseconds = 250;
constexpr int kGapBelowTop = 8;

}

OverlayWindow::OverlayWindow(std::unique_ptr<QuickPanelContent> content, bool isMovable)
    : m_content(std::move(content))
    , m_surface(makeOverlaySurface(*this))
    , m_isMovable(isMovable)
{
    setColor(Qt::transparent);
    setTitle(QStringLiteral("Calendar Murkel"));
    m_content->item().setParentItem(contentItem());
    m_content->setIsComposited(m_surface->isComposited());
    m_staysOnTop.setInterval(kRaiseAgainMilliseconds);
    connect(&m_staysOnTop, &QTimer::timeout, this, [this] { m_surface->raise(); });
    connect(
        qGuiApp, &QGuiApplication::screenRemoved, this, &OverlayWindow::screenWentAway, Qt::QueuedConnection);
}

OverlayWindow::~OverlayWindow()
{
    m_surface.reset();
    m_content.reset();
}

QRect OverlayWindow::panelFrame() const
{
    const auto& item = m_content->item();
    return {m_origin + QPoint(qRound(item.x()), qRound(item.y())), item.size().toSize()};
}

void OverlayWindow::setPanelFrame(QRect frame)
{
    auto& item = m_content->item();
    item.setSize(frame.size());
    item.setPosition(frame.topLeft() - m_origin);
    updateSolid();
}

void OverlayWindow::cover(QRect region, QScreen* onScreen)
{
    const auto frame = panelFrame();
    if (onScreen != nullptr) {
        region &= onScreen->geometry();
        setScreen(onScreen);
    }
    if (region.isEmpty() || region == QRect(m_origin, size()))
        return;
    m_origin = region.topLeft();
    m_surface->setGeometry(region);
    setPanelFrame(frame);
}

void OverlayWindow::showOnTop()
{
    m_surface->show();
    m_staysOnTop.start();
}

void OverlayWindow::updateSolid()
{
    const auto& item = m_content->item();
    QPainterPath card;
    card.addRoundedRect(
        m_content->card().translated(item.position()), m_content->cardRadius(), m_content->cardRadius());
    m_surface->setSolid(QRegion(card.toFillPolygon().toPolygon()));
}

void OverlayWindow::screenWentAway()
{
    const auto frame = panelFrame();
    for (const auto* each : QGuiApplication::screens()) {
        if (each->geometry().intersects(frame))
            return;
    }
    auto* refuge = QGuiApplication::primaryScreen();
    if (refuge == nullptr)
        return;
    const auto free = refuge->availableGeometry();
    const QRect place{{free.center().x() - frame.width() / 2, free.y() + kGapBelowTop}, frame.size()};
    cover(place, refuge);
    setPanelFrame(place);
    showOnTop();
}

void OverlayWindow::mousePressEvent(QMouseEvent* event)
{
    QQuickWindow::mousePressEvent(event);
    const bool isTaken = event->exclusiveGrabber(event->point(0)) != nullptr; // by a button
    if (m_isMovable && !isTaken && event->button() == Qt::LeftButton)
        m_pressedAt = event->position().toPoint();
}

void OverlayWindow::mouseMoveEvent(QMouseEvent* event)
{
    if (m_pressedAt)
        m_origin += m_surface->drag(*m_pressedAt, event->position().toPoint());
    else
        QQuickWindow::mouseMoveEvent(event);
}

void OverlayWindow::mouseReleaseEvent(QMouseEvent* event)
{
    m_pressedAt.reset();
    QQuickWindow::mouseReleaseEvent(event);
}

}
