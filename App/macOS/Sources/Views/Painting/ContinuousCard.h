#pragma once

#include "Shadow.h"

#include <QQuickPaintedItem>

namespace Tinkra {

/// A filled card with continuous corners, an outline (a hairline inside its edge unless told otherwise), and
/// a shadow. The item is larger than the card by `margin` on every side, which is where the shadow has room.
class ContinuousCard : public QQuickPaintedItem {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(qreal margin MEMBER m_margin NOTIFY changed FINAL)
    Q_PROPERTY(qreal radius MEMBER m_radius NOTIFY changed FINAL)
    Q_PROPERTY(QColor fill MEMBER m_fill NOTIFY changed FINAL)
    Q_PROPERTY(QColor stroke MEMBER m_stroke NOTIFY changed FINAL)
    Q_PROPERTY(qreal strokeWidth MEMBER m_strokeWidth NOTIFY changed FINAL)
    Q_PROPERTY(qreal strokeInset MEMBER m_strokeInset NOTIFY changed FINAL)
    Q_PROPERTY(qreal shadowOpacity MEMBER m_shadowOpacity NOTIFY changed FINAL)
    Q_PROPERTY(qreal shadowRadius MEMBER m_shadowRadius NOTIFY changed FINAL)
    Q_PROPERTY(qreal shadowOffset MEMBER m_shadowOffset NOTIFY changed FINAL)
    Q_PROPERTY(bool shadowFades MEMBER m_shadowFades NOTIFY changed FINAL)

public:
    explicit ContinuousCard(QQuickItem* parent = nullptr);

    void paint(QPainter* painter) override;

Q_SIGNALS:
    void changed();

private:
    void paintShadow(QPainter& painter, const QRectF& card) const;

    qreal m_margin = 0;
    qreal m_radius = 0;
    QColor m_fill = Qt::white;
    QColor m_stroke = Qt::transparent;
    qreal m_strokeWidth = 1;
    qreal m_strokeInset = 0.5; ///< how far the middle of the outline lies inside the card's edge
    qreal m_shadowOpacity = 0;
    qreal m_shadowRadius = 0; ///< the standard deviation of the blur
    qreal m_shadowOffset = 0; ///< downwards
    bool m_shadowFades = false; ///< to nothing at the item's edge, where the blur reaches beyond it
};

}
