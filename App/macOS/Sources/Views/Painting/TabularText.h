#pragma once

#include <QColor>
#include <QFont>
#include <QQuickPaintedItem>
#include <QTextLayout>

namespace Tinkra {

/// A short line of text whose digits are all equally wide, so that a countdown does not wobble. Qt 6.4 cannot
/// ask a font for its tabular digits; here each digit stands in the middle of the room of the widest.
class TabularText : public QQuickPaintedItem {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(QString text READ text WRITE setText NOTIFY changed FINAL)
    Q_PROPERTY(QFont font READ font WRITE setFont NOTIFY changed FINAL)
    Q_PROPERTY(QColor color READ color WRITE setColor NOTIFY changed FINAL)

public:
    explicit TabularText(QQuickItem* parent = nullptr);

    const QString& text() const { return m_text; }
    void setText(const QString& text);
    const QFont& font() const { return m_font; }
    void setFont(const QFont& font);
    const QColor& color() const { return m_color; }
    void setColor(const QColor& color);

    void paint(QPainter* painter) override;

Q_SIGNALS:
    void changed();

private:
    void layOut();

    QString m_text;
    QFont m_font;
    QColor m_color = Qt::black;
    QTextLayout m_layout;
    qreal m_leading = 0; ///< room before the first digit
};

}
