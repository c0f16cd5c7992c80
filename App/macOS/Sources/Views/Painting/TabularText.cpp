#include "TabularText.h"

#include <QFontMetricsF>
#include <QPainter>

#include <algorithm>
#include <cmath>

namespace Tinkra {

namespace {

/// Half of the room that a character, when it is a digit, lacks to the widest digit of its script.
qreal sideRoom(QChar character, const QFontMetricsF& metrics)
{
    if (!character.isDigit())
        return 0;
    const auto zero = static_cast<char16_t>(character.unicode() - character.digitValue());
    qreal widest = 0;
    for (char16_t digit = 0; digit < 10; ++digit)
        widest = std::max(widest, metrics.horizontalAdvance(QChar(char16_t(zero + digit))));
    return (widest - metrics.horizontalAdvance(character)) / 2;
}

/// Spacing stands after a character: its own room and that of the next.
QList<QTextLayout::FormatRange> digitSpacing(const QString& text, const QFontMetricsF& metrics)
{
    QList<QTextLayout::FormatRange> formats;
    for (int i = 0; i < text.size(); ++i) {
        const qreal next = i + 1 < text.size() ? sideRoom(text.at(i + 1), metrics) : 0;
        const qreal spacing = sideRoom(text.at(i), metrics) + next;
        if (spacing == 0)
            continue;
        QTextCharFormat format;
        format.setFontLetterSpacingType(QFont::AbsoluteSpacing);
        format.setFontLetterSpacing(spacing);
        formats.append({i, 1, format});
    }
    return formats;
}

}

TabularText::TabularText(QQuickItem* parent)
    : QQuickPaintedItem(parent)
{
    connect(this, &QQuickItem::widthChanged, this, [this] { update(); });
}

void TabularText::setText(const QString& text)
{
    if (m_text == text)
        return;
    m_text = text;
    layOut();
}

void TabularText::setFont(const QFont& font)
{
    if (m_font == font)
        return;
    m_font = font;
    layOut();
}

void TabularText::setColor(const QColor& color)
{
    if (m_color == color)
        return;
    m_color = color;
    update();
    Q_EMIT changed();
}

void TabularText::layOut()
{
    m_layout.setText(m_text);
    m_layout.setFont(m_font);
    const QFontMetricsF metrics(m_font);
    m_layout.setFormats(digitSpacing(m_text, metrics));
    m_leading = m_text.isEmpty() ? 0 : sideRoom(m_text.front(), metrics);
    m_layout.beginLayout();
    auto line = m_layout.createLine();
    qreal width = 0;
    if (line.isValid()) {
        line.setNumColumns(static_cast<int>(m_text.size()));
        width = line.naturalTextWidth();
        setImplicitHeight(std::ceil(line.height()));
    }
    m_layout.endLayout();
    setImplicitWidth(std::ceil(m_leading + width));
    update();
    Q_EMIT changed();
}

void TabularText::paint(QPainter* painter)
{
    painter->setPen(m_color);
    m_layout.draw(painter, QPointF(m_leading, 0));
}

}
