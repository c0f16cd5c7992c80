#include "TinkraSystemMac/Desktop/EmbeddedView.h"

#include "TinkraSystem/Desktop/QuickPanelContent.h"

#include <QMouseEvent>
#include <QQuickWindow>

#include <cassert>
#include <utility>

namespace Tinkra::System {

namespace {

std::unique_ptr<QuickPanelContent> quickContent(std::unique_ptr<PanelContent> content)
{
    auto* quick = dynamic_cast<QuickPanelContent*>(content.get());
    assert(quick != nullptr);
    static_cast<void>(content.release());
    return std::unique_ptr<QuickPanelContent>(quick);
}

}

class EmbeddedView::Window final : public QQuickWindow {
public:
    // The native window stays its owner's; this one is a child of it.
    Window(void* nativeView, Size size, std::unique_ptr<QuickPanelContent> content, bool isMovable)
        : m_native(QWindow::fromWinId(reinterpret_cast<WId>(nativeView)))
        , m_content(std::move(content))
        , m_isMovable(isMovable)
    {
        setParent(m_native.get());
        setColor(Qt::transparent);
        setGeometry(0, 0, qRound(size.width), qRound(size.height));
        m_content->setIsComposited(true);
        m_content->item().setParentItem(contentItem());
        m_content->item().setSize({size.width, size.height});
        show();
    }

    ~Window() override
    {
        m_content.reset(); // while the window that draws it is there
        setParent(nullptr);
    }

protected:
    void mousePressEvent(QMouseEvent* event) override
    {
        QQuickWindow::mousePressEvent(event);
        if (m_isMovable && !event->isAccepted())
            startSystemMove();
    }

private:
    std::unique_ptr<QWindow> m_native;
    std::unique_ptr<QuickPanelContent> m_content;
    bool m_isMovable;
};

EmbeddedView::EmbeddedView(void* nativeView, Size size, std::unique_ptr<PanelContent> content, bool isMovable)
    : m_window(std::make_unique<Window>(nativeView, size, quickContent(std::move(content)), isMovable))
{
}

EmbeddedView::~EmbeddedView() = default;

void EmbeddedView::prepare()
{
    QQuickWindow::setDefaultAlphaBuffer(true);
}

}
