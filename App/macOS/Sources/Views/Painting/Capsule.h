#pragma once

#include <QColor>
#include <QQuickPaintedItem>

namespace Tinkra {

/// A shape whose shorter sides are half circles (a circle when it is square), filled with a colour or with a
/// gradient from its top leading to its bottom trailing corner, and outlined. The item is larger than the
/// shape by `margin` on every side, for outlines that reach beyond it.
class Capsule : public QQuickPaintedItem {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(qreal margin MEMBER m_margin NOTIFY changed FINAL)
    Q_PROPERTY(QColor fill MEMBER m_fill NOTIFY changed FINAL)
    Q_PROPERTY(QColor fillEnd READ fillEnd WRITE setFillEnd RESET resetFillEnd NOTIFY changed FINAL)
    Q_PROPERTY(QColor stroke MEMBER m_stroke NOTIFY changed FINAL)
    Q_PROPERTY(qreal strokeWidth MEMBER m_strokeWidth NOTIFY changed FINAL)
    Q_PROPERTY(qreal strokeInset MEMBER m_strokeInset NOTIFY changed FINAL)
    Q_PROPERTY(bool mirrored MEMBER m_mirrored NOTIFY changed FINAL)

public:
    explicit Capsule(QQuickItem* parent = nullptr);

    QColor fillEnd() const { return m_fillEnd.isValid() ? m_fillEnd : m_fill; }
    void setFillEnd(const QColor& color);
    void resetFillEnd() { setFillEnd(QColor()); }

    void paint(QPainter* painter) override;

Q_SIGNALS:
    void changed();

private:
    qreal m_margin = 0;
    QColor m_fill = Qt::transparent;
    QColor m_fillEnd; ///< invalid: no gradient
    QColor m_stroke = Qt::transparent;
    qreal m_strokeWidth = 1;
    qreal m_strokeInset = 0; ///< how far the middle of the outline lies inside the shape's edge
    bool m_mirrored = false; ///< leading is right
};

}
