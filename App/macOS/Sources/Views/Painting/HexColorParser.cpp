#include "HexColorParser.h"

#include "ViewSupport/HexColor.h"

namespace Tinkra {

QColor HexColorParser::parse(const QString& hex, const QColor& fallback)
{
    const auto utf8 = hex.toStdString();
    const auto color = parseHexColor(utf8);
    return color ? QColor(color->red, color->green, color->blue) : fallback;
}

}
