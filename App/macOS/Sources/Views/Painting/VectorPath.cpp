#include "VectorPath.h"

#include <algorithm>
#include <cassert>
#include <charconv>

namespace Tinkra {

namespace {

class Scanner {
public:
    explicit Scanner(std::string_view text)
        : m_rest(text)
    {
    }

    /// The next command letter, 0 at the end.
    char command()
    {
        skipBlanks();
        if (m_rest.empty())
            return 0;
        const char letter = m_rest.front();
        m_rest.remove_prefix(1);
        return letter;
    }

    QPointF point()
    {
        const qreal x = number();
        return {x, number()};
    }

private:
    void skipBlanks() { m_rest.remove_prefix(std::min(m_rest.find_first_not_of(" ,"), m_rest.size())); }

    qreal number()
    {
        skipBlanks();
        qreal value = 0;
        const auto [end, error] = std::from_chars(m_rest.data(), m_rest.data() + m_rest.size(), value);
        assert(error == std::errc());
        m_rest.remove_prefix(static_cast<std::size_t>(end - m_rest.data()));
        return value;
    }

    std::string_view m_rest;
};

}

QPainterPath vectorPath(std::string_view data)
{
    QPainterPath path;
    Scanner scanner(data);
    while (const char command = scanner.command()) {
        // The order in which arguments are evaluated is not fixed, so each point is read on its own line.
        if (command == 'Z') {
            path.closeSubpath();
            continue;
        }
        const auto first = scanner.point();
        if (command == 'M') {
            path.moveTo(first);
        } else if (command == 'L') {
            path.lineTo(first);
        } else if (command == 'Q') {
            path.quadTo(first, scanner.point());
        } else {
            assert(command == 'C');
            const auto second = scanner.point();
            path.cubicTo(first, second, scanner.point());
        }
    }
    return path;
}

QPainterPath continuousRoundedRect(const QRectF& rect, qreal radius)
{
    // One cubic per corner, from `reach` on one edge to `reach` on the other. It meets the diagonal where the
    // circle does and arrives at the edges almost without curvature.
    const qreal reach = std::min(1.528 * radius, std::min(rect.width(), rect.height()) / 2);
    const qreal control = (2.3432 * radius - reach) / 3;
    const qreal left = rect.left();
    const qreal top = rect.top();
    const qreal right = rect.right();
    const qreal bottom = rect.bottom();

    QPainterPath path(QPointF(left + reach, top));
    path.lineTo(right - reach, top);
    path.cubicTo(right - control, top, right, top + control, right, top + reach);
    path.lineTo(right, bottom - reach);
    path.cubicTo(right, bottom - control, right - control, bottom, right - reach, bottom);
    path.lineTo(left + reach, bottom);
    path.cubicTo(left + control, bottom, left, bottom - control, left, bottom - reach);
    path.lineTo(left, top + reach);
    path.cubicTo(left, top + control, left + control, top, left + reach, top);
    path.closeSubpath();
    return path;
}

}
