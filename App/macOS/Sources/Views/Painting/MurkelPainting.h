#pragma once

#include "MurkelArt.h"

#include <QQuickPaintedItem>

namespace Tinkra {

/// The mascot in a view. He is a picture that the scene turns and scales with filtering: the software
/// renderer draws painted items without it, which would fray his outline.
class MurkelPainting : public QQuickItem {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(QColor hat READ hat WRITE setHat NOTIFY changed FINAL)
    Q_PROPERTY(QColor beard READ beard WRITE setBeard NOTIFY changed FINAL)
    Q_PROPERTY(QColor line READ line WRITE setLine NOTIFY changed FINAL)
    Q_PROPERTY(bool showCheeks READ showCheeks WRITE setShowCheeks NOTIFY changed FINAL)
    Q_PROPERTY(bool moving READ isMoving WRITE setMoving NOTIFY changed FINAL)

public:
    explicit MurkelPainting(QQuickItem* parent = nullptr);

    QColor hat() const { return m_colors.hat; }
    void setHat(const QColor& color) { change(m_colors.hat, color); }
    QColor beard() const { return m_colors.beard; }
    void setBeard(const QColor& color) { change(m_colors.beard, color); }
    QColor line() const { return m_colors.line; }
    void setLine(const QColor& color) { change(m_colors.line, color); }
    bool showCheeks() const { return m_colors.showCheeks; }
    void setShowCheeks(bool on) { change(m_colors.showCheeks, on); }

    /// Whether he will be turned or scaled. His picture then has twice the pixels, so that turning does not
    /// fray it.
    bool isMoving() const { return m_isMoving; }
    void setMoving(bool on);

Q_SIGNALS:
    void changed();

protected:
    QSGNode* updatePaintNode(QSGNode* node, UpdatePaintNodeData* data) override;
    void itemChange(ItemChange change, const ItemChangeData& data) override;
    void geometryChange(const QRectF& newGeometry, const QRectF& oldGeometry) override;

private:
    template <typename T> void change(T& field, const T& value)
    {
        if (field == value)
            return;
        field = value;
        redraw();
        Q_EMIT changed();
    }

    void redraw();

    MurkelColors m_colors;
    bool m_isMoving = false;
    bool m_isOutdated = true;
};

/// The one-colour mascot in a view.
class MurkelGlyphPainting : public QQuickPaintedItem {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(QColor color MEMBER m_color NOTIFY changed FINAL)

public:
    explicit MurkelGlyphPainting(QQuickItem* parent = nullptr);

    void paint(QPainter* painter) override;

Q_SIGNALS:
    void changed();

private:
    QColor m_color = Qt::black;
};

}
