#pragma once

#include <QColor>
#include <QImage>
#include <QQuickPaintedItem>

namespace Tinkra {

/// The symbol `name` of the folder Symbols, tinted with `color`, `size` points wide and high, its strokes as
/// strong as letters of `weight` beside it. A name without a file is a broken assumption.
QImage symbolImage(const QString& name, const QColor& color, int weight, qreal size, qreal pixelsPerPoint);

/// A symbol in a view. An empty name shows nothing.
class SymbolImage : public QQuickPaintedItem {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(QString name MEMBER m_name NOTIFY changed FINAL)
    Q_PROPERTY(QColor color MEMBER m_color NOTIFY changed FINAL)
    Q_PROPERTY(int weight MEMBER m_weight NOTIFY changed FINAL)

public:
    explicit SymbolImage(QQuickItem* parent = nullptr);

    void paint(QPainter* painter) override;

Q_SIGNALS:
    void changed();

private:
    QString m_name;
    QColor m_color = Qt::black;
    int m_weight = 400; ///< of a font, as QFont has it
};

}
