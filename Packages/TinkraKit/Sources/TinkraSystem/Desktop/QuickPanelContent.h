#pragma once

#include "TinkraSystem/Desktop/OverlayPanel.h"

#include <QQuickItem>
#include <QRectF>

#include <memory>

namespace Tinkra::System {

/// What a panel shows where the views are Qt Quick's, on every host. The item takes the panel's size.
class QuickPanelContent : public PanelContent {
public:
    explicit QuickPanelContent(std::unique_ptr<QQuickItem> item)
        : m_item(std::move(item))
    {
    }

    QQuickItem& item() { return *m_item; }

    /// The part of the item that is not see-through, and its corners' radius: a click beside it belongs to
    /// whatever lies below.
    virtual QRectF card() = 0;
    virtual double cardRadius() = 0;

    /// Whether what is half transparent can be seen; without a compositor a shadow cannot.
    virtual void setIsComposited(bool isComposited) = 0;

private:
    std::unique_ptr<QQuickItem> m_item;
};

}
